#pragma once

#include "orvane/IntelligenceFeature.h"
#include "orvane/IntelligenceTool.h"

#include <memory>
#include <string>
#include <vector>

namespace quillon::intelligence {

/// An answer resting on retrieved extracts: the model's text (empty when only the extracts are
/// shown) and the extracts it rests on.
struct GroundedAnswer {
    std::string text;
    std::vector<orvane::Passage> sources;
    bool isSynthesised = false;

    bool operator==(const GroundedAnswer&) const = default;
};

/// What the commentators say about a passage, answered only from their extracts.
class PassageCommentary final
    : public orvane::IntelligenceFeature<std::pair<std::string, std::string>, GroundedAnswer> {
public:
    /// The passage as reference text and the preacher's question (may be empty).
    using Input = std::pair<std::string, std::string>;

    static constexpr const char* instructions =
        "You answer a preacher's question about a Bible passage using only the commentary extracts you are given. "
        "Quote or paraphrase them and name the commentator each time, exactly as the extract is labelled. Where "
        "they disagree, say so and give both. If the extracts do not answer the question, say that plainly instead "
        "of filling the gap. Never introduce a fact, a date or a claim that is not in the extracts.";
    static constexpr const char* defaultQuestion = "What do these commentators say about this passage?";
    static constexpr const char* noNotes = "None of the bundled commentaries has a note on this passage.";
    static constexpr const char* citedNothing = "The answer cited none of the commentaries it was given.";
    static constexpr const char* questionPrompt = "Ask the commentators about this passage";
    static constexpr const char* generatedHeading = "Generated from the sources below";

    explicit PassageCommentary(std::shared_ptr<const orvane::IntelligenceTool> tool) : m_tool(std::move(tool)) {}

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    GroundedAnswer fallback(const Input& input) const override;
    GroundedAnswer generate(const Input& input, orvane::IntelligenceBackendProviding& backend) const override;

    /// "Passage: …\nQuestion: …\n\n" and the extracts, each its label, a line feed and its text,
    /// separated by blank lines.
    static std::string prompt(const std::string& reference, const std::string& question,
                              const std::vector<orvane::Passage>& extracts);
    /// The extracts the reply names (by whole label or by the commentator's name before " — ",
    /// ignoring case), in extract order. Throws malformedResponse when the reply is empty or cites none.
    static GroundedAnswer answerFrom(const std::string& reply, const std::vector<orvane::Passage>& extracts);

private:
    std::vector<orvane::Passage> extracts(const std::string& reference) const;

    std::shared_ptr<const orvane::IntelligenceTool> m_tool;
};

} // namespace quillon::intelligence
