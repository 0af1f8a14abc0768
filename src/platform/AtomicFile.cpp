#include "platform/AtomicFile.h"

#include "platform/FileSteps.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon::platform {
namespace fs = std::filesystem;

namespace {

std::string describeErrno(int error) {
    return std::strerror(error);
}

FileError writeError(const fs::path& target, int error) {
    return FileError("Could not write “" + target.filename().string() + "”: " + describeErrno(error) + ".");
}

fs::path temporarySibling(const fs::path& target) {
    return target.parent_path() / workFileName::beside(target.filename().string(), ".tmp");
}

/// Folders on file systems that cannot sync a folder (some FUSE mounts) say so with these; the
/// rename there is as durable as that file system makes anything.
bool cannotSyncFolders(int error) {
    return error == EINVAL || error == ENOTSUP || error == ENOSYS;
}

} // namespace

void writeFileAtomically(const fs::path& target, std::string_view bytes, const BeforeReplaceHook& beforeReplace) {
    fs::path temporary = temporarySibling(target);
    int fd = fileSteps::open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    // Two writes of one file in this process may, rarely, draw the same short name.
    for (int attempt = 0; fd < 0 && errno == EEXIST && attempt < 8; ++attempt) {
        temporary = temporarySibling(target);
        fd = fileSteps::open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    }
    if (fd < 0)
        throw writeError(target, errno);
    try {
        if (!fileSteps::writeAll(fd, bytes, temporary) || !fileSteps::sync(fd, temporary))
            throw writeError(target, errno);
        const int closing = fd;
        fd = -1;
        if (!fileSteps::close(closing, temporary))
            throw writeError(target, errno);
        if (beforeReplace)
            beforeReplace(temporary);
        if (!fileSteps::rename(temporary, target))
            throw writeError(target, errno);
    } catch (...) {
        if (fd >= 0)
            ::close(fd);
        ::unlink(temporary.c_str());
        throw;
    }
    // The new file is in place and whole, but until its folder is synced a power cut may bring the
    // old one back: the caller must not count this as saved.
    if (!fileSteps::syncFolder(target.parent_path()) && !cannotSyncFolders(errno))
        throw writeError(target, errno);
}

std::string readFile(const fs::path& file) {
    const std::string name = file.filename().string();
    int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw FileError("Could not open “" + name + "”: " + describeErrno(errno) + ".");
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        throw FileError("“" + name + "” is not a readable file.");
    }
    // One read of the known size; the loop also copes with files that grow or shrink meanwhile.
    std::string bytes(static_cast<size_t>(status.st_size), '\0');
    size_t filled = 0;
    for (;;) {
        if (filled == bytes.size())
            bytes.resize(bytes.size() + 65536);
        ssize_t count = ::read(fd, bytes.data() + filled, bytes.size() - filled);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            int error = errno;
            ::close(fd);
            throw FileError("Could not read “" + name + "”: " + describeErrno(error) + ".");
        }
        if (count == 0)
            break;
        filled += static_cast<size_t>(count);
    }
    ::close(fd);
    bytes.resize(filled);
    return bytes;
}

} // namespace quillon::platform
