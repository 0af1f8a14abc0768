#include "platform/AtomicFile.h"

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

void writeAll(int fd, std::string_view bytes, const fs::path& target) {
    while (!bytes.empty()) {
        ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            throw writeError(target, errno);
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}

void syncFolder(const fs::path& folder) {
    int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return; // the rename already happened; a folder we cannot open cannot be synced either
    ::fsync(fd);
    ::close(fd);
}

} // namespace

void writeFileAtomically(const fs::path& target, std::string_view bytes, const BeforeReplaceHook& beforeReplace) {
    fs::path temporary = temporarySibling(target);
    int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    // Two writes of one file in this process may, rarely, draw the same short name.
    for (int attempt = 0; fd < 0 && errno == EEXIST && attempt < 8; ++attempt) {
        temporary = temporarySibling(target);
        fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    }
    if (fd < 0)
        throw writeError(target, errno);
    try {
        writeAll(fd, bytes, target);
        if (::fsync(fd) != 0)
            throw writeError(target, errno);
        if (::close(fd) != 0) {
            fd = -1;
            throw writeError(target, errno);
        }
        fd = -1;
        if (beforeReplace)
            beforeReplace(temporary);
        if (::rename(temporary.c_str(), target.c_str()) != 0)
            throw writeError(target, errno);
    } catch (...) {
        if (fd >= 0)
            ::close(fd);
        ::unlink(temporary.c_str());
        throw;
    }
    syncFolder(target.parent_path());
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
