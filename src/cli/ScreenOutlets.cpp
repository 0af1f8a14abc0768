#include "cli/ScreenOutlets.h"

#include "platform/Preferences.h"
#include "screens/LivePageServer.h"

namespace quillon::cli {

std::unique_ptr<screens::OutletHub> startScreenOutlets(platform::Preferences& preferences,
                                                       const ScreenOutletChoices& choices) {
    auto hub = std::make_unique<screens::OutletHub>();
    auto options = screens::LivePageOptions::fromPreferences(preferences);
    options.enabled = options.enabled || choices.livePage;
    if (!choices.livePageAddress.empty())
        options.address = choices.livePageAddress;
    if (choices.livePagePort >= 0)
        options.port = static_cast<std::uint16_t>(choices.livePagePort);
    if (options.enabled)
        options.ensureLanToken(preferences);
    if (options.enabled) {
        auto page = std::make_shared<screens::LivePageServer>(options);
        page->start();
        hub->add(page);
    }
    return hub;
}

} // namespace quillon::cli
