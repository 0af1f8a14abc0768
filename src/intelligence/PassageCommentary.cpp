#include "intelligence/PassageCommentary.h"

#include "intelligence/FeatureText.h"

namespace quillon::intelligence {

std::string PassageCommentary::identifier() const {
    return orvane::intelligenceFeatureEntry("PassageCommentary")->identifier;
}

orvane::IntelligencePolicy PassageCommentary::policy() const {
    return orvane::intelligenceFeatureEntry("PassageCommentary")->policy;
}

std::vector<orvane::Passage> PassageCommentary::extracts(const std::string& reference) const {
    try {
        return m_tool->lookup(reference).passages;
    } catch (const std::exception&) {
        return {};
    }
}

std::string PassageCommentary::prompt(const std::string& reference, const std::string& question,
                                      const std::vector<orvane::Passage>& extracts) {
    std::string text = "Passage: " + reference + "\nQuestion: " + question + "\n\n";
    for (std::size_t i = 0; i < extracts.size(); ++i)
        text += (i ? "\n\n" : "") + extracts[i].source + "\n" + extracts[i].text;
    return text;
}

GroundedAnswer PassageCommentary::answerFrom(const std::string& reply, const std::vector<orvane::Passage>& extracts) {
    std::string text = featureText::trimmed(reply);
    std::string haystack = featureText::comparable(text);
    GroundedAnswer answer{text, {}, true};
    for (const orvane::Passage& passage : extracts) {
        std::string label = passage.source;
        std::string work = label.substr(0, label.find(" — "));
        if (haystack.find(featureText::comparable(label)) != std::string::npos ||
            (!work.empty() && haystack.find(featureText::comparable(work)) != std::string::npos))
            answer.sources.push_back(passage);
    }
    if (text.empty() || answer.sources.empty())
        throw orvane::IntelligenceError::malformedResponse(citedNothing);
    return answer;
}

GroundedAnswer PassageCommentary::fallback(const Input& input) const {
    return {"", extracts(input.first), false};
}

GroundedAnswer PassageCommentary::generate(const Input& input, orvane::IntelligenceBackendProviding& backend) const {
    std::vector<orvane::Passage> found = extracts(input.first);
    // With nothing to ground an answer in, the model is not asked at all.
    if (found.empty())
        throw orvane::IntelligenceError::malformedResponse(noNotes);
    std::string question =
        featureText::trimmed(input.second).empty() ? defaultQuestion : featureText::trimmed(input.second);
    std::string reply = backend.respond({instructions, prompt(input.first, question, found), {}}).text;
    return answerFrom(reply, found);
}

} // namespace quillon::intelligence
