#pragma once

#include "model/SermonNote.h"
#include "orvane/TrashFolder.h"
#include "platform/Clock.h"
#include "platform/Preferences.h"

#include <optional>
#include <vector>

namespace quillon::store {

class SermonNotesManager;

/// One sermon in the trash and when it was put there.
struct TrashedSermon {
    model::SermonNote sermon;
    model::DateTime trashedAt{};
};

/// Keeps deleted sermons in the folder "Trash" beside "Sermons" for a number of days before they
/// are gone for good. Each entry is the sermon's JSON file, dated by its modification time.
class SermonTrashManager {
public:
    static constexpr const char* retentionDaysKey = "Quillon.trashRetentionDays";
    static constexpr int defaultRetentionDays = 30;

    /// `store`, `preferences` and `clock` must outlive the trash.
    SermonTrashManager(SermonNotesManager& store, const platform::Preferences& preferences,
                       const platform::Clock& clock = platform::SystemClock::shared());

    /// Writes the sermon into the trash, then removes its file and takes it out of the library.
    /// On failure logs "Failed to move sermon "<title>" to trash: <reason>", leaves the sermon
    /// where it was and returns false.
    bool moveToTrash(const model::SermonNote& sermon);
    /// Every readable entry, oldest first; files that do not decode are skipped.
    std::vector<TrashedSermon> allTrashed() const;
    /// Takes the sermon out of the trash and gives it back to the library; nothing when it is not there.
    std::optional<model::SermonNote> restore(const model::Uuid& id);
    /// False when there was no such entry.
    bool deletePermanently(const model::Uuid& id);
    /// Removes every entry trashed before now minus the retention in calendar days; returns how many.
    int purgeExpired();

    int retentionDays() const;

private:
    orvane::TrashFolder folder() const;

    SermonNotesManager& m_store;
    const platform::Preferences& m_preferences;
    const platform::Clock& m_clock;
};

} // namespace quillon::store
