#pragma once

#include "intelligence/FeatureText.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// A question about one numbered section of a sermon.
struct SectionQuestion {
    int section = 0;
    std::string heading;
    std::string question;
    bool operator==(const SectionQuestion&) const = default;
};

/// The shared shape of discussion and listener questions: sections offered by number, one
/// "<section number> || <question>" line back per question, each ending with a question mark and
/// naming only the scripture listed for its section.
class SectionQuestions : public orvane::IntelligenceFeature<model::SermonNote, std::vector<SectionQuestion>> {
public:
    static constexpr const char* nothingToAskAbout = "This sermon has no topics or notes to ask questions about yet.";

    std::vector<SectionQuestion> generate(const model::SermonNote& sermon,
                                          orvane::IntelligenceBackendProviding& backend) const override;
    /// The sentence shown instead of asking a model when the sermon gives nothing to work from;
    /// empty when it does.
    static std::string emptyState(const model::SermonNote& sermon);
    /// Said when the model answered NONE: it read the sections and found nothing to ask.
    virtual const char* noneAnswer() const = 0;

    /// The numbered sections, as offered.
    static std::string prompt(const std::vector<SermonSection>& sections);
    /// The usable questions of `reply`; "NONE" gives none. Throws malformedResponse with
    /// `emptyMessage` for an empty reply and `unusableMessage` when no line is usable.
    std::vector<SectionQuestion> questionsFrom(const std::string& reply,
                                               const std::vector<SermonSection>& sections) const;

    virtual const char* instructions() const = 0;
    virtual const char* emptyMessage() const = 0;
    virtual const char* unusableMessage() const = 0;
};

/// Practical questions for a small group to talk through after the sermon.
class GenerateDiscussionQuestions final : public SectionQuestions {
public:
    static constexpr const char* generatedCaption =
        "Phrased by a model, grounded in this sermon's own sections and scripture.";
    static constexpr const char* fallbackCaption =
        "Built directly from this sermon's topics and scripture — no model was available.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// Per section, a question about the passage cited there (what it says, what it asks of the
    /// hearer) or, without one, about its most telling sentence; then one about the words that
    /// section is about and no other is (or, lacking them, its heading). The forms turn from one
    /// section to the next, starting where the sermon's title puts them.
    std::vector<SectionQuestion> fallback(const model::SermonNote& sermon) const override;
    const char* instructions() const override;
    const char* emptyMessage() const override { return "Nothing was written."; }
    const char* unusableMessage() const override { return "Nothing in the answer was a usable question."; }
    const char* noneAnswer() const override {
        return "The model found nothing in these sections that suggests a discussion question.";
    }
};

/// What an ordinary listener, hearing the sermon once, would want to ask afterwards.
class ListenerQuestions final : public SectionQuestions {
public:
    static constexpr const char* generatedCaption =
        "Asked by a model listening as an ordinary member of the congregation, one section at a time.";
    static constexpr const char* fallbackCaption =
        "Questions a first-time listener often asks, built from this sermon's own sections — no model was available.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// Per section: what its heading means, and where its scripture says it.
    std::vector<SectionQuestion> fallback(const model::SermonNote& sermon) const override;
    const char* instructions() const override;
    const char* emptyMessage() const override { return "Nobody answered."; }
    const char* unusableMessage() const override { return "Nothing in the answer was a question about a section."; }
    const char* noneAnswer() const override { return "Listening as a first-time hearer, the model had no questions."; }
};

} // namespace quillon::intelligence
