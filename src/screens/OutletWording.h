#pragma once

#include "screens/OutletState.h"

#include <string>
#include <vector>

namespace quillon::screens {

// The one wording of an outlet's state, shared by `quillon mesh serve`'s status lines and the
// desk's status bar, so the preacher reads the same words in both.

/// The state as a sentence: "serving http://127.0.0.1:7316/ (1 open)", "failing: no answer to …".
std::string outletStateSentence(const OutletState& state);
/// The status line: "live page: serving http://127.0.0.1:7316/ (1 open)".
std::string outletStatusLine(const OutletStatus& status);
/// The outlet and its headline, where room is short: "live page: serving".
std::string outletHeadline(const OutletStatus& status);
/// What a closer look adds to the status line, one line each: the address when the sentence does
/// not give it, and the last failure once the outlet has recovered.
std::vector<std::string> outletDetails(const OutletStatus& status);

} // namespace quillon::screens
