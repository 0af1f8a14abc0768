#include "scripture/ReferenceParser.h"

#include "orvane/AsciiText.h"
#include "scripture/ReferenceNormaliser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillon::scripture {

namespace {

using orvane::ascii::isDigit;
using orvane::ascii::isLetter;
using orvane::ascii::isSpace;
using orvane::ascii::lower;
using orvane::ascii::lowercased;
using orvane::ascii::trimmed;

// Longer digit runs are read as this: no chapter comes near it, and the lookup skips it.
constexpr int saturatedVerseNumber = 999'999'999;

std::optional<int> decimal(std::string_view digits) {
    if (digits.empty() || digits.size() > 9)
        return std::nullopt;
    int value = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

/// Code points of UTF-8 text; a malformed byte stands for itself so distances stay defined.
std::u32string codePoints(std::string_view text) {
    std::u32string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        auto byte = static_cast<unsigned char>(text[i]);
        std::size_t length = byte < 0x80           ? 1
                             : (byte >> 5) == 0x6  ? 2
                             : (byte >> 4) == 0xE  ? 3
                             : (byte >> 3) == 0x1E ? 4
                                                   : 0;
        if (length == 0 || i + length > text.size()) {
            result.push_back(byte);
            ++i;
            continue;
        }
        char32_t point = length == 1 ? byte : byte & (0xFF >> (length + 1));
        bool valid = true;
        for (std::size_t k = 1; k < length; ++k) {
            auto next = static_cast<unsigned char>(text[i + k]);
            valid = valid && (next & 0xC0) == 0x80;
            point = (point << 6) | (next & 0x3F);
        }
        if (!valid) {
            result.push_back(byte);
            ++i;
            continue;
        }
        result.push_back(point);
        i += length;
    }
    return result;
}

/// Plain Levenshtein distance (insertion, deletion and substitution each cost one), or `limit + 1`
/// as soon as it is sure to exceed `limit`: a row's smallest entry never shrinks further down.
/// Book names are short, so the two rows live on the stack; longer texts use the heap.
std::size_t levenshtein(std::u32string_view a, std::u32string_view b, std::size_t limit) {
    constexpr std::size_t stackColumns = 64;
    std::size_t stackRows[2][stackColumns];
    std::vector<std::size_t> heapRows;
    std::size_t* previous = stackRows[0];
    std::size_t* current = stackRows[1];
    if (b.size() + 1 > stackColumns) {
        heapRows.resize(2 * (b.size() + 1));
        previous = heapRows.data();
        current = heapRows.data() + b.size() + 1;
    }
    for (std::size_t j = 0; j <= b.size(); ++j)
        previous[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        std::size_t rowMinimum = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
            rowMinimum = std::min(rowMinimum, current[j]);
        }
        if (rowMinimum > limit)
            return limit + 1;
        std::swap(previous, current);
    }
    return std::min(previous[b.size()], limit + 1);
}

struct BookKeys {
    std::unordered_map<std::string, const BibleBook*> byName;
    std::unordered_map<std::string, const BibleBook*> byAlias;
    /// Normalised names in canonical order, with their code points for the fuzzy match.
    std::vector<std::pair<std::string, std::u32string>> names;
    /// The normalised names in text order, for finding every name a key begins in one search.
    std::vector<std::pair<std::string, const BibleBook*>> sortedNames;
    std::size_t longestName = 0;
};

const BookKeys& bookKeys() {
    static const BookKeys keys = [] {
        BookKeys result;
        for (const BibleBook& book : allBibleBooks()) {
            std::string name = normaliseBookName(book.name);
            result.byName.emplace(name, &book);
            result.names.emplace_back(name, codePoints(name));
            result.sortedNames.emplace_back(name, &book);
            result.longestName = std::max(result.longestName, result.names.back().second.size());
            for (std::string_view alias : bibleBookAliases(book.id))
                result.byAlias.emplace(normaliseBookName(alias), &book); // the earlier book keeps a shared alias
        }
        std::sort(result.sortedNames.begin(), result.sortedNames.end());
        return result;
    }();
    return keys;
}

const BibleBook* bookNamedAfterLast(const std::string& text, std::string_view marker) {
    std::size_t at = text.rfind(marker);
    if (at == std::string::npos)
        return nullptr;
    return resolveBookInTable(std::string_view(text).substr(at + marker.size()));
}

