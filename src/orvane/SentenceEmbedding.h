#pragma once

#include "orvane/TextEmbedding.h"

#include <memory>
#include <mutex>

namespace orvane {

/// A text embedding built from a sentence embedding: the text is split into sentences and its vector is the mean of
/// their vectors. The sentence embedding itself is not safe for concurrent use, so every call to it holds one lock;
/// one SentenceEmbedding may therefore be shared between indexes.
class SentenceEmbedding final : public TextEmbedding {
public:
    /// The embedding service for single sentences (for example a local model server).
    class Provider {
    public:
        virtual ~Provider() = default;
        /// The sentence's vector, or nothing when the service has none for it.
        virtual std::optional<std::vector<double>> vector(std::string_view sentence) = 0;
    };

    explicit SentenceEmbedding(std::shared_ptr<Provider> embedding,
                               SearchHit::Match match = SearchHit::Match::sentence);

    /// The English sentence embedding of this platform. Linux ships none, so this is nothing and indexes built on it
    /// rank lexically; a local embedding service comes in through the constructor instead.
    static std::shared_ptr<SentenceEmbedding> english();

    SearchHit::Match match() const override { return m_match; }
    std::optional<std::vector<double>> vector(std::string_view text) const override;

private:
    SearchHit::Match m_match;
    std::shared_ptr<Provider> m_embedding;
    mutable std::mutex m_lock;
};

} // namespace orvane
