#include "intelligence/SermonTagSuggester.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

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

/// True for a word of a tag: letters and digits, with a hyphen or apostrophe only between them
/// ("self-control", "God’s"), or a colon between digits ("8:28").
bool isTagWord(std::string_view word) {
    bool previousJoiner = true; // a word may not open with a joiner
    UChar32 previous = 0;
    int32_t at = 0;
    const auto length = static_cast<int32_t>(word.size());
    while (at < length) {
        UChar32 c;
        U8_NEXT(word.data(), at, length, c);
        if (c < 0)
            return false;
        bool betweenDigits = c == ':' && u_isdigit(previous) && at < length && word[at] >= '0' && word[at] <= '9';
        previous = c;
        bool joiner = c == '-' || c == '\'' || c == 0x2019 || c == 0x2010 || c == 0x2011 || betweenDigits;
        if (joiner) {
            if (previousJoiner)
                return false;
        } else if (!u_isalnum(c) && u_charType(c) != U_NON_SPACING_MARK) {
            return false;
        }
        previousJoiner = joiner;
    }
    return !previousJoiner;
}

} // namespace

std::optional<std::string> SermonTagSuggester::tagShaped(std::string_view line) {
    std::string text = featureText::trimmed(line);
    // A bullet or a list number ("- ", "• ", "2. ", "3) ") is taken off; a book's own number
    // ("2 Corinthians") is not a list number.
    for (std::string_view bullet : {"- ", "* ", "• ", "– "})
        if (text.starts_with(bullet)) {
            text = featureText::trimmed(text.substr(bullet.size()));
            break;
        }
    std::size_t digits = text.find_first_not_of("0123456789");
    if (digits != std::string::npos && digits > 0 && (text[digits] == '.' || text[digits] == ')') &&
        digits + 1 < text.size() && text[digits + 1] == ' ')
        text = featureText::trimmed(text.substr(digits + 2));
    if (!text.empty() && text.back() == '.')
        text.pop_back();
    std::vector<std::string_view> words;
    std::string_view rest = text;
    while (!rest.empty()) {
        std::size_t blank = rest.find(' ');
        std::string_view word = rest.substr(0, blank);
        if (!isTagWord(word))
            return std::nullopt;
        words.push_back(word);
        rest = blank == std::string_view::npos ? std::string_view() : rest.substr(blank + 1);
    }
    if (words.empty() || words.size() > 3)
        return std::nullopt;
    return text;
}

std::string SermonTagSuggester::identifier() const {
    return orvane::intelligenceFeatureEntry("SermonTagSuggester")->identifier;
}

orvane::IntelligencePolicy SermonTagSuggester::policy() const {
    return orvane::intelligenceFeatureEntry("SermonTagSuggester")->policy;
}

std::string SermonTagSuggester::emptyState(const model::SermonNote& sermon) {
    return featureText::trimmed(allText(sermon)).empty() ? nothingToTag : "";
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

std::vector<std::string> SermonTagSuggester::tagsFrom(const std::string& reply,
                                                      const std::vector<scripture::ScriptureReference>& allowed) const {
    std::vector<std::string> tags;
    std::vector<std::string> seen;
    for (const std::string& line : featureText::lines(reply)) {
        std::optional<std::string> tag = tagShaped(line);
        if (!tag || !ReferenceRecogniser::namesOnly(*tag, allowed))
            continue;
        std::string key = featureText::folded(*tag);
        if (std::find(seen.begin(), seen.end(), key) != seen.end())
            continue;
        seen.push_back(key);
        tags.push_back(*tag);
        if (tags.size() >= m_limit)
            break;
    }
    if (tags.empty())
        throw orvane::IntelligenceError::malformedResponse("Nothing in the answer was shaped like a tag.");
    return tags;
}

std::vector<std::string> SermonTagSuggester::fallback(const model::SermonNote& sermon) const {
    std::vector<std::string> headings{sermon.title};
    std::string body = sermon.notes;
    for (const SermonSection& section : sermonSections(sermon)) {
        headings.push_back(section.heading);
        body += "\n" + section.notes;
    }
    return distinctiveness::themeWords(headings, body, m_limit);
}

std::vector<std::string> SermonTagSuggester::generate(const model::SermonNote& sermon,
                                                      orvane::IntelligenceBackendProviding& backend) const {
    if (!emptyState(sermon).empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToTag);
    return tagsFrom(backend.respond({instructions(), prompt(sermon), {}}).text, sermonReferences(sermon));
}

} // namespace quillon::intelligence
