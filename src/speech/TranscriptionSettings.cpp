#include "speech/TranscriptionSettings.h"

#include "intelligence/LocalModelSettings.h"
#include "platform/Preferences.h"

namespace quillon::speech {

TranscriptionSettings TranscriptionSettings::fromPreferences(const platform::Preferences& preferences) {
    TranscriptionSettings settings;
    settings.endpoint = preferences.string(endpointKey);
    settings.model = preferences.string(modelKey, settings.model);
    std::string folder = preferences.string(modelFolderKey);
    if (!folder.empty())
        settings.modelFolder = folder;
    const intelligence::LocalModelSettings model = intelligence::LocalModelSettings::fromPreferences(preferences);
    settings.connectTimeout = model.connectTimeout;
    settings.replyTimeout = model.replyTimeout;
    return settings;
}

} // namespace quillon::speech
