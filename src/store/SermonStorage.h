#pragma once

#include "model/SermonNote.h"
#include "platform/Preferences.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::store {

/// What one pass over the sermon folder found.
struct SermonLoadResult {
    std::vector<model::SermonNote> sermons;
    /// Sermons a sync client has announced (placeholder file) but not yet downloaded.
    int pendingCount = 0;
};

/// Writes a whole file so that readers see the old or the new bytes, never a mixture; throws on
/// failure. The default is platform::writeFileAtomically; tests inject failing writers.
using SermonFileWriter = std::function<void(const std::filesystem::path& target, std::string_view bytes)>;

/// The sermon files on disk: one pretty-printed JSON file per sermon in "Sermons", cover images in
/// "Media". The root is the sync folder chosen in preferences when it exists (`isUsingCloud`),
/// else the local application data folder; it is worked out again on every access, so a sync
/// folder that is mounted or unmounted while the program runs is followed.
class SermonStorage {
public:
    /// The preference naming the synced folder that stands in for the cloud document container.
    static constexpr const char* syncFolderKey = "Quillon.storage.syncFolder";

    /// Root chosen from `preferences`, which must outlive the storage.
    explicit SermonStorage(const platform::Preferences& preferences);
    /// A fixed root (the command line's --library), never counted as the sync folder.
    static SermonStorage atRoot(std::filesystem::path root);

    std::filesystem::path root() const;
    bool isUsingCloud() const;
    /// "Sermons" and "Media" under the root, created on access (a failure shows in the next read or write).
    std::filesystem::path sermonsFolder() const;
    std::filesystem::path mediaFolder() const;
    /// "<UUID>.json" in the sermon folder.
    std::filesystem::path sermonFile(const model::Uuid& id) const;

    /// Encodes and writes one sermon. On failure logs "Failed to save sermon "<title>": <reason>"
    /// at level error and returns false; nothing is retried.
    bool saveSermon(const model::SermonNote& sermon) const;
    /// Reads every "*.json" file of the sermon folder. Files that cannot be read or decoded are
    /// logged and skipped (never rewritten or removed); placeholders count as pending.
    SermonLoadResult loadAllSermons() const;

    /// Writes "<UUID>_cover.jpg" into the media folder and returns that file name, or nothing
    /// when the write failed (logged).
    std::optional<std::string> saveCoverImage(const model::Uuid& id, std::string_view jpegBytes) const;
    void removeCoverImage(const model::Uuid& id) const;

    /// "Seeded Samples.json" at the root: which shipped samples this library has been given, kept
    /// with the library so that every library (another --library, the sync folder) gets its own.
    std::filesystem::path seededSamplesFile() const;
    /// The sample identities recorded there; nothing when the library has no record yet (a record
    /// that cannot be read counts as none, and is logged).
    std::optional<std::vector<std::string>> seededSampleIds() const;
    /// Records the identities; false when the write failed (logged at level error).
    bool saveSeededSampleIds(const std::vector<std::string>& ids) const;

    void setWriter(SermonFileWriter writer) { m_writer = std::move(writer); }
    const SermonFileWriter& writer() const { return m_writer; }

private:
    SermonStorage(const platform::Preferences* preferences, std::optional<std::filesystem::path> fixedRoot);
    std::optional<std::filesystem::path> syncFolder() const;

    const platform::Preferences* m_preferences = nullptr;
    std::optional<std::filesystem::path> m_fixedRoot;
    SermonFileWriter m_writer;
};

} // namespace quillon::store
