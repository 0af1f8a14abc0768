#pragma once

#include "model/DateTime.h"
#include "model/SermonNote.h"
#include "store/SermonBackupManager.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillon::app {

// The controller's long file work in three steps, so the slow middle one can run away from the
// main thread: prepared on the main thread (the checks and a copy of what to write), run
// anywhere (never throws, stops when asked), finished on the main thread (store changes and
// messages). Each outcome says `cancelled` when the work stopped before it changed anything.

/// A backup ready to be written: a copy of the library as it was when the backup was asked for.
struct BackupJob {
    std::vector<model::SermonNote> sermons;
    std::filesystem::path folder;
    std::filesystem::path mediaFolder;
};

struct BackupOutcome {
    std::optional<std::filesystem::path> written;
    /// The sentence under "Backup Failed".
    std::string failure;
    std::size_t sermonCount = 0;
    bool cancelled = false;
};

/// A backup folder read and decoded, ready to replace sermons.
struct RestoreRead {
    std::filesystem::path folder;
    std::optional<store::BackupContents> contents;
    /// The sentence under "Restore Failed".
    std::string failure;
    bool cancelled = false;
};

/// The library archive to write: a copy of the library and the file it goes to.
struct ArchiveJob {
    std::vector<model::SermonNote> sermons;
    std::filesystem::path file;
    model::DateTime exportDate{};
};

struct ArchiveOutcome {
    std::optional<std::filesystem::path> written;
    bool cancelled = false;
};

} // namespace quillon::app
