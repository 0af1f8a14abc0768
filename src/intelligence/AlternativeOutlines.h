#pragma once

#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// A passage offered for outlining: its book and chapter and its verses, verbatim, in order.
struct OutlinePassage {
    std::string book;
    int chapter = 1;
    /// Verse number and text.
    std::vector<std::pair<int, std::string>> verses;
};

/// An outline approach and one point title per offered verse.
struct AlternativeOutline {
    std::string name;
    std::vector<std::string> points;
    bool operator==(const AlternativeOutline&) const = default;
};

/// Proposes a structural way to outline a sermon on a passage, other than verse by verse.
class AlternativeOutlines final : public orvane::IntelligenceFeature<OutlinePassage, AlternativeOutline> {
public:
    static constexpr const char* instructions =
        "You are given numbered sections of a Bible passage — a reference and its verse text, verbatim. Propose one "
        "alternative way to outline a sermon on this passage — a structural approach a preacher could use, different "
        "from a plain verse-by-verse walkthrough (for example, but not limited to, a problem/response shape, a "
        "cause/effect shape, or a focus on who is acting in each part). First line: \"NAME: <a short name for this "
        "outline approach>\". Then exactly one line per section, \"<number> || <a short point title for that section "
        "under your approach>\", using only the numbers given and covering every one of them. A title must be about "
        "that section's own content — never introduce a name, place, or scripture reference that was not given to "
        "you, and never write out verse text yourself.";

    static constexpr const char* noVerses = "This passage has no verse text to outline.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// "Verse by verse", each point the opening words of its verse (unnumbered, as generated points are).
    AlternativeOutline fallback(const OutlinePassage& passage) const override;
    AlternativeOutline generate(const OutlinePassage& passage,
                                orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const OutlinePassage& passage);
    static std::string prompt(const OutlinePassage& passage);
    static AlternativeOutline outlineFrom(const std::string& reply, const OutlinePassage& passage);
};

} // namespace quillon::intelligence
