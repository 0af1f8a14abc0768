#pragma once

#include "intelligence/LocalModelBackend.h"
#include "orvane/TextEmbedding.h"

#include <memory>

namespace quillon::intelligence {

/// The local model server's embeddings route as a semantic index's embedding. A text the server
/// cannot embed (not running, failing) has no vector, so the index degrades to lexical ranking.
class LocalModelEmbedding final : public orvane::TextEmbedding {
public:
    explicit LocalModelEmbedding(std::shared_ptr<LocalModelBackend> backend) : m_backend(std::move(backend)) {}

    /// The embedding the preferences ask for: one over the configured server when
    /// "Quillon.intelligence.embeddings" is on and intelligence is not switched off; else none.
    static std::shared_ptr<LocalModelEmbedding> fromPreferences(const platform::Preferences& preferences);

    /// The embedding a sermon search index should be given: none while "Quillon.intelligence.embeddings" is off (the
    /// search then ranks lexically); the server's when it is on and the server embeds a first text; otherwise the
    /// built-in sentence embedding, with one log line saying so. Never throws.
    static std::shared_ptr<const orvane::TextEmbedding> forSearch(const platform::Preferences& preferences);

    orvane::SearchHit::Match match() const override { return orvane::SearchHit::Match::contextual; }
    std::optional<std::vector<double>> vector(std::string_view text) const override;
    /// The texts in requests of at most `batchSize`; every text of a request the server does not answer has none.
    std::vector<std::optional<std::vector<double>>> vectors(const std::vector<std::string>& texts) const override;

    /// Large enough that a library is embedded in a few requests, small enough that one request stays well inside
    /// the reply timeout.
    static constexpr std::size_t batchSize = 64;

private:
    std::shared_ptr<LocalModelBackend> m_backend;
};

} // namespace quillon::intelligence
