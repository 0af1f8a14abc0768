#include "platform/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <random>
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
    static thread_local std::mt19937_64 random{std::random_device{}()};
    char suffix[17];
    std::snprintf(suffix, sizeof suffix, "%016llx", static_cast<unsigned long long>(random()));
    return target.parent_path() / ("." + target.filename().string() + "." + suffix + ".tmp");
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
    const fs::path temporary = temporarySibling(target);
    int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
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
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        throw FileError("“" + file.filename().string() + "” is not a readable file.");
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw FileError("Could not open “" + file.filename().string() + "”: " + describeErrno(errno) + ".");
    std::string bytes;
    in.seekg(0, std::ios::end);
    auto size = in.tellg();
    if (size > 0)
        bytes.reserve(static_cast<size_t>(size));
    in.seekg(0, std::ios::beg);
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad())
        throw FileError("Could not read “" + file.filename().string() + "”.");
    return bytes;
}

} // namespace quillon::platform
