#pragma once

#include <string>

namespace quillon::app {

/// What the controller tells the user after a command: a short title and a sentence. The
/// controller only publishes these; whoever listens decides how to show them.
struct StatusMessage {
    /// An alert waits for the user; a toast comes and goes.
    enum class Kind { alert, toast };

    std::string title;
    std::string detail;
    Kind kind = Kind::toast;

    bool operator==(const StatusMessage&) const = default;
};

} // namespace quillon::app
