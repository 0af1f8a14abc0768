#pragma once

#include "app/DeleteType.h"
#include "model/SermonNote.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// The detail area's text when no sermon is selected.
inline constexpr const char* noSermonSelectedText = "No Sermon Selected";

/// How many titles the batch trash confirmation names before " and K more": three fit on the
/// line of a confirmation sheet and still let the preacher recognise the selection.
inline constexpr std::size_t batchTrashNamedTitles = 3;

/// "1 sermon", "3 sermons": a count with the word in the singular only for exactly one.
std::string counted(std::size_t count, std::string_view singular, std::string_view plural);

/// The question asked before an outline item is deleted, built from `sermon` as it stands;
/// the not-found form when `sermon` is null or does not hold an item of `type` with `id`.
std::string outlineDeletionMessage(const model::SermonNote* sermon, DeleteType type, const model::Uuid& id);

/// The question asked before sermons go to the trash: the one-sermon form for a single entry
/// (the not-found form when it is null), the batch form for several. `titles` holds the
/// selected sermons that could still be found; `selectedCount` counts every selected one.
std::string trashConfirmationMessage(const std::vector<std::string>& titles, std::size_t selectedCount,
                                     int retentionDays);

/// "3 sermons moved to Trash."
std::string movedToTrashDetail(std::size_t count);

/// "Restored 3 sermons." or, when cover images came back, "Restored 3 sermons and 1 cover image."
std::string restoreDetail(int sermons, int coverImages);

/// The question asked before a backup folder is restored.
std::string restoreConfirmationMessage(std::string_view backupName);

/// "Quillon could not prepare <title> for printing."
std::string printFailedDetail(std::string_view title);

/// An edit whose sermon file could not be written: "Quillon could not save “Title”. The change
/// is kept and saved again with your next edit."
std::string notSavedDetail(std::string_view title);

/// The printed reference of an attached scripture: "John 3:16", "John 3:16-18".
std::string scriptureReferenceText(const model::SermonScripture& scripture);

} // namespace quillon::app
