#include "intelligence/FeatureText.h"

#include "scripture/ReferenceParser.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <regex>

namespace quillon::intelligence {

namespace featureText {

std::string trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

bool isNone(std::string_view reply) {
    std::string text = trimmed(reply);
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text == "NONE";
}

std::vector<std::string> lines(std::string_view reply) {
    std::vector<std::string> result;
    std::size_t start = 0;
    while (start <= reply.size()) {
        std::size_t end = reply.find('\n', start);
        std::string line =
            trimmed(reply.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
        if (!line.empty())
            result.push_back(std::move(line));
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    return result;
}

std::string folded(std::string_view text) {
    std::string result;
    icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
        .foldCase()
        .toUTF8String(result);
    return result;
}

namespace {

/// Boundaries of user-perceived characters in `text`.
std::vector<int32_t> characterBoundaries(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    std::vector<int32_t> boundaries;
    if (U_FAILURE(status)) {
        for (int32_t i = 0; i <= text.length(); ++i)
            boundaries.push_back(i);
        return boundaries;
    }
    characters->setText(text);
    for (int32_t at = characters->first(); at != icu::BreakIterator::DONE; at = characters->next())
        boundaries.push_back(at);
    return boundaries;
}

} // namespace

std::size_t characterCount(std::string_view text) {
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::vector<int32_t> boundaries = characterBoundaries(unicode);
    return boundaries.empty() ? 0 : boundaries.size() - 1;
}

std::string shortened(std::string_view text, std::size_t limit) {
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::vector<int32_t> boundaries = characterBoundaries(unicode);
    if (boundaries.size() <= limit + 1 || limit == 0)
        return limit == 0 ? std::string() : std::string(text);
    // Room for the ellipsis, then back to the last blank so no word is cut in half.
    int32_t end = boundaries[limit - 1];
    int32_t blank = unicode.lastIndexOf(u' ', 0, end);
    if (blank > end / 2)
        end = blank;
    std::string result;
    unicode.tempSubString(0, end).toUTF8String(result);
    return trimmed(result) + "…";
}

std::vector<scripture::ScriptureReference> referencesIn(std::string_view text) {
    // A book name of up to three words (with an optional leading number), then a chapter and
    // optionally ":verse" or ":verse-verse".
    static const std::regex pattern(
        R"(((?:[1-3]\s*)?[A-Za-z]+(?:\s+(?:of\s+)?[A-Za-z]+)?)\.?\s+(\d{1,3})(?:\s*:\s*(\d{1,3})(?:\s*[-–]\s*(\d{1,3}))?)?)");
    std::vector<scripture::ScriptureReference> found;
    std::string subject(text);
    auto from = subject.cbegin();
    std::smatch match;
    while (std::regex_search(from, subject.cend(), match, pattern)) {
        bool hasVerse = match[3].matched;
        std::string tail = " " + match[2].str();
        if (hasVerse)
            tail += ":" + match[3].str() + (match[4].matched ? "-" + match[4].str() : "");
        // Try the longest name first: "Song of Solomon 2", then "Solomon 2".
        std::string name = match[1].str();
        std::vector<std::string> candidates = {name};
        std::size_t space = name.find_last_of(" \t");
        if (space != std::string::npos)
            candidates.push_back(name.substr(space + 1));
        bool recognised = false;
        for (const std::string& candidate : candidates) {
            std::size_t letter = candidate.find_first_not_of("123 \t");
            if (letter == std::string::npos || candidate.size() - letter < 2)
                continue;
            if (!hasVerse && !std::isupper(static_cast<unsigned char>(candidate[letter])))
                continue;
            if (std::optional<scripture::ScriptureReference> reference = scripture::parse(candidate + tail)) {
                found.push_back(std::move(*reference));
                recognised = true;
                break;
            }
        }
        if (recognised) {
            from = match[0].second;
        } else {
            // Not a reference: move past its first word only, since a reference may begin inside
            // the match ("and 1 Cor 13:4").
            auto next = std::find_if(match[0].first, match[0].second, [](char c) { return c == ' ' || c == '\t'; });
            from = next == match[0].second ? match[0].second : next + 1;
        }
    }
    return found;
}

bool isWithin(const scripture::ScriptureReference& named, const scripture::ScriptureReference& given) {
    if (named.book.id != given.book.id || named.chapter != given.chapter)
        return false;
    if (!given.verses)
        return true;
    if (!named.verses)
        return false;
    return std::all_of(named.verses->begin(), named.verses->end(), [&](int verse) {
        return std::find(given.verses->begin(), given.verses->end(), verse) != given.verses->end();
    });
}

bool namesOnly(std::string_view text, const std::vector<scripture::ScriptureReference>& allowed) {
    for (const scripture::ScriptureReference& named : referencesIn(text))
        if (std::none_of(allowed.begin(), allowed.end(),
                         [&](const scripture::ScriptureReference& given) { return isWithin(named, given); }))
            return false;
    return true;
}

std::string referenceText(const model::SermonScripture& scripture) {
    std::string text =
        scripture.bookName + " " + std::to_string(scripture.chapter) + ":" + std::to_string(scripture.startVerse);
    if (scripture.endVerse > scripture.startVerse)
        text += "-" + std::to_string(scripture.endVerse);
    return text;
}

std::optional<scripture::ScriptureReference> referenceOf(const model::SermonScripture& scripture) {
    std::optional<scripture::BibleBook> book = scripture::resolveBook(scripture.bookName);
    if (!book)
        return std::nullopt;
    scripture::ScriptureReference reference;
    reference.book = std::move(*book);
    reference.chapter = scripture.chapter;
    std::vector<int> verses;
    for (int verse = scripture.startVerse;
         verse <= std::max(scripture.startVerse, scripture.endVerse) && verse - scripture.startVerse < 1000; ++verse)
        verses.push_back(verse);
    reference.verses = std::move(verses);
    return reference;
}

} // namespace featureText

std::string SermonSection::body() const {
    if (notes.empty())
        return heading;
    if (heading.empty())
        return notes;
    return heading + "\n" + notes;
}

std::string SermonSection::offered() const {
    std::string text = body();
    if (!scriptures.empty()) {
        text += "\nScripture cited here:";
        for (std::size_t i = 0; i < scriptures.size(); ++i)
            text += (i ? ", " : " ") + scriptures[i];
    }
    return text;
}

namespace {

template <class Item>
std::vector<const Item*> inSortOrder(const std::vector<Item>& items) {
    std::vector<const Item*> sorted;
    for (const Item& item : items)
        sorted.push_back(&item);
    std::stable_sort(sorted.begin(), sorted.end(), [](auto* a, auto* b) { return a->sortOrder < b->sortOrder; });
    return sorted;
}

} // namespace

std::vector<SermonSection> sermonSections(const model::SermonNote& sermon) {
    std::vector<SermonSection> sections;
    for (const model::SermonTopic* topic : inSortOrder(sermon.topics)) {
        SermonSection section;
        section.heading = featureText::trimmed(topic->title);
        std::vector<std::string> paragraphs;
        if (!featureText::trimmed(topic->details).empty())
            paragraphs.push_back(featureText::trimmed(topic->details));
        for (const model::SermonSubTopic* subTopic : inSortOrder(topic->subTopics)) {
            std::string title = featureText::trimmed(subTopic->title);
            std::string details = featureText::trimmed(subTopic->details);
            if (!title.empty() || !details.empty())
                paragraphs.push_back(title.empty() ? details : details.empty() ? title : title + ": " + details);
            for (const model::SermonScripture* scripture : inSortOrder(subTopic->scriptures)) {
                std::string reference = featureText::referenceText(*scripture);
                if (std::find(section.scriptures.begin(), section.scriptures.end(), reference) ==
                    section.scriptures.end())
                    section.scriptures.push_back(reference);
            }
        }
        for (std::size_t i = 0; i < paragraphs.size(); ++i)
            section.notes += (i ? "\n" : "") + paragraphs[i];
        if (!section.heading.empty() || !section.notes.empty())
            sections.push_back(std::move(section));
    }
    return sections;
}

std::vector<scripture::ScriptureReference> sermonReferences(const model::SermonNote& sermon) {
    std::vector<scripture::ScriptureReference> references;
    for (const model::SermonTopic* topic : inSortOrder(sermon.topics))
        for (const model::SermonSubTopic* subTopic : inSortOrder(topic->subTopics))
            for (const model::SermonScripture* scripture : inSortOrder(subTopic->scriptures))
                if (std::optional<scripture::ScriptureReference> reference = featureText::referenceOf(*scripture))
                    if (std::find(references.begin(), references.end(), *reference) == references.end())
                        references.push_back(std::move(*reference));
    return references;
}

} // namespace quillon::intelligence
