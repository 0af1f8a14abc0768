#pragma once

#include <filesystem>
#include <functional>
#include <string_view>
#include <sys/types.h>

namespace quillon::platform {

/// The steps of writing a file the program owns, each of which a disk can refuse.
enum class FileStep { open, write, sync, close, rename, syncFolder };

/// Test seam: asked before each step with the file it concerns (the folder for syncFolder);
/// returns 0 to let the step run, or the errno value the step then fails with.
using FileFault = std::function<int(FileStep step, const std::filesystem::path& file)>;

/// Makes every file write of the process ask `fault` while the guard lives. One at a time; for
/// tests only, installed while no write is under way.
class ScopedFileFault {
public:
    explicit ScopedFileFault(FileFault fault);
    ~ScopedFileFault();
    ScopedFileFault(const ScopedFileFault&) = delete;
    ScopedFileFault& operator=(const ScopedFileFault&) = delete;

private:
    FileFault m_fault;
};

/// The system calls behind atomic writes, backups and restores. Each reports failure as false
/// (or -1) with errno set, as the call itself does.
namespace fileSteps {

int open(const std::filesystem::path& file, int flags, mode_t mode);
/// Writes all of `bytes`, resuming after interruptions and short writes. A refused write may
/// have written part of the bytes first, as a disk that fills up does.
bool writeAll(int fd, std::string_view bytes, const std::filesystem::path& file);
bool sync(int fd, const std::filesystem::path& file);
/// Closes `fd` in every case; false when the close reported a delayed write error.
bool close(int fd, const std::filesystem::path& file);
bool rename(const std::filesystem::path& from, const std::filesystem::path& to);
/// A rename that never replaces an existing `to` (fails with EEXIST or ENOTEMPTY).
bool renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to);
/// Syncs `folder` itself, so the renames in it survive a power cut.
bool syncFolder(const std::filesystem::path& folder);

} // namespace fileSteps

} // namespace quillon::platform
