#ifndef IMODELSTAGE_FRAME_ISAFEFILEWRITER_H
#define IMODELSTAGE_FRAME_ISAFEFILEWRITER_H

#include <iModelStage/frame/iExport.h>

#include <memory>
#include <streambuf>
#include <string>

// Writes a file so that a failure never costs the file it was to replace.
//
// The bytes go to a new file, created exclusively next to the target, and
// that file takes the target's place by one atomic rename only once the
// last byte is written and on disk. Until then the target is untouched; on
// any failure the new file is removed and error() says why.
//
//     iSafeFileWriter writer;
//     if (writer.open(path)) {
//         iOutStream stream(writer.buffer());
//         ... write ...
//         writer.commit();
//     }
//     if (!writer.error().empty()) tell the user writer.error()
class IMODELSTAGE_EXPORT iSafeFileWriter {
public:
    iSafeFileWriter();
    // Discards a file that was not committed.
    ~iSafeFileWriter();
    iSafeFileWriter(iSafeFileWriter const&) = delete;
    iSafeFileWriter& operator=(iSafeFileWriter const&) = delete;

    // Creates the new file beside path. Fails for an empty path, a path
    // that is a folder, a target that is read-only and a folder that is
    // missing or not writable. A link at path is followed, so that a
    // document kept behind a link is saved where it lives, unless
    // followLink is false: then the link itself is replaced, as files in a
    // shared folder want.
    bool open(std::string const& path, bool followLink = true);
    // Where to write; null before open succeeds.
    std::streambuf* buffer();
    // Flushes and syncs the new file and renames it over the target. The
    // new file keeps the permissions of the file it replaces.
    bool commit();
    // Removes the new file; the target stays as it was.
    void discard();
    // Gives up a file whose writer failed: discards it and keeps the reason,
    // the write error when there was one.
    void abandon();

    // Empty while nothing failed.
    std::string const& error() const { return m_error; }

    // Creates path exclusively, never through a link, as an empty file
    // that only its creator can read. False when anything stands at path.
    static bool createExclusive(std::string const& path);
    // A fresh random token of hexadecimal digits, for names that nobody can
    // guess in advance.
    static std::string randomToken();

private:
    class Buffer;

    bool fail(std::string const& what, int error);

    std::unique_ptr<Buffer> m_buffer;
    std::string m_path;
    std::string m_tempPath;
    unsigned int m_mode = 0;
    std::string m_error;
};

#endif
