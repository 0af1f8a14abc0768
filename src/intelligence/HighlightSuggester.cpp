#include "intelligence/HighlightSuggester.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/FeatureText.h"
#include "orvane/NumberedChoice.h"
#include "orvane/SentenceTokenizer.h"

namespace quillon::intelligence {

std::string HighlightSuggester::identifier() const {
    return orvane::intelligenceFeatureEntry("HighlightSuggester")->identifier;
}

orvane::IntelligencePolicy HighlightSuggester::policy() const {
    return orvane::intelligenceFeatureEntry("HighlightSuggester")->policy;
}

std::string HighlightSuggester::instructions() const {
    return "You are given numbered sentences, verbatim, from a sermon manuscript. Pick the ones most worth "
           "highlighting for the preacher to spot at a glance while preaching — a memorable line, a turn in the "
           "argument, a key definition, a call to act. Answer with one line per sentence you pick, \"<number> || <a "
           "few words on why it is worth highlighting>\", using only the numbers given. Give at most " +
           std::to_string(m_limit) +
           ". Never quote, rewrite, or invent a sentence yourself — choose only from what is numbered.";
}

std::string HighlightSuggester::emptyState(const model::SermonNote& sermon) {
    return sentencesOf(sermon).empty() ? noManuscript : "";
}

std::vector<std::string> HighlightSuggester::sentencesOf(const model::SermonNote& sermon) {
    return orvane::SentenceTokenizer::sentences(sermon.notes);
}

std::vector<Highlight> HighlightSuggester::highlightsFrom(const std::string& reply,
                                                          const std::vector<std::string>& sentences) const {
    std::vector<Highlight> highlights;
    int count = static_cast<int>(sentences.size());
    for (const auto& choice : orvane::NumberedChoice::parse(featureText::trimmed(reply), count, false)) {
        if (choice.index < 0 || choice.index >= count)
            continue;
        auto position = static_cast<std::size_t>(choice.index);
        highlights.push_back({position, sentences[position], choice.note});
        if (highlights.size() >= m_limit)
            break;
    }
    if (highlights.empty())
        throw orvane::IntelligenceError::malformedResponse("Nothing in the answer named one of the offered sentences.");
    return highlights;
}

std::vector<Highlight> HighlightSuggester::fallback(const model::SermonNote& sermon) const {
    std::vector<std::string> sentences = sentencesOf(sermon);
    std::vector<Highlight> highlights;
    for (std::size_t position : distinctiveness::sentences(sentences, m_limit))
        highlights.push_back({position, sentences[position], "Uses words the rest of the manuscript does not."});
    return highlights;
}

std::vector<Highlight> HighlightSuggester::generate(const model::SermonNote& sermon,
                                                    orvane::IntelligenceBackendProviding& backend) const {
    std::vector<std::string> sentences = sentencesOf(sermon);
    if (sentences.empty())
        throw orvane::IntelligenceError::malformedResponse(noManuscript);
    std::string reply = backend.respond({instructions(), orvane::NumberedChoice::format(sentences), {}}).text;
    return highlightsFrom(reply, sentences);
}

} // namespace quillon::intelligence
