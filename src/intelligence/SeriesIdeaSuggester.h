#pragma once

#include "intelligence/GenerationLimits.h"
#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// One proposed next series: a never-preached book, a title and why.
struct SeriesIdea {
    std::string book;
    std::string title;
    std::string reason;
    bool operator==(const SeriesIdea&) const = default;
};

/// Proposes what to preach next from the books this library has never preached from.
class SeriesIdeaSuggester final
    : public orvane::IntelligenceFeature<std::vector<std::string>, std::vector<SeriesIdea>> {
public:
    static constexpr const char* instructions =
        "A preacher is planning what to preach next. Below is a numbered list of books of the Bible this preacher "
        "has never preached a sermon from. Propose up to three of them as a next series, choosing the ones most worth "
        "preaching next. Answer one line per proposal, exactly \"<number> || <short series title>: <one-sentence "
        "reason>\". Use only book numbers from the list below. Never quote or invent the wording of a verse.";
    static constexpr const char* generatedCaption = "Proposed by a model, choosing only from books this library has "
                                                    "never preached — see the full list below.";
    static constexpr const char* fallbackCaption =
        "No model was available to propose a next book — the full list of never-preached books is below.";
    static constexpr const char* nothingToPlan = "Every book has been preached from, and no active series has a next "
                                                 "chapter to move into. There is nothing left to plan.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// No proposals: the sheet shows the full list.
    std::vector<SeriesIdea> fallback(const std::vector<std::string>& books) const override;
    std::vector<SeriesIdea> generate(const std::vector<std::string>& books,
                                     orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to plan; empty when there is.
    static std::string emptyState(const std::vector<std::string>& books);
    static std::vector<SeriesIdea> ideasFrom(const std::string& reply, const std::vector<std::string>& books);
    /// The books, in canonical order, that no attached scripture of `sermons` comes from.
    static std::vector<std::string> booksNeverPreached(const std::vector<model::SermonNote>& sermons);
};

} // namespace quillon::intelligence