/// "last verse of Jude", "first verse of Genesis", "the last chapter of Revelation".
std::optional<ScriptureReference> descriptiveReference(const std::string& text) {
    if (text.find("last verse of ") != std::string::npos) {
        if (const BibleBook* book = bookNamedAfterLast(text, "last verse of ")) {
            int chapter = book->chapterCount();
            return ScriptureReference{*book, chapter, std::vector<int>{book->chapters.back()}};
        }
        return std::nullopt;
    }
    if (text.find("first verse of ") != std::string::npos) {
        if (const BibleBook* book = bookNamedAfterLast(text, "first verse of "))
            return ScriptureReference{*book, 1, std::vector<int>{1}};
        return std::nullopt;
    }
    // "(the )first|last|1st chapter of <book>": the leftmost such phrase decides first or last.
    static constexpr std::string_view chapterOf = "chapter of ";
    for (std::size_t at = text.find(chapterOf); at != std::string::npos; at = text.find(chapterOf, at + 1)) {
        if (at + chapterOf.size() >= text.size())
            break;
        std::string_view before = std::string_view(text).substr(0, at);
        std::size_t start = std::string::npos;
        for (std::string_view ordinal : {"first ", "last ", "1st "})
            if (before.ends_with(ordinal))
                start = at - ordinal.size();
        if (start == std::string::npos)
            continue;
        const BibleBook* book = bookNamedAfterLast(text, " of ");
        if (!book)
            return std::nullopt;
        bool last = text.find("last", start) != std::string::npos;
        return ScriptureReference{*book, last ? book->chapterCount() : 1, std::nullopt};
    }
    return std::nullopt;
}

/// The three pieces of "<book> <chapter>[<separator><verses>]".
struct ReferenceParts {
    std::string_view book;
    std::string_view chapter;
    std::optional<std::string_view> verses;
};

/// Hand-written equivalent of the pattern
/// ^\s*((?:[1-3]|i{1,3}|first|second|third|1st|2nd|3rd)?\s*[A-Za-z][A-Za-z ]*?)\s*(\d+)(?:[\s:.]+(\d[\d,\s\-]*?))?\s*$
/// (case-insensitive). The spelled ordinals are letters, so only a leading digit 1-3 needs care.
std::optional<ReferenceParts> splitReference(std::string_view text) {
    text = trimmed(text);
    std::size_t i = 0;
    const std::size_t n = text.size();
    if (i < n && text[i] >= '1' && text[i] <= '3') {
        ++i;
        while (i < n && isSpace(text[i]))
            ++i;
    }
    if (i >= n || !isLetter(text[i]))
        return std::nullopt;
    std::size_t bookEnd = i;
    while (bookEnd < n && (isLetter(text[bookEnd]) || text[bookEnd] == ' '))
        ++bookEnd;
    std::size_t chapterStart = bookEnd;
    while (chapterStart < n && isSpace(text[chapterStart]))
        ++chapterStart;
    while (bookEnd > i && text[bookEnd - 1] == ' ')
        --bookEnd;
    std::size_t chapterEnd = chapterStart;
    while (chapterEnd < n && isDigit(text[chapterEnd]))
        ++chapterEnd;
    if (chapterEnd == chapterStart)
        return std::nullopt;

    ReferenceParts parts{text.substr(0, bookEnd), text.substr(chapterStart, chapterEnd - chapterStart), std::nullopt};
    if (chapterEnd == n)
        return parts;
    std::size_t versesStart = chapterEnd;
    while (versesStart < n && (isSpace(text[versesStart]) || text[versesStart] == ':' || text[versesStart] == '.'))
        ++versesStart;
    // The text is trimmed, so something other than whitespace follows the chapter: a separator
    // must lead to a verse number ("John 3:" is not a reference).
    if (versesStart == n || !isDigit(text[versesStart]))
        return std::nullopt;
    for (std::size_t k = versesStart; k < n; ++k)
        if (!isDigit(text[k]) && text[k] != ',' && text[k] != '-' && !isSpace(text[k]))
            return std::nullopt;
    parts.verses = text.substr(versesStart);
    return parts;
}

/// A verse number of any length; a run too long for an int saturates.
std::optional<int> verseNumber(std::string_view digits) {
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    while (digits.size() > 1 && digits.front() == '0')
        digits.remove_prefix(1);
    return digits.size() > 9 ? saturatedVerseNumber : decimal(digits);
}

/// The verses of a list such as "16-18, 20". A range stops at the chapter's last verse
/// (`lastVerse`), so "170-1000" of a 176-verse chapter is 170 to 176 and no typed range can
/// expand without bound; a range that begins beyond the chapter keeps only its first verse,
/// which the lookup then skips like any verse the chapter lacks.
std::optional<std::vector<int>> verseList(std::string_view list, int lastVerse) {
    std::vector<int> verses;
    while (!list.empty()) {
        std::size_t comma = list.find(',');
        std::string_view piece = trimmed(list.substr(0, comma));
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
        if (piece.empty())
            continue; // "16," or "16,,18": an empty piece names nothing
        std::size_t dash = piece.find('-');
        if (dash == std::string_view::npos) {
            auto verse = verseNumber(piece);
            if (!verse)
                return std::nullopt;
            verses.push_back(*verse);
            continue;
        }
        auto first = verseNumber(trimmed(piece.substr(0, dash)));
        auto last = verseNumber(trimmed(piece.substr(dash + 1)));
        if (!first || !last)
            return std::nullopt;
        const int low = std::min(*first, *last);
        const int high = std::min(std::max(*first, *last), std::max(low, lastVerse));
        for (int verse = low; verse <= high; ++verse)
            verses.push_back(verse);
    }
    return verses;
}

