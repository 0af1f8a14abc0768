#include "platform/FileSteps.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

namespace quillon::platform {
namespace fs = std::filesystem;

namespace {

std::atomic<const FileFault*> installedFault{nullptr};

/// True when the seam refuses `step`, with errno set to its answer.
bool refused(FileStep step, const fs::path& file) {
    const FileFault* fault = installedFault.load(std::memory_order_acquire);
    if (!fault)
        return false;
    const int error = (*fault)(step, file);
    if (error == 0)
        return false;
    errno = error;
    return true;
}

bool writeSome(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

ScopedFileFault::ScopedFileFault(FileFault fault) : m_fault(std::move(fault)) {
    installedFault.store(&m_fault, std::memory_order_release);
}

ScopedFileFault::~ScopedFileFault() {
    installedFault.store(nullptr, std::memory_order_release);
}

namespace fileSteps {

int open(const fs::path& file, int flags, mode_t mode) {
    if (refused(FileStep::open, file))
        return -1;
    return ::open(file.c_str(), flags, mode);
}

bool writeAll(int fd, std::string_view bytes, const fs::path& file) {
    if (refused(FileStep::write, file)) {
        const int error = errno;
        writeSome(fd, bytes.substr(0, bytes.size() / 2));
        errno = error;
        return false;
    }
    return writeSome(fd, bytes);
}

bool sync(int fd, const fs::path& file) {
    return !refused(FileStep::sync, file) && ::fsync(fd) == 0;
}

bool close(int fd, const fs::path& file) {
    if (refused(FileStep::close, file)) {
        const int error = errno;
        ::close(fd);
        errno = error;
        return false;
    }
    // Linux releases the descriptor even when close reports an error, so it is never retried.
    return ::close(fd) == 0;
}

bool rename(const fs::path& from, const fs::path& to) {
    return !refused(FileStep::rename, to) && ::rename(from.c_str(), to.c_str()) == 0;
}

bool renameNoReplace(const fs::path& from, const fs::path& to) {
    return !refused(FileStep::rename, to) &&
           ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

bool syncFolder(const fs::path& folder) {
    if (refused(FileStep::syncFolder, folder))
        return false;
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    const int error = errno;
    ::close(fd);
    errno = error;
    return synced;
}

} // namespace fileSteps

} // namespace quillon::platform
