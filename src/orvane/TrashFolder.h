#pragma once

#include "platform/Clock.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// One discarded item as it lies in a trash folder: its identity (the file name without ".json"),
/// its encoded bytes and the moment it was discarded.
struct TrashedItem {
    std::string id;
    std::string bytes;
    std::chrono::system_clock::time_point trashedAt;
};

/// A folder of discarded items, one file "<id>.json" per item, written atomically. The file's
/// modification time is the moment the item was discarded, so the trash needs no index file that
/// could disagree with the folder. The folder knows nothing about what the bytes mean.
///
/// Identities must be plain file-name stems: empty text, ".", "..", or text holding "/" or a NUL
/// never names a file here (lookups find nothing, `put` throws).
class TrashFolder {
public:
    TrashFolder(std::filesystem::path folder, const quillon::platform::Clock& clock);

    const std::filesystem::path& folder() const { return m_folder; }

    /// Writes the item and stamps the file with the clock's now, which is returned. Creates the
    /// folder when needed. Throws platform::FileError; on failure nothing is left behind.
    std::chrono::system_clock::time_point put(std::string_view id, std::string_view bytes);

    /// Every "*.json" file of the folder; unreadable files are left out. Oldest first.
    std::vector<TrashedItem> items() const;
    std::optional<TrashedItem> item(std::string_view id) const;

    /// Removes the item's file; false when there was none.
    bool remove(std::string_view id);

    /// Removes every item discarded before `cutoff` and returns their identities.
    std::vector<std::string> removeOlderThan(std::chrono::system_clock::time_point cutoff);

    /// `now` moved back by `days` calendar days in local time: the same wall-clock time on the
    /// earlier date, so a daylight-saving change in between shifts the result by an hour rather
    /// than changing which day it falls on.
    static std::chrono::system_clock::time_point calendarDaysBefore(std::chrono::system_clock::time_point now,
                                                                    int days);

    static bool isUsableId(std::string_view id);

private:
    std::filesystem::path fileFor(std::string_view id) const;

    std::filesystem::path m_folder;
    const quillon::platform::Clock& m_clock;
};

} // namespace orvane
