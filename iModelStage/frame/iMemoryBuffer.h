#ifndef IMODELSTAGE_FRAME_IMEMORYBUFFER_H
#define IMODELSTAGE_FRAME_IMEMORYBUFFER_H

#include <iModelStage/frame/iExport.h>

#include <algorithm>
#include <streambuf>
#include <string>
#include <vector>

// A growable byte buffer readable and writable as a seekable stream
// buffer, for iInStream and iOutStream. Writing past the end grows it.
class IMODELSTAGE_EXPORT iMemoryBuffer : public std::streambuf {
public:
    iMemoryBuffer() = default;
    explicit iMemoryBuffer(std::string const& bytes);
    iMemoryBuffer(char const* data, std::size_t size);

    char const* data() const { return m_bytes.data(); }
    // Bytes put through the put area directly count too.
    std::size_t size() const
    {
        return pbase() ? std::max(m_size, static_cast<std::size_t>(pptr() - m_bytes.data())) : m_size;
    }
    std::string str() const { return std::string(m_bytes.data(), size()); }
    // Empties the buffer and puts both positions at the start.
    void clear();

protected:
    int_type underflow() override;
    int_type overflow(int_type c) override;
    std::streamsize xsputn(char const* s, std::streamsize n) override;
    pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type pos, std::ios_base::openmode which) override;

private:
    void reserve(std::size_t capacity);
    void syncSize();
    void resetPointers(std::size_t readPos, std::size_t writePos);

    std::vector<char> m_bytes;
    std::size_t m_size = 0;
};

#endif
