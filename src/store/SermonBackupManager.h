#pragma once

#include "model/SermonNote.h"
#include "platform/Clock.h"
#include "platform/Preferences.h"
#include "store/BackupError.h"
#include "store/VolumeFigures.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon::store {

class SermonNotesManager;

/// "manifest.json" of a backup.
struct BackupManifest {
    int formatVersion = 1;
    model::DateTime createdAt{};
    int sermonCount = 0;
    std::string appVersion = "unknown";

    bool operator==(const BackupManifest&) const = default;
};

/// A backup folder read and decoded, before anything of the library changes.
struct BackupContents {
    std::filesystem::path folder;
    /// Absent when the backup has no readable manifest.
    std::optional<BackupManifest> manifest;
    std::vector<model::SermonNote> sermons;
};

/// What a restore brought back.
struct RestoreResult {
    /// Absent when the backup has no readable manifest.
    std::optional<BackupManifest> manifest;
    int sermonsRestored = 0;
    int coverImagesRestored = 0;
};

/// User-started backups of the whole library into a folder "Quillon Backup <date>.quillonbackup"
/// holding "sermons.json" (the library archive), "Media" (cover images) and "manifest.json", and
/// restores from such a folder.
///
/// A backup is assembled in a hidden folder beside its final place and renamed into place only
/// when complete, so a failure leaves no half backup. A restore reads and decodes everything
/// before it changes the library, and copies only plain files with plain names into the library's
/// "Media" folder (never over an existing file); anything else in a backup is skipped and logged.
class SermonBackupManager {
public:
    static constexpr const char* storageWarningThresholdKey = "Quillon.storageWarningThresholdPercent";
    static constexpr double defaultStorageWarningThreshold = 10;

    /// Brings restored sermons into the library with `replaceDuplicates` and returns how many it
    /// added or replaced: the store's import.
    using SermonImporter = std::function<int(const std::vector<model::SermonNote>&)>;
    using MediaFolderProvider = std::function<std::filesystem::path()>;

    /// `preferences` and `clock` must outlive the manager.
    SermonBackupManager(MediaFolderProvider mediaFolder, const platform::Preferences& preferences,
                        const platform::Clock& clock = platform::SystemClock::shared(),
                        VolumeFiguresReader volumeFigures = readVolumeFigures);

    /// Writes a new backup folder inside `destinationFolder` (created when needed) and returns its
    /// location: backupFolderName, or that name with " 2", " 3", … before its extension when a
    /// backup of the same second is already there. Throws BackupError (no sermons, encoding failed) or
    /// platform::FileError.
    std::filesystem::path backUp(const std::vector<model::SermonNote>& sermons,
                                 const std::filesystem::path& destinationFolder) const;
    /// The same, stopping when `stop` is requested before the backup is whole: then nothing is
    /// returned and nothing of it is left behind. Safe on a worker thread while the manager lives.
    std::optional<std::filesystem::path> backUp(const std::vector<model::SermonNote>& sermons,
                                                const std::filesystem::path& destinationFolder,
                                                std::stop_token stop) const;

    /// Reads and decodes the backup in `backupFolder` without touching the library: the slow half
    /// of a restore, safe on a worker thread. Throws BackupError (not a backup) or
    /// platform::FileError.
    static BackupContents read(const std::filesystem::path& backupFolder);

    /// Restores the backup in `backupFolder`. Throws BackupError (not a backup) or
    /// platform::FileError; on a throw the library is as it was.
    RestoreResult restore(const std::filesystem::path& backupFolder, const SermonImporter& importSermons) const;
    /// Restores a backup already read.
    RestoreResult restore(const BackupContents& contents, const SermonImporter& importSermons) const;

    /// Restores into the store through its import with `replaceDuplicates`. The sermon files are
    /// all written, then synced once and renamed into place; when one cannot be written none is,
    /// and the store is read back from disk so memory and files agree again.
    RestoreResult restoreInto(SermonNotesManager& store, const std::filesystem::path& backupFolder) const;
    RestoreResult restoreInto(SermonNotesManager& store, const BackupContents& contents) const;

    /// The available bytes at `location` when its free share is at or below the threshold.
    std::optional<std::uint64_t> freeSpaceWarning(const std::filesystem::path& location) const;
    double storageWarningThreshold() const;

    /// "Quillon Backup 2025-03-09 14-30-00.quillonbackup", in local time.
    static std::string backupFolderName(std::chrono::system_clock::time_point time);
    static BackupManifest decodeManifest(const std::string& bytes);
    static std::string encodeManifest(const BackupManifest& manifest);

private:
    MediaFolderProvider m_mediaFolder;
    const platform::Preferences& m_preferences;
    const platform::Clock& m_clock;
    VolumeFiguresReader m_volumeFigures;
};

/// Title of the alert shown before a backup to a nearly full volume.
inline constexpr const char* lowOnStorageTitle = "Low on Storage";
/// The alert's sentence before a backup.
std::string lowStorageBeforeBackupMessage(std::uint64_t availableBytes);
/// The note in the new-sermon form when the library's volume is nearly full.
std::string lowStorageForNewSermonMessage(std::uint64_t availableBytes);
/// "Restored 3 sermons and 1 cover image."
std::string restoreCompleteMessage(const RestoreResult& result);

} // namespace quillon::store
