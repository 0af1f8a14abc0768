#pragma once

#include "model/SermonNote.h"

#include <chrono>

namespace quillon::store {

/// A sermon as it was before a change, kept so the change can be undone (or redone).
struct UndoCheckpoint {
    model::Uuid sermonId;
    model::SermonNote value;
    /// When the checkpoint was taken or last extended by a quick follow-up edit; sub-second,
    /// because edits closer than the coalescing interval merge.
    std::chrono::system_clock::time_point time;
};

} // namespace quillon::store
