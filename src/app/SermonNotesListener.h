#pragma once

#include "app/Sheet.h"
#include "app/StatusMessage.h"
#include "model/Uuid.h"

namespace quillon::app {

/// Observes the controller. Every method has an empty default, so a listener overrides only what
/// it shows. Calls arrive on the controller's (main) thread, after the change is complete.
class SermonNotesListener {
public:
    virtual ~SermonNotesListener() = default;

    /// The selected sermon, topic, sub-topic or scripture changed.
    virtual void selectionChanged() {}
    /// One sermon's content changed (an edit, an undo or a redo).
    virtual void sermonChanged(const model::Uuid& /*sermonId*/) {}
    /// Sermons were added to or removed from the library, or several changed at once.
    virtual void libraryChanged() {}
    /// A status message was published.
    virtual void statusPosted(const StatusMessage& /*message*/) {}
    /// A sheet or confirmation opened or closed.
    virtual void sheetChanged(Sheet /*sheet*/, bool /*open*/) {}
    /// A persisted interface setting (widths, layout, reading mode, recent files) changed.
    virtual void interfaceStateChanged() {}
};

} // namespace quillon::app
