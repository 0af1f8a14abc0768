#include "screens/ScreenOutlets.h"

#include "mesh/ScriptureBridge.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/BibleSyncOutlet.h"
#include "screens/LivePageServer.h"
#include "screens/OpenLpOutlet.h"

#include <spdlog/spdlog.h>

namespace quillon::screens {

namespace {

void addLivePage(OutletHub& hub, platform::Preferences& preferences, const ScreenOutletChoices& choices) {
    auto options = LivePageOptions::fromPreferences(preferences);
    options.enabled = options.enabled || choices.livePage;
    if (!choices.livePageAddress.empty())
        options.address = choices.livePageAddress;
    if (choices.livePagePort >= 0)
        options.port = static_cast<std::uint16_t>(choices.livePagePort);
    if (!options.enabled)
        return;
    options.ensureLanToken(preferences);
    auto page = std::make_shared<LivePageServer>(options);
    page->start();
    hub.add(page);
}

void addOpenLp(OutletHub& hub, const platform::Preferences& preferences, const ScreenOutletChoices& choices,
               const platform::SecretStore* secrets) {
    auto options = OpenLpOptions::fromPreferences(preferences);
    options.enabled = options.enabled || choices.openLp;
    if (!choices.openLpAddress.empty() && !options.setAddress(choices.openLpAddress))
        spdlog::error("OpenLP's address \"{}\" is not host:port; {} is used", choices.openLpAddress, options.address());
    if (!options.enabled)
        return;
    if (!options.user.empty()) {
        std::optional<platform::SecretStore> own;
        if (!secrets)
            secrets = &own.emplace(OpenLpOptions::secretService(),
                                   platform::SecretStore::defaultFallbackFile(OpenLpOptions::secretService()));
        options.password = secrets->read(options.user).value_or("");
    }
    auto outlet = std::make_shared<OpenLpOutlet>(options);
    outlet->start();
    hub.add(outlet);
}

void addBibleSync(OutletHub& hub, mesh::ScriptureBridge& bridge, const platform::Preferences& preferences,
                  const ScreenOutletChoices& choices) {
    auto options = BibleSyncOptions::fromPreferences(preferences);
    if (!options.enabled && !choices.bibleSync)
        return;
    auto outlet = std::make_shared<BibleSyncOutlet>(
        options, [&bridge](const std::string& speaker, const mesh::MeshScriptureReference& reference) {
            bridge.receiveOutsideReference("BibleSync " + speaker, reference);
        });
    outlet->start();
    hub.add(outlet);
}

} // namespace

std::shared_ptr<OutletHub> attachScreenOutlets(mesh::ScriptureBridge& bridge, platform::Preferences& preferences,
                                               const ScreenOutletChoices& choices,
                                               const platform::SecretStore* secrets) {
    auto hub = std::make_shared<OutletHub>();
    addLivePage(*hub, preferences, choices);
    addOpenLp(*hub, preferences, choices, secrets);
    addBibleSync(*hub, bridge, preferences, choices);
    // The bridge keeps only a weak hold: the hub's owner decides when the outlets stop.
    bridge.addLiveFollower([weak = std::weak_ptr<OutletHub>(hub)](const std::optional<mesh::LiveScripture>& live) {
        auto outlets = weak.lock();
        if (!outlets)
            return;
        if (live)
            outlets->show(*live);
        else
            outlets->clear();
    });
    return hub;
}

} // namespace quillon::screens
