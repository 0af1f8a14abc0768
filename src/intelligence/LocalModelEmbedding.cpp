#include "intelligence/LocalModelEmbedding.h"

#include "orvane/SentenceEmbedding.h"
#include "platform/Preferences.h"

#include <spdlog/spdlog.h>

#include <algorithm>

namespace quillon::intelligence {

std::shared_ptr<LocalModelEmbedding> LocalModelEmbedding::fromPreferences(const platform::Preferences& preferences) {
    LocalModelSettings settings = LocalModelSettings::fromPreferences(preferences);
    if (!settings.embeddings || preferences.boolean(LocalModelSettings::disabledKey, false))
        return nullptr;
    return std::make_shared<LocalModelEmbedding>(std::make_shared<LocalModelBackend>(settings));
}

std::shared_ptr<const orvane::TextEmbedding> LocalModelEmbedding::forSearch(const platform::Preferences& preferences) {
    LocalModelSettings settings = LocalModelSettings::fromPreferences(preferences);
    if (!settings.embeddings || preferences.boolean(LocalModelSettings::disabledKey, false))
        return nullptr;
    // A search embeds every changed sermon and then the query, one request each: a server that hangs must not hold a
    // search for the chat timeout (minutes) per request, and embedding one text takes a server well under this.
    settings.replyTimeout = std::min(settings.replyTimeout, std::chrono::milliseconds(10000));
    auto server = std::make_shared<LocalModelEmbedding>(std::make_shared<LocalModelBackend>(settings));
    // One probe decides for the whole index, so its vectors all come from one model: cosines between vectors of two
    // different embeddings would mean nothing.
    if (server->vector("Quillon"))
        return server;
    spdlog::warn("The local model server at {} gave no embeddings; sermon search uses the built-in embedding.",
                 settings.endpoint);
    return orvane::SentenceEmbedding::english();
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

std::vector<std::optional<std::vector<double>>>
LocalModelEmbedding::vectors(const std::vector<std::string>& texts) const {
    std::vector<std::optional<std::vector<double>>> result(texts.size());
    for (std::size_t start = 0; start < texts.size(); start += batchSize) {
        const std::size_t end = std::min(texts.size(), start + batchSize);
        try {
            std::vector<std::vector<float>> answered = m_backend->embed(std::vector<std::string>(
                texts.begin() + static_cast<std::ptrdiff_t>(start), texts.begin() + static_cast<std::ptrdiff_t>(end)));
            for (std::size_t i = 0; i < answered.size() && start + i < end; ++i)
                if (!answered[i].empty())
                    result[start + i] = std::vector<double>(answered[i].begin(), answered[i].end());
        } catch (const std::exception&) {
            // This batch stays without vectors: those sermons are ranked lexically.
        }
    }
    return result;
}

} // namespace quillon::intelligence
