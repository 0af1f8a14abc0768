#pragma once

#include "screens/OutletHub.h"

#include <memory>
#include <string>

namespace quillon::mesh {
class ScriptureBridge;
}
namespace quillon::platform {
class Preferences;
class SecretStore;
} // namespace quillon::platform

namespace quillon::screens {

/// What a command line asked for on top of the preferences (nothing asked: the preferences alone).
struct ScreenOutletChoices {
    bool livePage = false;
    std::string livePageAddress;
    int livePagePort = -1;
    bool openLp = false;
    /// host:port
    std::string openLpAddress;
    bool bibleSync = false;
};

/// Starts every outlet the preferences or `choices` switch on and hangs them on `bridge`: every
/// announce() and clear() on the bridge, from the command line or the desktop's "Send to Screen",
/// reaches each outlet, and navigation from a trusted BibleSync speaker arrives as the bridge's
/// incoming scripture. An outlet that cannot start is kept with its failure as its state, so the
/// status shows why. Call before bridge.start(); keep the hub until the bridge is stopped.
/// `secrets` holds OpenLP's password (OpenLpOptions::secretService()); without it the password is
/// read from the Secret Service.
std::shared_ptr<OutletHub> attachScreenOutlets(mesh::ScriptureBridge& bridge, platform::Preferences& preferences,
                                               const ScreenOutletChoices& choices = {},
                                               const platform::SecretStore* secrets = nullptr);

} // namespace quillon::screens
