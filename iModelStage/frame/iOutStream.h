#ifndef IMODELSTAGE_FRAME_IOUTSTREAM_H
#define IMODELSTAGE_FRAME_IOUTSTREAM_H

#include <iModelStage/frame/iExport.h>

#include <ostream>
#include <string>

// Binary output in the library's encoding (see iInStream). A value that
// cannot be written throws iStreamError and leaves the stream bad.
class IMODELSTAGE_EXPORT iOutStream : public std::ostream {
public:
    explicit iOutStream(std::streambuf* buffer);

    void writeBool(bool const& value);
    void writeInt(int const& value);
    // The low 32 bits; ids and positions fit there.
    void writeLong(long const& value);
    void writeDouble(double const& value);
    void writeString(std::string const& value);
    // count doubles in one block.
    void writeDoubles(double const* values, int count);
    void writeRaw(char const* data, std::streamsize size);
    // Overwrites the int written at position, for sizes and counts known
    // only later, and returns to where the stream was.
    void patchInt(std::streampos position, int const& value);

    // Leaves the stream failed and throws iStreamError with the reason.
    [[noreturn]] void failWith(char const* what);
};

#endif
