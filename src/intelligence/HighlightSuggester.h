#pragma once

#include "intelligence/GenerationLimits.h"
#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// A manuscript sentence worth highlighting, and why.
struct Highlight {
    std::size_t sentence = 0;
    std::string text;
    std::string reason;
    bool operator==(const Highlight&) const = default;
};

/// Picks the manuscript sentences most worth spotting at a glance while preaching.
class HighlightSuggester final : public orvane::IntelligenceFeature<model::SermonNote, std::vector<Highlight>> {
public:
    static constexpr const char* generatedCaption =
        "Picked by a model from this manuscript's own sentences. Review before highlighting.";
    static constexpr const char* fallbackCaption =
        "Picked by counting — the manuscript's own most distinctive sentences. No model was available.";

    static constexpr const char* noManuscript = "This sermon has no manuscript to pick highlights from yet.";

    explicit HighlightSuggester(std::size_t limit = generationLimits::highlights) : m_limit(limit) {}

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    std::vector<Highlight> fallback(const model::SermonNote& sermon) const override;
    std::vector<Highlight> generate(const model::SermonNote& sermon,
                                    orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const model::SermonNote& sermon);
    std::string instructions() const;
    /// The manuscript's sentences, in order.
    static std::vector<std::string> sentencesOf(const model::SermonNote& sermon);
    std::vector<Highlight> highlightsFrom(const std::string& reply, const std::vector<std::string>& sentences) const;

private:
    std::size_t m_limit;
};

} // namespace quillon::intelligence
