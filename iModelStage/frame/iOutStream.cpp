#include <iModelStage/frame/iOutStream.h>

#include <iModelStage/frame/iStreamError.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

namespace {

void encode32(std::uint32_t value, char* out)
{
    out[0] = static_cast<char>(value & 0xff);
    out[1] = static_cast<char>((value >> 8) & 0xff);
    out[2] = static_cast<char>((value >> 16) & 0xff);
    out[3] = static_cast<char>((value >> 24) & 0xff);
}

void encodeDouble(double value, char* out)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    encode32(static_cast<std::uint32_t>(bits), out);
    encode32(static_cast<std::uint32_t>(bits >> 32), out + 4);
}

// The put area of any stream buffer. Its pointers are protected; a member
// pointer named through a derived class is the lawful way to reach them.
struct PutArea : std::streambuf {
    static char* next(std::streambuf* buffer) { return (buffer->*&PutArea::pptr)(); }
    static std::streamsize room(std::streambuf* buffer) { return (buffer->*&PutArea::epptr)() - next(buffer); }
    static void skip(std::streambuf* buffer, std::streamsize size)
    {
        (buffer->*&PutArea::pbump)(static_cast<int>(size));
    }

    // Copies size bytes into the put area if they fit there.
    static bool tryPut(std::streambuf* buffer, char const* data, std::streamsize size)
    {
        if (size == 0)
            return true;
        if (room(buffer) < size)
            return false;
        std::memcpy(next(buffer), data, static_cast<std::size_t>(size));
        skip(buffer, size);
        return true;
    }
};

// A value of N bytes: one fixed-size copy when the put area has room.
template <std::size_t N>
void writeFixed(iOutStream& stream, char const* data)
{
    std::streambuf* buffer = stream.rdbuf();
    if (stream.good() && buffer && PutArea::room(buffer) >= static_cast<std::streamsize>(N)) {
        std::memcpy(PutArea::next(buffer), data, N);
        PutArea::skip(buffer, N);
        return;
    }
    stream.writeRaw(data, N);
}

} // namespace

iOutStream::iOutStream(std::streambuf* buffer) : std::ostream(buffer) {}

void iOutStream::failWith(char const* what)
{
    try {
        setstate(std::ios_base::badbit);
    } catch (std::ios_base::failure const&) {
        // The stream asked for its own exception; ours carries the reason.
    }
    throw iStreamError(what);
}

void iOutStream::patchInt(std::streampos position, int const& value)
{
    std::streampos const end = tellp();
    seekp(position);
    writeInt(value);
    seekp(end);
}

void iOutStream::writeRaw(char const* data, std::streamsize size)
{
    if (size < 0)
        failWith("negative size");
    if (!good() || !rdbuf())
        failWith("write to a failed stream");
    std::streambuf* buffer = rdbuf();
    // Values go straight into the put area when they fit: a call per byte
    // or per value dominated writing large documents.
    if (PutArea::tryPut(buffer, data, size))
        return;
    if (buffer->sputn(data, size) != size)
        failWith("write error");
}

void iOutStream::writeBool(bool const& value)
{
    char byte = value ? 1 : 0;
    writeFixed<1>(*this, &byte);
}

void iOutStream::writeInt(int const& value)
{
    char bytes[4];
    encode32(static_cast<std::uint32_t>(value), bytes);
    writeFixed<4>(*this, bytes);
}

void iOutStream::writeLong(long const& value)
{
    char bytes[4];
    encode32(static_cast<std::uint32_t>(static_cast<unsigned long>(value)), bytes);
    writeFixed<4>(*this, bytes);
}

void iOutStream::writeDouble(double const& value)
{
    char bytes[8];
    encodeDouble(value, bytes);
    writeFixed<8>(*this, bytes);
}

void iOutStream::writeDoubles(double const* values, int count)
{
    char bytes[8 * 16];
    for (int done = 0; done < count;) {
        int const step = std::min(count - done, 16);
        for (int i = 0; i < step; ++i)
            encodeDouble(values[done + i], bytes + 8 * i);
        writeRaw(bytes, 8 * step);
        done += step;
    }
}

void iOutStream::writeString(std::string const& value)
{
    if (value.size() > static_cast<std::size_t>(INT_MAX))
        failWith("string too long");
    writeInt(static_cast<int>(value.size()));
    writeRaw(value.data(), static_cast<std::streamsize>(value.size()));
}
