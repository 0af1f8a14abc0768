#include "intelligence/SermonTagSuggester.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/FeatureText.h"

#include <algorithm>
#include <cctype>

namespace quillon::intelligence {

namespace {

std::string allText(const model::SermonNote& sermon) {
    std::string text = sermon.title + "\n";
    for (const SermonSection& section : sermonSections(sermon))
        text += section.body() + "\n";
    return text + sermon.notes;
}

} // namespace

std::string SermonTagSuggester::identifier() const {
    return orvane::intelligenceFeatureEntry("SermonTagSuggester")->identifier;
}

orvane::IntelligencePolicy SermonTagSuggester::policy() const {
    return orvane::intelligenceFeatureEntry("SermonTagSuggester")->policy;
}

std::string SermonTagSuggester::instructions() const {
    return "You label a sermon with the words a preacher would browse their own archive by. Answer with one tag per "
           "line and nothing else — no numbering, no punctuation, no explanation, no heading. A tag is one word, or at "
           "most three. Give at most " +
           std::to_string(m_limit) +
           ". Name what this sermon is actually about, including a theme it never puts a name to. Never give a tag "
           "that would fit any sermon at all.";
}

std::string SermonTagSuggester::prompt(const model::SermonNote& sermon) {
    std::string text = "Title: " + sermon.title + "\n";
    for (const SermonSection& section : sermonSections(sermon))
        text += "\n" + section.offered() + "\n";
    if (!featureText::trimmed(sermon.notes).empty())
        text += "\nManuscript:\n" + featureText::trimmed(sermon.notes);
    return text;
}

std::vector<std::string> SermonTagSuggester::tagsFrom(const std::string& reply) const {
    std::vector<std::string> tags;
    std::vector<std::string> seen;
    for (std::string line : featureText::lines(reply)) {
        // Models often number or bullet their lines despite the instructions.
        std::size_t start = line.find_first_not_of("-•*0123456789.) \t");
        if (start == std::string::npos)
            continue;
        line = featureText::trimmed(line.substr(start));
        while (!line.empty() && std::ispunct(static_cast<unsigned char>(line.back())))
            line.pop_back();
        line = featureText::trimmed(line);
        std::size_t words = line.empty() ? 0 : 1 + std::count(line.begin(), line.end(), ' ');
        if (words == 0 || words > 3 || line.find(':') != std::string::npos)
            continue;
        std::string key = featureText::folded(line);
        if (std::find(seen.begin(), seen.end(), key) != seen.end())
            continue;
        seen.push_back(key);
        tags.push_back(line);
        if (tags.size() >= m_limit)
            break;
    }
    if (tags.empty())
        throw orvane::IntelligenceError::malformedResponse("Nothing in the answer was shaped like a tag.");
    return tags;
}

std::vector<std::string> SermonTagSuggester::fallback(const model::SermonNote& sermon) const {
    return distinctiveness::repeatedWords(allText(sermon), m_limit);
}

std::vector<std::string> SermonTagSuggester::generate(const model::SermonNote& sermon,
                                                      orvane::IntelligenceBackendProviding& backend) const {
    if (featureText::trimmed(allText(sermon)).empty())
        return {};
    return tagsFrom(backend.respond({instructions(), prompt(sermon), {}}).text);
}

} // namespace quillon::intelligence
