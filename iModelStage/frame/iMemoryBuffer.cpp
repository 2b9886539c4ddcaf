#include <iModelStage/frame/iMemoryBuffer.h>

#include <algorithm>
#include <cstring>

iMemoryBuffer::iMemoryBuffer(std::string const& bytes) : iMemoryBuffer(bytes.data(), bytes.size()) {}

iMemoryBuffer::iMemoryBuffer(char const* data, std::size_t size) : m_bytes(data, data + size), m_size(size)
{
    resetPointers(0, 0);
}

void iMemoryBuffer::clear()
{
    m_size = 0;
    resetPointers(0, 0);
}

// The written end may lie beyond what has been counted so far.
void iMemoryBuffer::syncSize()
{
    if (pbase())
        m_size = std::max(m_size, static_cast<std::size_t>(pptr() - m_bytes.data()));
}

void iMemoryBuffer::resetPointers(std::size_t readPos, std::size_t writePos)
{
    char* base = m_bytes.data();
    setg(base, base + readPos, base + m_size);
    setp(base, base + m_bytes.size());
    pbump(static_cast<int>(writePos));
}

void iMemoryBuffer::reserve(std::size_t capacity)
{
    if (capacity <= m_bytes.size())
        return;
    std::size_t readPos = gptr() ? static_cast<std::size_t>(gptr() - eback()) : 0;
    std::size_t writePos = pbase() ? static_cast<std::size_t>(pptr() - pbase()) : 0;
    m_bytes.resize(std::max(capacity, m_bytes.size() * 2 + 256));
    resetPointers(readPos, writePos);
}

iMemoryBuffer::int_type iMemoryBuffer::underflow()
{
    syncSize();
    std::size_t readPos = gptr() ? static_cast<std::size_t>(gptr() - eback()) : 0;
    setg(m_bytes.data(), m_bytes.data() + readPos, m_bytes.data() + m_size);
    return gptr() < egptr() ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

iMemoryBuffer::int_type iMemoryBuffer::overflow(int_type c)
{
    if (traits_type::eq_int_type(c, traits_type::eof()))
        return traits_type::not_eof(c);
    char byte = traits_type::to_char_type(c);
    return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

std::streamsize iMemoryBuffer::xsputn(char const* s, std::streamsize n)
{
    if (n <= 0)
        return 0;
    std::size_t writePos = pbase() ? static_cast<std::size_t>(pptr() - pbase()) : 0;
    reserve(writePos + static_cast<std::size_t>(n));
    std::memcpy(pptr(), s, static_cast<std::size_t>(n));
    pbump(static_cast<int>(n));
    syncSize();
    return n;
}

iMemoryBuffer::pos_type iMemoryBuffer::seekoff(off_type off, std::ios_base::seekdir dir,
                                               std::ios_base::openmode which)
{
    syncSize();
    bool const in = (which & std::ios_base::in) != 0;
    bool const out = (which & std::ios_base::out) != 0;
    if (!in && !out)
        return pos_type(off_type(-1));
    off_type current = in ? (gptr() ? gptr() - eback() : 0) : (pbase() ? pptr() - pbase() : 0);
    off_type base = dir == std::ios_base::beg ? 0 : dir == std::ios_base::cur ? current : off_type(m_size);
    off_type target = base + off;
    if (target < 0 || target > off_type(m_size))
        return pos_type(off_type(-1));
    std::size_t readPos = gptr() ? static_cast<std::size_t>(gptr() - eback()) : 0;
    std::size_t writePos = pbase() ? static_cast<std::size_t>(pptr() - pbase()) : 0;
    if (in)
        readPos = static_cast<std::size_t>(target);
    if (out)
        writePos = static_cast<std::size_t>(target);
    resetPointers(readPos, writePos);
    return pos_type(target);
}

iMemoryBuffer::pos_type iMemoryBuffer::seekpos(pos_type pos, std::ios_base::openmode which)
{
    return seekoff(off_type(pos), std::ios_base::beg, which);
}
