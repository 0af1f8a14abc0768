#pragma once

#include "intelligence/GenerationLimits.h"
#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// Tags a preacher would browse their archive by.
class SermonTagSuggester final : public orvane::IntelligenceFeature<model::SermonNote, std::vector<std::string>> {
public:
    static constexpr const char* generatedCaption = "Suggested by a model from this sermon's own content.";
    static constexpr const char* fallbackCaption =
        "Picked by counting — the words this sermon repeats most. No model was available.";

    explicit SermonTagSuggester(std::size_t limit = generationLimits::tags) : m_limit(limit) {}

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// The sermon's most repeated distinctive words.
    std::vector<std::string> fallback(const model::SermonNote& sermon) const override;
    std::vector<std::string> generate(const model::SermonNote& sermon,
                                      orvane::IntelligenceBackendProviding& backend) const override;

    std::string instructions() const;
    static std::string prompt(const model::SermonNote& sermon);
    /// One tag per line of one to three words; stray bullets, numbers and end punctuation are
    /// dropped, repeats ignored, at most `limit`.
    std::vector<std::string> tagsFrom(const std::string& reply) const;

private:
    std::size_t m_limit;
};

} // namespace quillon::intelligence
