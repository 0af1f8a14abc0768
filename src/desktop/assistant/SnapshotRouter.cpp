#include "desktop/assistant/SnapshotRouter.h"

#include "intelligence/LocalModelSettings.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"

namespace quillon::desktop {

namespace {

struct RouterWithSettings {
    RouterWithSettings() : settings(platform::Preferences::inMemory()) {}

    platform::Preferences settings;
    std::shared_ptr<orvane::ModelRouter> router;
};

} // namespace

std::shared_ptr<orvane::ModelRouter> snapshotRouter(const platform::Preferences& preferences) {
    using Settings = intelligence::LocalModelSettings;
    auto holder = std::make_shared<RouterWithSettings>();
    for (const char* key : {Settings::endpointKey, Settings::modelKey, Settings::timeoutKey, Settings::embeddingsKey,
                            Settings::disabledKey})
        if (auto value = preferences.value(key))
            holder->settings.set(key, *value);
    holder->router = intelligence::makeSharedRouter(holder->settings);
    return std::shared_ptr<orvane::ModelRouter>(holder, holder->router.get());
}

} // namespace quillon::desktop
