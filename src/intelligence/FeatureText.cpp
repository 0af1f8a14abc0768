#include "intelligence/FeatureText.h"

#include "scripture/ReferenceParser.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cctype>
#include <memory>

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

std::string comparable(std::string_view text) {
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    for (int32_t i = 0; i < unicode.length(); ++i) {
        char16_t c = unicode.charAt(i);
        if (c == u'\u2018' || c == u'\u2019' || c == u'\u02BC' || c == u'\u2032')
            unicode.setCharAt(i, u'\'');
        else if (c == u'\u00A0' || c == u'\u202F' || (c >= u'\u2000' && c <= u'\u200A'))
            unicode.setCharAt(i, u' ');
    }
    std::string result;
    unicode.foldCase().toUTF8String(result);
    return result;
}

namespace {

/// Boundaries of user-perceived characters in `text`.
std::vector<int32_t> characterBoundaries(const icu::UnicodeString& text) {
    // Creating an iterator costs far more than using one; keep one per thread.
    thread_local std::unique_ptr<icu::BreakIterator> characters = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> iterator(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        return U_SUCCESS(status) ? std::move(iterator) : nullptr;
    }();
    std::vector<int32_t> boundaries;
    if (!characters) {
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

/// The items in list order, the order the preacher arranged and `show` prints; `sortOrder` is
/// only a hint written alongside it and never decides what comes first.
template <class Item>
std::vector<const Item*> inListOrder(const std::vector<Item>& items) {
    std::vector<const Item*> ordered;
    for (const Item& item : items)
        ordered.push_back(&item);
    return ordered;
}

} // namespace

SermonSection topicSection(const model::SermonTopic& topic, std::size_t position) {
    SermonSection section;
    section.topic = position;
    section.heading = featureText::trimmed(topic.title);
    std::vector<std::string> paragraphs;
    if (!featureText::trimmed(topic.details).empty())
        paragraphs.push_back(featureText::trimmed(topic.details));
    for (const model::SermonSubTopic* subTopic : inListOrder(topic.subTopics)) {
        std::string title = featureText::trimmed(subTopic->title);
        std::string details = featureText::trimmed(subTopic->details);
        if (!title.empty() || !details.empty())
            paragraphs.push_back(title.empty() ? details : details.empty() ? title : title + ": " + details);
        for (const model::SermonScripture* scripture : inListOrder(subTopic->scriptures)) {
            std::string reference = featureText::referenceText(*scripture);
            if (std::find(section.scriptures.begin(), section.scriptures.end(), reference) == section.scriptures.end())
                section.scriptures.push_back(reference);
        }
    }
    for (std::size_t i = 0; i < paragraphs.size(); ++i)
        section.notes += (i ? "\n" : "") + paragraphs[i];
    return section;
}

std::vector<SermonSection> sermonSections(const model::SermonNote& sermon) {
    std::vector<SermonSection> sections;
    for (std::size_t position = 0; position < sermon.topics.size(); ++position) {
        SermonSection section = topicSection(sermon.topics[position], position);
        if (!section.heading.empty() || !section.notes.empty())
            sections.push_back(std::move(section));
    }
    return sections;
}

std::vector<scripture::ScriptureReference> sermonReferences(const model::SermonNote& sermon) {
    std::vector<scripture::ScriptureReference> references;
    for (const model::SermonTopic* topic : inListOrder(sermon.topics))
        for (const model::SermonSubTopic* subTopic : inListOrder(topic->subTopics))
            for (const model::SermonScripture* scripture : inListOrder(subTopic->scriptures))
                if (std::optional<scripture::ScriptureReference> reference = featureText::referenceOf(*scripture))
                    if (std::find(references.begin(), references.end(), *reference) == references.end())
                        references.push_back(std::move(*reference));
    return references;
}

} // namespace quillon::intelligence
