#pragma once

#include "screens/OutletHub.h"

#include <memory>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::cli {

/// What the command line asked for, over the preferences.
struct ScreenOutletChoices {
    bool livePage = false;
    std::string livePageAddress;
    int livePagePort = -1;
};

/// Starts every outlet the preferences or `choices` switch on; one that cannot start is kept,
/// with its failure as its state, so `status` shows why.
std::unique_ptr<screens::OutletHub> startScreenOutlets(platform::Preferences& preferences,
                                                       const ScreenOutletChoices& choices);

} // namespace quillon::cli