/// The fuzzy match: the book whose name is fewest edits away within its allowance (a quarter of
/// its length, or one edit for names under four characters); the earlier book on equal distance.
const BibleBook* closestBook(const BookKeys& keys, const std::string& key) {
    // Every allowance is under the longest name's quarter, so a key that much longer than every
    // name is no near miss (and a very long key costs nothing).
    if (key.size() > 4 * (keys.longestName + keys.longestName / 4 + 1))
        return nullptr;
    const std::u32string typed = codePoints(key);
    const auto& books = allBibleBooks();
    const BibleBook* best = nullptr;
    std::size_t bestDistance = 0;
    for (std::size_t index = 0; index < books.size(); ++index) {
        const std::u32string& candidate = keys.names[index].second;
        std::size_t length = candidate.size();
        // A difference in length is a lower bound of the distance, so most books are skipped cheaply.
        std::size_t allowed = length >= 4 ? length / 4 : 1;
        std::size_t lengthGap = length > typed.size() ? length - typed.size() : typed.size() - length;
        // Only a distance within the allowance, and below the best so far, can change the answer.
        const std::size_t limit = best ? std::min(allowed, bestDistance - 1) : allowed;
        if (lengthGap > limit || (best && bestDistance == 0))
            continue;
        std::size_t distance = levenshtein(typed, candidate, limit);
        if (distance <= limit) {
            best = &books[index];
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace

std::string normaliseBookName(std::string_view name) {
    std::string text = lowercased(trimmed(name));
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 9> ordinals = {{
        {"first ", "1 "},
        {"second ", "2 "},
        {"third ", "3 "},
        {"1st ", "1 "},
        {"2nd ", "2 "},
        {"3rd ", "3 "},
        // "iii " before "ii " before "i ": each is a prefix of the next longer one.
        {"iii ", "3 "},
        {"ii ", "2 "},
        {"i ", "1 "},
    }};
    for (const auto& [prefix, digit] : ordinals)
        if (text.starts_with(prefix)) {
            text.replace(0, prefix.size(), digit);
            break;
        }
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (isSpace(text[i])) {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < text.size() && !isSpace(text[end]))
            ++end;
        if (!result.empty())
            result.push_back(' ');
        result.append(text, i, end - i);
        i = end;
    }
    return result;
}

const BibleBook* resolveBookInTable(std::string_view name) {
    const std::string key = normaliseBookName(name);
    if (key.empty())
        return nullptr;
    const BookKeys& keys = bookKeys();
    if (auto found = keys.byName.find(key); found != keys.byName.end())
        return found->second;
    if (auto found = keys.byAlias.find(key); found != keys.byAlias.end())
        return found->second;
    if (key.size() < 3)
        return nullptr;

    // The names beginning with the key sit together in text order; exactly one is an answer.
    auto prefixed = std::lower_bound(keys.sortedNames.begin(), keys.sortedNames.end(), key,
                                     [](const auto& entry, const std::string& typed) { return entry.first < typed; });
    if (prefixed != keys.sortedNames.end() && prefixed->first.starts_with(key) &&
        (std::next(prefixed) == keys.sortedNames.end() || !std::next(prefixed)->first.starts_with(key)))
        return prefixed->second;
    return closestBook(keys, key);
}

std::optional<BibleBook> resolveBook(std::string_view name) {
    if (const BibleBook* book = resolveBookInTable(name))
        return *book;
    return std::nullopt;
}

std::optional<ScriptureReference> parseAsWritten(std::string_view text) {
    const std::string lowered = lowercased(trimmed(text));
    if (lowered.find(" of ") != std::string::npos)
        if (auto reference = descriptiveReference(lowered))
            return reference;

    auto parts = splitReference(text);
    if (!parts)
        return std::nullopt;
    const BibleBook* book = resolveBookInTable(parts->book);
    if (!book)
        return std::nullopt;
    auto chapter = decimal(parts->chapter);
    if (!chapter || *chapter < 1 || *chapter > book->chapterCount())
        return std::nullopt;
    ScriptureReference reference{*book, *chapter, std::nullopt};
    if (parts->verses) {
        reference.verses = verseList(*parts->verses, book->verseCount(*chapter));
        if (!reference.verses)
            return std::nullopt;
    }
    return reference;
}

ReferenceReading readReference(std::string_view text, bool explain) {
    ReferenceReading reading;
    // A text the parser reads as written keeps that reading whatever the normaliser would make of it.
    if ((reading.reference = parseAsWritten(text))) {
        reading.readAs = std::string(trimmed(text));
        return reading;
    }
    NormalisedReference normalised = normaliseReference(text, explain);
    if (normalised.changed)
        reading.reference = parseAsWritten(normalised.text);
    reading.readAs = std::move(normalised.text);
    reading.translation = std::move(normalised.translation);
    reading.version = normalised.version;
    reading.changes = std::move(normalised.changes);
    return reading;
}

std::optional<ScriptureReference> parse(std::string_view text) {
    if (auto reference = parseAsWritten(text))
        return reference;
    return readReference(text).reference;
}

} // namespace quillon::scripture
