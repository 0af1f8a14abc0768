#include "intelligence/LocalModelSettings.h"

#include "platform/Preferences.h"

#include <cmath>

namespace quillon::intelligence {

LocalModelSettings LocalModelSettings::fromPreferences(const platform::Preferences& preferences) {
    LocalModelSettings settings;
    std::string endpoint = preferences.string(endpointKey);
    if (!endpoint.empty())
        settings.endpoint = endpoint;
    settings.model = preferences.string(modelKey);
    double seconds = preferences.positiveNumber(timeoutKey, 120);
    settings.replyTimeout = std::chrono::milliseconds(static_cast<long long>(std::ceil(seconds * 1000)));
    settings.embeddings = preferences.boolean(embeddingsKey, false);
    return settings;
}

} // namespace quillon::intelligence
