#include "intelligence/LocalModelEmbedding.h"

#include "platform/Preferences.h"

namespace quillon::intelligence {

std::shared_ptr<LocalModelEmbedding> LocalModelEmbedding::fromPreferences(const platform::Preferences& preferences) {
    LocalModelSettings settings = LocalModelSettings::fromPreferences(preferences);
    if (!settings.embeddings || preferences.boolean(LocalModelSettings::disabledKey, false))
        return nullptr;
    return std::make_shared<LocalModelEmbedding>(std::make_shared<LocalModelBackend>(settings));
}

std::optional<std::vector<double>> LocalModelEmbedding::vector(std::string_view text) const {
    try {
        std::vector<std::vector<float>> vectors = m_backend->embed({std::string(text)});
        if (vectors.size() != 1 || vectors[0].empty())
            return std::nullopt;
        return std::vector<double>(vectors[0].begin(), vectors[0].end());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillon::intelligence
