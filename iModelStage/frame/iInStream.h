#ifndef IMODELSTAGE_FRAME_IINSTREAM_H
#define IMODELSTAGE_FRAME_IINSTREAM_H

#include <iModelStage/frame/iExport.h>

#include <istream>
#include <string>
#include <vector>

// Binary input in the library's encoding: int and long as 32-bit
// little-endian, double as little-endian binary64, bool as one byte, string
// as an int byte count and the bytes.
//
// Every read either returns a whole value or throws iStreamError and leaves
// the stream failed. A length or count is never trusted: one larger than
// what the stream still holds fails before anything of that size is
// allocated.
class IMODELSTAGE_EXPORT iInStream : public std::istream {
public:
    explicit iInStream(std::streambuf* buffer);

    bool readBool();
    int readInt();
    long readLong();
    double readDouble();
    std::string readString();
    // count doubles in one block.
    void readDoubles(double* values, int count);

    // An int count of elements that take at least bytesPerElement each;
    // negative counts and counts the stream cannot hold fail.
    int readCount(int bytesPerElement);
    // Exactly size raw bytes.
    std::vector<char> readBlock(int size);
    void readRaw(char* into, std::streamsize size);

    // Bytes between the read position and the end, or -1 when the stream
    // cannot tell.
    std::streamoff bytesLeft();
    // Fails when the stream is known to hold fewer than size bytes.
    void requireBytes(std::streamoff size);

    // Leaves the stream failed and throws iStreamError with the reason.
    [[noreturn]] void failWith(char const* what);

private:
    // Fails when the stream is known to hold fewer than size bytes; false
    // when it cannot tell.
    bool checkLarge(std::streamoff size);
    void readChunked(std::string& into, std::streamsize size);
};

#endif
