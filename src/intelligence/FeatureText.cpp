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

namespace {

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The words (letter runs) just before `end`, nearest last, at most `count`, each separated by
/// blanks only; a trailing full stop after the last word ("Rom.") is allowed.
std::vector<std::string_view> wordsBefore(std::string_view text, std::size_t end, std::size_t count) {
    std::vector<std::string_view> words;
    std::size_t at = end;
    while (words.size() < count) {
        std::size_t blanks = at;
        while (blanks > 0 && (text[blanks - 1] == ' ' || text[blanks - 1] == '\t'))
            --blanks;
        if (blanks == at && !words.empty())
            break;
        if (words.empty() && blanks > 0 && text[blanks - 1] == '.')
            --blanks;
        std::size_t wordEnd = blanks;
        std::size_t wordStart = wordEnd;
        while (wordStart > 0 && isLetter(text[wordStart - 1]))
            --wordStart;
        if (wordStart == wordEnd) {
            // A book number ("1 Cor") is a one-digit word of its own.
            if (!words.empty() && wordEnd > 0 && text[wordEnd - 1] >= '1' && text[wordEnd - 1] <= '3' &&
                (wordEnd == 1 || !isDigit(text[wordEnd - 2])) && (wordEnd == 1 || !isLetter(text[wordEnd - 2])))
                words.push_back(text.substr(wordEnd - 1, 1));
            break;
        }
        if (wordStart > 0 && isDigit(text[wordStart - 1]))
            break;
        words.push_back(text.substr(wordStart, wordEnd - wordStart));
        at = wordStart;
    }
    return words;
}

} // namespace

std::vector<scripture::ScriptureReference> referencesIn(std::string_view text) {
    // Found by their numbers: each run of digits preceded by a word is a possible chapter, with an
    // optional ":verse" or ":verse-verse" after it; the words before it are tried as a book name,
    // longest first ("Song of Solomon", "of Solomon", "Solomon").
    std::vector<scripture::ScriptureReference> found;
    std::size_t at = 0;
    while (at < text.size()) {
        if (!isDigit(text[at]) ||
            (at > 0 && (isDigit(text[at - 1]) || isLetter(text[at - 1]) || text[at - 1] == ':'))) {
            ++at;
            continue;
        }
        std::size_t chapterEnd = at;
        while (chapterEnd < text.size() && isDigit(text[chapterEnd]))
            ++chapterEnd;
        std::size_t end = chapterEnd;
        bool hasVerse = false;
        if (end + 1 < text.size() && text[end] == ':' && isDigit(text[end + 1])) {
            hasVerse = true;
            end += 1;
            while (end < text.size() && isDigit(text[end]))
                ++end;
            std::size_t dash = end;
            if (dash < text.size() && text[dash] == '-')
                dash += 1;
            else if (text.substr(dash, 3) == "\u2013")
                dash += 3;
            if (dash > end && dash < text.size() && isDigit(text[dash])) {
                end = dash;
                while (end < text.size() && isDigit(text[end]))
                    ++end;
            }
        }
        if (chapterEnd - at > 3 || (end < text.size() && (isLetter(text[end]) || isDigit(text[end])))) {
            at = end;
            continue;
        }
        std::vector<std::string_view> words = wordsBefore(text, at, 4);
        std::string tail = " " + std::string(text.substr(at, end - at));
        bool recognised = false;
        for (std::size_t take = words.size(); take >= 1 && !recognised; --take) {
            std::string name;
            for (std::size_t i = take; i-- > 0;)
                name += std::string(words[i]) + (i ? " " : "");
            std::size_t letter = name.find_first_not_of("123 ");
            if (letter == std::string::npos || name.size() - letter < 2)
                continue;
            if (!hasVerse && !std::isupper(static_cast<unsigned char>(name[letter])))
                continue;
            if (std::optional<scripture::ScriptureReference> reference = scripture::parse(name + tail)) {
                found.push_back(std::move(*reference));
                recognised = true;
            }
        }
        at = end;
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
