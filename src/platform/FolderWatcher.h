#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillon::platform {

/// Watches one folder (not its sub-folders) for files that appear, change, move or disappear,
/// through inotify. The descriptor becomes readable when something changed, so an event loop can
/// wait on it beside its other sources; readChanges() then drains what happened.
class FolderWatcher {
public:
    /// Throws FileError when the folder cannot be watched (missing, no inotify descriptors left).
    explicit FolderWatcher(const std::filesystem::path& folder);
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;

    const std::filesystem::path& folder() const { return m_folder; }
    /// Non-blocking; readable while changes are waiting.
    int fileDescriptor() const { return m_fd; }

    /// The names of the entries that changed since the last call (duplicates removed, in the order
    /// first seen); empty when nothing is waiting. Never blocks.
    std::vector<std::string> readChanges();
    /// Waits up to `timeoutMilliseconds` for a change; true when one is waiting.
    bool waitForChanges(int timeoutMilliseconds) const;

private:
    std::filesystem::path m_folder;
    int m_fd = -1;
};

} // namespace quillon::platform
