#include "intelligence/MessyDocumentOutliner.h"

#include "intelligence/FeatureText.h"
#include "scripture/SpokenReferences.h"

#include <array>
#include <cctype>
#include <optional>
#include <sstream>

namespace quillon::intelligence {

namespace {

constexpr std::size_t titleWords = 8;
constexpr std::size_t titleCharacters = 80;
/// Words of each passage shown to the model: enough to see what it is about, little enough that
/// an hour's transcript fits a small model's context.
constexpr std::size_t promptWordsPerPassage = 30;
constexpr std::size_t promptPassageLimit = 400;

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

std::string lowered(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string firstWords(const std::string& text, std::size_t count) {
    std::vector<std::string> words = wordsOf(text);
    std::string joined;
    for (std::size_t i = 0; i < words.size() && i < count; ++i)
        joined += (i == 0 ? "" : " ") + words[i];
    if (words.size() > count)
        joined += "…";
    return joined;
}

std::string capitalised(std::string text) {
    if (!text.empty())
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

/// A topic that opens with a reference is named for it; otherwise by the speaker's first words.
std::string titleFor(const SpokenPassage& passage) {
    auto references = scripture::spokenReferences(passage.text);
    if (!references.empty())
        return references.front().reference.description();
    std::string title = capitalised(firstWords(featureText::trimmed(passage.text), titleWords));
    return title.empty() ? "Untitled" : featureText::shortened(title, titleCharacters);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

void skipBlanks(std::string_view& text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
}

struct TopicLine {
    std::size_t number = 0;
    std::string_view title;
};

/// "TOPIC 3: title", "**Topic 3 - title**", "topic 3. title": the passage number (one to five
/// digits) and the rest of the line. Read left to right once, as replies may be megabytes long.
std::optional<TopicLine> topicLine(std::string_view line) {
    while (!line.empty() && line.front() == '*')
        line.remove_prefix(1);
    skipBlanks(line);
    static constexpr std::string_view keyword = "topic";
    if (line.size() < keyword.size())
        return std::nullopt;
    for (std::size_t i = 0; i < keyword.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(line[i])) != keyword[i])
            return std::nullopt;
    line.remove_prefix(keyword.size());
    if (line.empty() || !isBlank(line.front()))
        return std::nullopt;
    skipBlanks(line);
    TopicLine topic;
    std::size_t digits = 0;
    while (digits < line.size() && std::isdigit(static_cast<unsigned char>(line[digits]))) {
        if (++digits > 5)
            return std::nullopt;
        topic.number = topic.number * 10 + static_cast<std::size_t>(line[digits - 1] - '0');
    }
    if (digits == 0)
        return std::nullopt;
    line.remove_prefix(digits);
    skipBlanks(line);
    if (line.empty() || (line.front() != ':' && line.front() != '.' && line.front() != '-'))
        return std::nullopt;
    line.remove_prefix(1);
    topic.title = line;
    return topic;
}

} // namespace

std::string MessyDocumentOutliner::identifier() const {
    return orvane::intelligenceFeatureEntry("MessyDocumentOutliner")->identifier;
}

orvane::IntelligencePolicy MessyDocumentOutliner::policy() const {
    return orvane::intelligenceFeatureEntry("MessyDocumentOutliner")->policy;
}

bool MessyDocumentOutliner::opensWithHeading(const std::string& text) {
    static constexpr std::array<std::string_view, 22> headings = {
        "first ",      "firstly",       "second ",        "secondly",       "third ",         "thirdly",
        "fourth ",     "fourthly",      "next ",          "finally",        "lastly",         "in conclusion",
        "to conclude", "my next point", "our next point", "the next point", "my first point", "point number",
        "let's turn",  "let us turn",   "turn with me",   "now let's look"};
    const std::string opening = lowered(featureText::trimmed(text)) + " ";
    for (std::string_view heading : headings)
        if (opening.starts_with(heading))
            return true;
    return false;
}

std::vector<OutlineSection> MessyDocumentOutliner::fallback(const std::vector<SpokenPassage>& passages) const {
    std::vector<OutlineSection> sections;
    if (passages.empty())
        return sections;
    sections.push_back({titleFor(passages.front()), 0});
    std::size_t wordsInTopic = wordsOf(passages.front().text).size();
    for (std::size_t i = 1; i < passages.size(); ++i) {
        const SpokenPassage& passage = passages[i];
        const bool movesOn = passage.pauseBefore >= topicPauseSeconds || opensWithHeading(passage.text) ||
                             !scripture::spokenReferences(passage.text).empty();
        if (movesOn && wordsInTopic >= minimumTopicWords && sections.size() < maximumTopics) {
            sections.push_back({titleFor(passage), i});
            wordsInTopic = 0;
        }
        wordsInTopic += wordsOf(passage.text).size();
    }
    return sections;
}

std::string MessyDocumentOutliner::instructions() {
    return "You organise the transcript of a spoken sermon into its main topics. The transcript is given as "
           "numbered passages, each with the pause in seconds before it. Find the places where the speaker moves on "
           "to a new topic: a long pause, a spoken heading such as \"secondly\" or \"in conclusion\", or a new "
           "scripture reading. Reply with one line per topic, in order, each \"TOPIC <number of the passage where it "
           "begins>: <a title of at most eight words in the speaker's own words>\". The first topic begins at "
           "passage 1. Give between 1 and " +
           std::to_string(maximumTopics) + " topics and nothing else. Never invent content the speaker did not say.";
}

std::string MessyDocumentOutliner::prompt(const std::vector<SpokenPassage>& passages) {
    std::string text;
    for (std::size_t i = 0; i < passages.size(); ++i) {
        char pause[32];
        std::snprintf(pause, sizeof pause, "%.1f", passages[i].pauseBefore);
        text += std::to_string(i + 1) + ". (pause " + pause + " s) " +
                firstWords(featureText::trimmed(passages[i].text), promptWordsPerPassage) + "\n";
    }
    return text;
}

std::vector<OutlineSection> MessyDocumentOutliner::sectionsFrom(const std::string& reply, std::size_t passageCount) {
    std::vector<OutlineSection> sections;
    for (const std::string& candidate : featureText::lines(reply)) {
        const std::optional<TopicLine> line = topicLine(candidate);
        if (!line)
            continue;
        const std::size_t number = line->number;
        std::string_view title = line->title;
        // Models like to embolden or quote their headings.
        while (!title.empty() && (title.back() == '*' || isBlank(title.back())))
            title.remove_suffix(1);
        skipBlanks(title);
        if (title.size() >= 2 && title.front() == '"' && title.back() == '"') {
            title = title.substr(1, title.size() - 2);
            skipBlanks(title);
            while (!title.empty() && isBlank(title.back()))
                title.remove_suffix(1);
        }
        if (number < 1 || number > passageCount || title.empty() || sections.size() >= maximumTopics)
            continue;
        if (!sections.empty() && number - 1 <= sections.back().firstPassage)
            continue;
        sections.push_back({featureText::shortened(std::string(title), titleCharacters), number - 1});
    }
    if (sections.empty())
        throw orvane::IntelligenceError::malformedResponse("No usable topic came back.");
    sections.front().firstPassage = 0;
    return sections;
}

std::vector<OutlineSection> MessyDocumentOutliner::generate(const std::vector<SpokenPassage>& passages,
                                                            orvane::IntelligenceBackendProviding& backend) const {
    if (passages.empty())
        return {};
    if (passages.size() > promptPassageLimit)
        throw orvane::IntelligenceError::malformedResponse("The transcript is too long for the model.");
    return sectionsFrom(backend.respond({instructions(), prompt(passages), {}}).text, passages.size());
}

} // namespace quillon::intelligence
