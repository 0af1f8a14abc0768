#pragma once

#include "model/SermonNote.h"

namespace quillon::store {

/// What the store tells the version history before it replaces a sermon. The store never calls it
/// while an undo or redo is being applied.
class VersionHistoryHook {
public:
    virtual ~VersionHistoryHook() = default;
    /// `previous` is the sermon as it was before the change about to be stored.
    virtual void recordSnapshot(const model::SermonNote& previous) = 0;
};

} // namespace quillon::store
