#pragma once

#include "model/SermonNote.h"
#include "platform/Clock.h"
#include "platform/FolderWatcher.h"
#include "platform/Preferences.h"
#include "store/SermonStorage.h"
#include "store/UndoCheckpoint.h"
#include "store/VersionHistoryHook.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillon::store {

/// Owns the library of sermons in memory and on disk: loads it, saves each change at once with an
/// undo checkpoint, keeps pinned, hidden and selected sermons across launches, merges changes that
/// arrive through the sync folder, imports, duplicates and archives sermons.
///
/// Runs on the caller's (main) thread. Write failures never interrupt an edit: they are logged by
/// the storage, the in-memory change stays and the next update of that sermon writes it again.
class SermonNotesManager {
public:
    static constexpr std::size_t undoLimit = 100;
    static constexpr const char* selectedSermonKey = "Quillon.selectedSermonId";
    static constexpr const char* hiddenSermonsKey = "Quillon.hiddenSermonIds";
    static constexpr const char* pinnedSermonsKey = "Quillon.pinnedSermonIds";
    static constexpr const char* sampleSermonsHiddenKey = "Quillon.sampleSermonsHidden";
    /// Where earlier versions kept the seeded samples, once for every library; carried over into
    /// the library that was in use, then removed.
    static constexpr const char* sampleSermonsSeededKey = "Quillon.sampleSermonsSeeded";
    static constexpr const char* undoCoalesceIntervalKey = "Quillon.timing.undoCoalesceInterval";
    static constexpr double defaultUndoCoalesceInterval = 0.9;

    /// `storage`, `preferences` and `clock` must outlive the manager.
    SermonNotesManager(SermonStorage& storage, platform::Preferences& preferences,
                       const platform::Clock& clock = platform::SystemClock::shared());

    const std::vector<model::SermonNote>& sermons() const { return m_sermons; }
    /// The sermon with `id`, or null.
    const model::SermonNote* sermon(const model::Uuid& id) const;
    std::optional<model::Uuid> currentSermonId() const { return m_currentSermonId; }
    /// Makes `id` current and remembers it for the next launch.
    void setCurrentSermonId(std::optional<model::Uuid> id);
    const std::string& lastSyncStatus() const { return m_lastSyncStatus; }
    std::optional<model::DateTime> lastSavedAt() const { return m_lastSavedAt; }
    const std::set<model::Uuid>& hiddenSermonIds() const { return m_hiddenSermonIds; }
    const std::set<model::Uuid>& pinnedSermonIds() const { return m_pinnedSermonIds; }
    void setPinned(const model::Uuid& id, bool pinned);
    void setHidden(const model::Uuid& id, bool hidden);
    const std::deque<UndoCheckpoint>& undoStack() const { return m_undoStack; }
    const std::deque<UndoCheckpoint>& redoStack() const { return m_redoStack; }
    bool isApplyingUndoRedo() const { return m_isApplyingUndoRedo; }
    SermonStorage& storage() { return m_storage; }

    /// Told before a sermon is replaced by an edit (never during undo or redo); may be null.
    void setVersionHistoryHook(VersionHistoryHook* hook) { m_versionHistory = hook; }

    /// Reads every sermon, restores pinned, hidden and selected ids and sets the status.
    void load();
    /// Replaces the stored sermon with the same id (nothing when there is none): undo checkpoint,
    /// version snapshot, `modifiedAt` stamped now, written at once. False when there is no such
    /// sermon or the write failed (logged); the change stays in memory either way.
    bool update(const model::SermonNote& sermon);
    void undo();
    void redo();
    /// Re-reads storage and takes every sermon that is new or strictly newer than the one in memory.
    void syncFromCloud();
    /// Adds sermons from an archive or document; returns how many were added or replaced.
    int importSermons(const std::vector<model::SermonNote>& incoming, model::SermonImportMode mode);
    /// Adds a copy with a new id, " Copy" after the title and both time stamps now; returns it.
    model::SermonNote duplicate(const model::SermonNote& sermon);
    /// Adds a new sermon to the library and writes it; false when the write failed (the sermon
    /// stays in memory, as for any failed save).
    bool add(const model::SermonNote& sermon);
    /// Takes the sermon out of the library in memory, with its undo checkpoints, pin and hidden
    /// mark; its file is the caller's business (the trash moves it). False when there was none.
    bool remove(const model::Uuid& id);

    /// Called at start after load(): puts each shipped sample sermon into this library the first
    /// time (the library records what it was given, so a sample the user deleted stays deleted),
    /// unless the user has hidden the samples; makes the first sample current when no sermon is.
    void seedSampleSermons();
    /// Remembers that the samples are hidden and hides them from the list.
    void hideSampleSermons();
    /// Shows the samples again and puts back any that were deleted.
    void showSampleSermons();
    /// Writes "Quillon.vrnsermons" with every sermon into `folder` (default: the temporary folder).
    std::optional<std::filesystem::path> exportArchive() const;
    std::optional<std::filesystem::path> exportArchive(const std::filesystem::path& folder) const;

    /// Starts watching the sync folder's sermon files (only when the sync folder is in use) and
    /// returns a descriptor that becomes readable on changes; hand it to the event loop and call
    /// handleFolderChanges when it fires.
    std::optional<int> startWatching();
    /// Drains the watcher and runs syncFromCloud when a sermon file changed; true when it did.
    bool handleFolderChanges();

    /// The coalescing interval in seconds (a stored positive number, else 0.9).
    double undoCoalesceInterval() const;

private:
    model::SermonNote* findMutable(const model::Uuid& id);
    void takeUndoCheckpoint(const model::SermonNote& before);
    void applyCheckpoint(std::deque<UndoCheckpoint>& from, std::deque<UndoCheckpoint>& to);
    bool store(const model::SermonNote& sermon);
    void setSavedStatus();
    void persistIdSet(const char* key, const std::set<model::Uuid>& ids);
    std::set<model::Uuid> restoreIdSet(const char* key) const;
    std::string withPendingSuffix(std::string status, int pendingCount) const;

    SermonStorage& m_storage;
    platform::Preferences& m_preferences;
    const platform::Clock& m_clock;
    VersionHistoryHook* m_versionHistory = nullptr;
    std::unique_ptr<platform::FolderWatcher> m_watcher;

    std::vector<model::SermonNote> m_sermons;
    std::optional<model::Uuid> m_currentSermonId;
    std::string m_lastSyncStatus;
    std::optional<model::DateTime> m_lastSavedAt;
    std::set<model::Uuid> m_hiddenSermonIds;
    std::set<model::Uuid> m_pinnedSermonIds;
    std::deque<UndoCheckpoint> m_undoStack;
    std::deque<UndoCheckpoint> m_redoStack;
    bool m_isApplyingUndoRedo = false;
};

} // namespace quillon::store
