#pragma once

#include "intelligence/GenerationLimits.h"
#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"
#include "scripture/ScriptureReference.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::intelligence {

/// Tags a preacher would browse their archive by.
class SermonTagSuggester final : public orvane::IntelligenceFeature<model::SermonNote, std::vector<std::string>> {
public:
    static constexpr const char* generatedCaption = "Suggested by a model from this sermon's own content.";
    static constexpr const char* fallbackCaption =
        "Picked by counting — the words this sermon repeats most. No model was available.";

    static constexpr const char* nothingToTag = "This sermon has no words to take tags from yet.";

    explicit SermonTagSuggester(std::size_t limit = generationLimits::tags) : m_limit(limit) {}

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// The words the sermon is about: its title and headings weigh most, filler never counts.
    std::vector<std::string> fallback(const model::SermonNote& sermon) const override;
    std::vector<std::string> generate(const model::SermonNote& sermon,
                                      orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const model::SermonNote& sermon);
    std::string instructions() const;
    static std::string prompt(const model::SermonNote& sermon);
    /// The tags of a reply: each line shaped like a tag and naming no scripture beyond `allowed`,
    /// repeats ignored, at most `limit`. Throws malformedResponse when no line is shaped like a tag.
    std::vector<std::string> tagsFrom(const std::string& reply,
                                      const std::vector<scripture::ScriptureReference>& allowed = {}) const;
    /// The line as a tag: one to three words of letters and digits (a bullet, a list number and a
    /// closing full stop are dropped), or nothing when it holds anything else (quotes, commas,
    /// a heading's colon, stray separators).
    static std::optional<std::string> tagShaped(std::string_view line);

private:
    std::size_t m_limit;
};

} // namespace quillon::intelligence
