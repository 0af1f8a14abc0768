#pragma once

#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"

#include <string>

namespace quillon::intelligence {

/// A short web article written from the preacher's own notes.
class SermonArticleGenerator final : public orvane::IntelligenceFeature<model::SermonNote, std::string> {
public:
    static constexpr const char* generatedCaption = "Phrased by a model — every fact and scripture reference is "
                                                    "grounded in this sermon's own content. Review before publishing.";
    static constexpr const char* fallbackCaption =
        "Assembled directly from this sermon's own notes and outline — no model was available.";

    static constexpr const char* nothingToWriteFrom =
        "This sermon has no notes or outline to turn into an article yet.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// The opening notes, then each section as a paragraph led by its heading, with its scripture.
    std::string fallback(const model::SermonNote& sermon) const override;
    std::string generate(const model::SermonNote& sermon, orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const model::SermonNote& sermon);
    static std::string instructions(const model::SermonNote& sermon);
    static std::string prompt(const model::SermonNote& sermon);
    /// The trimmed article; throws malformedResponse when empty or naming scripture outside the sermon.
    static std::string articleFrom(const std::string& reply, const model::SermonNote& sermon);
};

} // namespace quillon::intelligence
