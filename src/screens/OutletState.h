#pragma once

#include <string>

namespace quillon::screens {

/// What an outlet is doing, in the parts every wording of it is built from (OutletWording.h).
struct OutletState {
    /// A word or two that comes first wherever the state is said ("serving", "showing", "failing", "off").
    std::string headline;
    /// What completes the sentence: where, what or why ("http://127.0.0.1:7316/ (1 open)").
    std::string detail;
    /// The outlet cannot reach its program or could not start; the detail says why.
    bool failing = false;
    /// Where the outlet is reached or reaches out ("127.0.0.1:4316", the page's URL); may be empty.
    std::string address;
    /// The last failure, kept after the outlet recovers; empty while none happened.
    std::string lastFailure;
};

/// One outlet's state under its name ("live page", "OpenLP", "BibleSync").
struct OutletStatus {
    std::string name;
    OutletState state;
};

} // namespace quillon::screens
