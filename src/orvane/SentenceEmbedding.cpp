#include "orvane/SentenceEmbedding.h"

#include "orvane/SentenceTokenizer.h"

#include <algorithm>

namespace orvane {

SentenceEmbedding::SentenceEmbedding(std::shared_ptr<Provider> embedding, SearchHit::Match match)
    : m_match(match), m_embedding(std::move(embedding)) {}

std::shared_ptr<SentenceEmbedding> SentenceEmbedding::english() {
    return nullptr;
}

std::optional<std::vector<double>> SentenceEmbedding::vector(std::string_view text) const {
    if (!m_embedding)
        return std::nullopt;
    std::lock_guard lock(m_lock);
    std::optional<std::vector<double>> sum;
    std::size_t counted = 0;
    for (const auto& sentence : SentenceTokenizer::sentences(text)) {
        auto vector = m_embedding->vector(sentence);
        if (!vector)
            continue;
        ++counted;
        if (!sum) {
            sum = std::move(vector);
            continue;
        }
        // Vectors of differing length add only over the part they share.
        const auto length = std::min(sum->size(), vector->size());
        for (std::size_t i = 0; i < length; ++i)
            (*sum)[i] += (*vector)[i];
    }
    if (!sum)
        return std::nullopt;
    for (auto& element : *sum)
        element /= static_cast<double>(counted);
    return sum;
}

} // namespace orvane
