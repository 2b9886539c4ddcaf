#include <iModelStage/frame/iSafeFileWriter.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

namespace {

int const tempAttempts = 16;

std::string folderOf(std::string const& path)
{
    std::string::size_type const slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string baseNameOf(std::string const& path)
{
    std::string::size_type const slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// A document kept behind a link is saved where the link points, so that
// the link survives the save.
std::string resolveLink(std::string const& path)
{
    struct stat info;
    if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
        return path;
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

void syncFolder(std::string const& folder)
{
    int const fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace

// A write buffer over a file descriptor that remembers the first error, so
// that the reason for a failed save survives the stream's exception.
class iSafeFileWriter::Buffer : public std::streambuf {
public:
    explicit Buffer(int fd) : m_fd(fd), m_data(1 << 16) { resetPutArea(); }
    ~Buffer() override
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Buffer(Buffer const&) = delete;
    Buffer& operator=(Buffer const&) = delete;

    int fd() const { return m_fd; }
    int error() const { return m_error; }

    // Writes out what is buffered, syncs and closes; false on any failure.
    bool finish()
    {
        if (!flushPutArea())
            return false;
        if (::fsync(m_fd) != 0)
            return record(errno);
        int const fd = m_fd;
        m_fd = -1;
        if (::close(fd) != 0)
            return record(errno);
        return true;
    }

protected:
    int_type overflow(int_type ch) override
    {
        if (!flushPutArea())
            return traits_type::eof();
        if (!traits_type::eq_int_type(ch, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(ch);
            pbump(1);
        }
        return traits_type::not_eof(ch);
    }

    int sync() override { return flushPutArea() ? 0 : -1; }

    pos_type seekoff(off_type offset, std::ios_base::seekdir dir, std::ios_base::openmode which) override
    {
        if (!(which & std::ios_base::out) || m_error != 0 || m_fd < 0)
            return pos_type(off_type(-1));
        // Asking where the stream is needs no write.
        if (offset == 0 && dir == std::ios_base::cur)
            return pos_type(m_position + (pptr() - pbase()));
        if (!flushPutArea())
            return pos_type(off_type(-1));
        int const whence = dir == std::ios_base::beg ? SEEK_SET : dir == std::ios_base::cur ? SEEK_CUR : SEEK_END;
        off_t const position = ::lseek(m_fd, offset, whence);
        if (position < 0) {
            record(errno);
            return pos_type(off_type(-1));
        }
        m_position = position;
        return pos_type(position);
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode which) override
    {
        return seekoff(off_type(position), std::ios_base::beg, which);
    }

private:
    void resetPutArea() { setp(m_data.data(), m_data.data() + m_data.size()); }

    bool record(int error)
    {
        if (m_error == 0)
            m_error = error != 0 ? error : EIO;
        return false;
    }

    bool flushPutArea()
    {
        if (m_error != 0 || m_fd < 0)
            return false;
        char const* next = pbase();
        while (next < pptr()) {
            ssize_t const written = ::write(m_fd, next, static_cast<std::size_t>(pptr() - next));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return record(written < 0 ? errno : EIO);
            next += written;
            m_position += written;
        }
        resetPutArea();
        return true;
    }

    int m_fd;
    std::vector<char> m_data;
    off_t m_position = 0;
    int m_error = 0;
};

iSafeFileWriter::iSafeFileWriter() = default;

iSafeFileWriter::~iSafeFileWriter()
{
    discard();
}

bool iSafeFileWriter::fail(std::string const& what, int error)
{
    m_error = what + " \"" + m_path + "\": " + std::strerror(error);
    discard();
    return false;
}

bool iSafeFileWriter::open(std::string const& path, bool followLink)
{
    discard();
    m_error.clear();
    m_path = path;
    if (path.empty())
        return fail("cannot save without a file name", ENOENT);
    if (followLink)
        m_path = resolveLink(path);

    bool replacing = false;
    struct stat info;
    if (::lstat(m_path.c_str(), &info) == 0 && !S_ISLNK(info.st_mode)) {
        if (S_ISDIR(info.st_mode))
            return fail("cannot save over the folder", EISDIR);
        // A file without any write permission is read-only to its user,
        // whoever runs the program.
        if (::access(m_path.c_str(), W_OK) != 0 || (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
            return fail("cannot replace the read-only file", EACCES);
        replacing = true;
        m_mode = info.st_mode & 07777;
    }

    std::string const stem = folderOf(m_path) + "/." + baseNameOf(m_path) + ".";
    for (int attempt = 0; attempt < tempAttempts; ++attempt) {
        std::string const candidate = stem + randomToken() + ".tmp";
        int const fd
            = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, replacing ? 0600 : 0666);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            return fail("cannot write", errno);
        }
        m_tempPath = candidate;
        m_buffer = std::make_unique<Buffer>(fd);
        if (replacing && ::fchmod(fd, static_cast<mode_t>(m_mode)) != 0)
            return fail("cannot write", errno);
        return true;
    }
    return fail("cannot write", EEXIST);
}

std::streambuf* iSafeFileWriter::buffer()
{
    return m_buffer.get();
}

bool iSafeFileWriter::commit()
{
    if (!m_buffer)
        return m_error.empty() ? fail("cannot write", EBADF) : false;
    if (!m_buffer->finish())
        return fail("cannot write", m_buffer->error());
    if (::rename(m_tempPath.c_str(), m_path.c_str()) != 0)
        return fail("cannot replace", errno);
    m_tempPath.clear();
    m_buffer.reset();
    syncFolder(folderOf(m_path));
    return true;
}

void iSafeFileWriter::discard()
{
    m_buffer.reset();
    if (!m_tempPath.empty())
        ::unlink(m_tempPath.c_str());
    m_tempPath.clear();
}

void iSafeFileWriter::abandon()
{
    if (!m_buffer)
        return;
    fail("cannot write", m_buffer->error() != 0 ? m_buffer->error() : EIO);
}

bool iSafeFileWriter::createExclusive(std::string const& path)
{
    int const fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    ::close(fd);
    return true;
}

std::string iSafeFileWriter::randomToken()
{
    static std::random_device device;
    std::uint64_t const value = (static_cast<std::uint64_t>(device()) << 32) ^ device();
    static char const digits[] = "0123456789abcdef";
    std::string token(16, '0');
    for (int i = 0; i < 16; ++i)
        token[static_cast<std::size_t>(i)] = digits[(value >> (4 * i)) & 0xf];
    return token;
}
