#include <iModelStage/frame/iInStream.h>

#include <iModelStage/frame/iStreamError.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

// On a stream that cannot tell its size, lengths up to this size are
// allocated before the read; larger ones grow with the bytes that arrive.
constexpr std::streamsize kTrustedSize = 4096;
// Sizes that need no allocation of their own.
constexpr std::streamoff kInlineSize = 15;
// Reading from a stream that cannot tell its size grows the target by at
// most this much beyond what has actually arrived.
constexpr std::streamsize kChunkSize = 1 << 16;

std::uint32_t decode32(unsigned char const* b)
{
    return std::uint32_t(b[0]) | std::uint32_t(b[1]) << 8 | std::uint32_t(b[2]) << 16 | std::uint32_t(b[3]) << 24;
}

double decodeDouble(unsigned char const* bytes)
{
    std::uint64_t bits = std::uint64_t(decode32(bytes)) | std::uint64_t(decode32(bytes + 4)) << 32;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// The get area of any stream buffer. Its pointers are protected; a member
// pointer named through a derived class is the lawful way to reach them.
struct GetArea : std::streambuf {
    static char* next(std::streambuf* buffer) { return (buffer->*&GetArea::gptr)(); }
    static std::streamsize held(std::streambuf* buffer) { return (buffer->*&GetArea::egptr)() - next(buffer); }
    static void skip(std::streambuf* buffer, std::streamsize size)
    {
        (buffer->*&GetArea::gbump)(static_cast<int>(size));
    }

    // Copies size bytes out of the get area if it holds them.
    static bool tryGet(std::streambuf* buffer, char* into, std::streamsize size)
    {
        if (size == 0)
            return true;
        if (held(buffer) < size)
            return false;
        std::memcpy(into, next(buffer), static_cast<std::size_t>(size));
        skip(buffer, size);
        return true;
    }
};

// A value of N bytes: one fixed-size copy when the get area holds it.
template <std::size_t N>
void readFixed(iInStream& stream, unsigned char* into)
{
    std::streambuf* buffer = stream.rdbuf();
    if (stream.good() && buffer && GetArea::held(buffer) >= static_cast<std::streamsize>(N)) {
        std::memcpy(into, GetArea::next(buffer), N);
        GetArea::skip(buffer, N);
        return;
    }
    stream.readRaw(reinterpret_cast<char*>(into), N);
}

} // namespace

iInStream::iInStream(std::streambuf* buffer) : std::istream(buffer) {}

void iInStream::failWith(char const* what)
{
    try {
        setstate(std::ios_base::failbit);
    } catch (std::ios_base::failure const&) {
        // The stream asked for its own exception; ours carries the reason.
    }
    throw iStreamError(what);
}

void iInStream::readRaw(char* into, std::streamsize size)
{
    if (size < 0)
        failWith("negative size");
    if (!good() || !rdbuf())
        failWith("read from a failed stream");
    std::streambuf* buffer = rdbuf();
    // Values come straight from the get area when it holds them: a call per
    // byte or per value dominated reading large documents.
    if (GetArea::tryGet(buffer, into, size))
        return;
    if (buffer->sgetn(into, size) != size)
        failWith("stream ends too early");
}

bool iInStream::readBool()
{
    unsigned char byte = 0;
    readFixed<1>(*this, &byte);
    return byte != 0;
}

int iInStream::readInt()
{
    unsigned char bytes[4];
    readFixed<4>(*this, bytes);
    return static_cast<std::int32_t>(decode32(bytes));
}

long iInStream::readLong()
{
    return static_cast<long>(readInt());
}

double iInStream::readDouble()
{
    unsigned char bytes[8];
    readFixed<8>(*this, bytes);
    return decodeDouble(bytes);
}

void iInStream::readDoubles(double* values, int count)
{
    unsigned char bytes[8 * 16];
    for (int done = 0; done < count;) {
        int const step = std::min(count - done, 16);
        readRaw(reinterpret_cast<char*>(bytes), 8 * step);
        for (int i = 0; i < step; ++i)
            values[done + i] = decodeDouble(bytes + 8 * i);
        done += step;
    }
}

std::streamoff iInStream::bytesLeft()
{
    if (!good() || !rdbuf())
        return 0;
    std::streambuf* buffer = rdbuf();
    std::streampos here = buffer->pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    if (here == std::streampos(-1))
        return -1;
    std::streampos end = buffer->pubseekoff(0, std::ios_base::end, std::ios_base::in);
    buffer->pubseekpos(here, std::ios_base::in);
    if (end == std::streampos(-1))
        return -1;
    return std::max<std::streamoff>(0, end - here);
}

void iInStream::requireBytes(std::streamoff size)
{
    if (size < 0)
        failWith("negative size");
    checkLarge(size);
}

void iInStream::readChunked(std::string& into, std::streamsize size)
{
    // Only used when the stream cannot tell its size: the target grows with
    // the bytes that really arrive, so a lying length costs one chunk.
    std::streamsize done = 0;
    while (done < size) {
        std::streamsize step = std::min(kChunkSize, size - done);
        into.resize(static_cast<std::size_t>(done + step));
        readRaw(&into[static_cast<std::size_t>(done)], step);
        done += step;
    }
}

bool iInStream::checkLarge(std::streamoff size)
{
    // A size this small allocates nothing (a short string lives inside its
    // object); what is already buffered answers most other cases without
    // moving the stream; only a value that runs past the buffer measures
    // the rest.
    if (size <= kInlineSize || (rdbuf() && size <= rdbuf()->in_avail()))
        return true;
    std::streamoff left = bytesLeft();
    if (left >= 0 && size > left)
        failWith("size larger than the stream");
    return left >= 0;
}

std::string iInStream::readString()
{
    int size = readInt();
    if (size < 0)
        failWith("negative string length");
    if (size == 0)
        return std::string();
    // Bytes already at hand are taken in one copy, with no zero fill.
    std::streambuf* buffer = rdbuf();
    if (good() && buffer && GetArea::held(buffer) >= size) {
        std::string held(GetArea::next(buffer), static_cast<std::size_t>(size));
        GetArea::skip(buffer, size);
        return held;
    }
    std::string text;
    // A stream that cannot tell its size gets a string at most a chunk
    // longer than the bytes that really came.
    if (!checkLarge(size) && size > kTrustedSize) {
        readChunked(text, size);
        return text;
    }
    text.resize(static_cast<std::size_t>(size));
    readRaw(&text[0], size);
    return text;
}

int iInStream::readCount(int bytesPerElement)
{
    int count = readInt();
    if (count < 0)
        failWith("negative count");
    checkLarge(static_cast<std::streamoff>(count) * std::max(bytesPerElement, 0));
    return count;
}

std::vector<char> iInStream::readBlock(int size)
{
    if (size < 0)
        failWith("negative block size");
    if (size == 0)
        return {};
    if (!checkLarge(size) && size > kTrustedSize) {
        std::string grown;
        readChunked(grown, size);
        return std::vector<char>(grown.begin(), grown.end());
    }
    std::vector<char> block(static_cast<std::size_t>(size));
    readRaw(block.data(), size);
    return block;
}
