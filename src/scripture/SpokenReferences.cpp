#include "scripture/SpokenReferences.h"

#include "scripture/BibleBook.h"
#include "scripture/ReferenceParser.h"

#include <array>
#include <cctype>
#include <map>
#include <optional>
#include <string>

namespace quillon::scripture {

namespace {

struct Word {
    std::string text; ///< lower case
    std::size_t begin = 0;
    std::size_t end = 0;
    bool hyphenBefore = false;
};

std::vector<Word> wordsOf(std::string_view text) {
    std::vector<Word> words;
    bool hyphen = false;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (!std::isalnum(c)) {
            if (c == '-')
                hyphen = true;
            else if (!std::isspace(c))
                hyphen = false;
            ++i;
            continue;
        }
        Word word;
        word.begin = i;
        word.hyphenBefore = hyphen;
        // Digits and letters form separate words, so "3:16", "1cor" and "16-18" split as spoken.
        const bool digits = std::isdigit(c) != 0;
        while (i < text.size() && std::isalnum(static_cast<unsigned char>(text[i])) &&
               (std::isdigit(static_cast<unsigned char>(text[i])) != 0) == digits) {
            word.text += static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
            ++i;
        }
        // "1st", "2nd" and "3rd" are one ordinal word.
        if (digits && i + 1 < text.size() && word.text.size() == 1) {
            std::string suffix{static_cast<char>(std::tolower(static_cast<unsigned char>(text[i]))),
                               static_cast<char>(std::tolower(static_cast<unsigned char>(text[i + 1])))};
            if (suffix == "st" || suffix == "nd" || suffix == "rd") {
                word.text += suffix;
                i += 2;
            }
        }
        word.end = i;
        words.push_back(std::move(word));
        hyphen = false;
    }
    return words;
}

int smallNumber(const std::string& word) {
    static const std::map<std::string, int, std::less<>> values = {
        {"one", 1},       {"two", 2},       {"three", 3},    {"four", 4},     {"five", 5},       {"six", 6},
        {"seven", 7},     {"eight", 8},     {"nine", 9},     {"ten", 10},     {"eleven", 11},    {"twelve", 12},
        {"thirteen", 13}, {"fourteen", 14}, {"fifteen", 15}, {"sixteen", 16}, {"seventeen", 17}, {"eighteen", 18},
        {"nineteen", 19}, {"twenty", 20},   {"thirty", 30},  {"forty", 40},   {"fifty", 50},     {"sixty", 60},
        {"seventy", 70},  {"eighty", 80},   {"ninety", 90}};
    auto found = values.find(word);
    return found == values.end() ? 0 : found->second;
}

/// A number starting at `at`: digits, or words composed the way they are spoken ("twenty three",
/// "one hundred and nineteen"). Two units in a row are two numbers ("three sixteen" is 3, then 16).
struct Number {
    int value = 0;
    std::size_t next = 0;
};

std::optional<Number> numberAt(const std::vector<Word>& words, std::size_t at) {
    if (at >= words.size())
        return std::nullopt;
    const std::string& first = words[at].text;
    if (std::isdigit(static_cast<unsigned char>(first[0]))) {
        if (first.size() > 3 || first.find_first_not_of("0123456789") != std::string::npos)
            return std::nullopt;
        return Number{std::stoi(first), at + 1};
    }
    int value = 0;
    std::size_t i = at;
    if ((first == "a" || (smallNumber(first) > 0 && smallNumber(first) < 10)) && i + 1 < words.size() &&
        words[i + 1].text == "hundred") {
        value = first == "a" ? 100 : smallNumber(first) * 100;
        i += 2;
        if (i < words.size() && words[i].text == "and" && i + 1 < words.size() && smallNumber(words[i + 1].text) > 0)
            ++i;
    }
    if (i < words.size()) {
        int part = smallNumber(words[i].text);
        if (part > 0) {
            value += part;
            ++i;
            if (part >= 20 && part % 10 == 0 && i < words.size()) {
                int unit = smallNumber(words[i].text);
                if (unit > 0 && unit < 10) {
                    value += unit;
                    ++i;
                }
            }
        }
    }
    if (value == 0)
        return std::nullopt;
    return Number{value, i};
}

/// Every book's normalised name, and the aliases that are spoken forms rather than written
/// abbreviations ("psalm", "revelations"): "jon", "mat" and "act" are everyday words when heard.
const std::map<std::string, const BibleBook*, std::less<>>& bookNames() {
    static const auto names = [] {
        std::map<std::string, const BibleBook*, std::less<>> map;
        for (const BibleBook& book : allBibleBooks()) {
            map.emplace(normaliseBookName(book.name), &book);
            for (std::string_view alias : bibleBookAliases(book.id)) {
                const bool spoken = alias.size() >= 5 && alias.find_first_of("0123456789") == std::string_view::npos;
                if (spoken)
                    map.emplace(normaliseBookName(alias), &book);
            }
        }
        return map;
    }();
    return names;
}

bool isEverydayWord(const BibleBook& book) {
    static constexpr std::array<std::string_view, 13> everyday = {"Mark",    "Acts",  "Job",  "Numbers", "John",
                                                                  "James",   "Ruth",  "Jude", "Daniel",  "Luke",
                                                                  "Matthew", "Titus", "Amos"};
    for (std::string_view name : everyday)
        if (book.name == name)
            return true;
    return false;
}

struct BookMatch {
    const BibleBook* book = nullptr;
    std::size_t next = 0;
};

/// The longest run of up to four words from `at` that names a book exactly.
std::optional<BookMatch> bookAt(const std::vector<Word>& words, std::size_t at) {
    const auto& names = bookNames();
    std::optional<BookMatch> best;
    std::string key;
    for (std::size_t i = at; i < words.size() && i < at + 4; ++i) {
        key += (i == at ? "" : " ") + words[i].text;
        auto found = names.find(normaliseBookName(key));
        // Single letters ("i", "a") are ordinals or articles, never a book on their own.
        if (found != names.end() && key.size() > 2)
            best = BookMatch{found->second, i + 1};
    }
    return best;
}

bool isRangeWord(const Word& word) {
    return word.text == "through" || word.text == "thru" || word.text == "to" || word.text == "until";
}

struct Candidate {
    std::string canonical;
    std::size_t next = 0;
};

/// Reads chapter, verse and range after a book, or nothing when the words are not a reference.
std::optional<Candidate> referenceAfterBook(const std::vector<Word>& words, const BookMatch& match) {
    std::size_t i = match.next;
    bool saidChapter = false;
    if (i < words.size() && words[i].text == "chapter") {
        saidChapter = true;
        ++i;
    }
    auto chapter = numberAt(words, i);
    if (!chapter)
        return std::nullopt;
    i = chapter->next;
    std::string canonical = match.book->name + " " + std::to_string(chapter->value);

    std::size_t verseAt = i;
    if (verseAt < words.size() && (words[verseAt].text == "verse" || words[verseAt].text == "verses"))
        ++verseAt;
    auto verse = numberAt(words, verseAt);
    if (!verse) {
        bool digitsOrOrdinal = std::isdigit(static_cast<unsigned char>(match.book->name[0])) != 0;
        if (!saidChapter && !digitsOrOrdinal && isEverydayWord(*match.book))
            return std::nullopt;
        return Candidate{canonical, i};
    }
    const int verseCount = match.book->verseCount(chapter->value);
    if (verse->value > verseCount)
        return std::nullopt;
    canonical += ":" + std::to_string(verse->value);
    i = verse->next;

    std::size_t endAt = i;
    if (endAt < words.size() && isRangeWord(words[endAt]))
        ++endAt;
    else if (endAt >= words.size() || !words[endAt].hyphenBefore)
        return Candidate{canonical, i};
    if (auto last = numberAt(words, endAt); last && last->value > verse->value && last->value <= verseCount) {
        canonical += "-" + std::to_string(last->value);
        i = last->next;
    }
    return Candidate{canonical, i};
}

} // namespace

std::vector<SpokenReference> spokenReferences(std::string_view transcript) {
    std::vector<SpokenReference> found;
    const std::vector<Word> words = wordsOf(transcript);
    std::size_t i = 0;
    while (i < words.size()) {
        auto book = bookAt(words, i);
        std::optional<Candidate> candidate = book ? referenceAfterBook(words, *book) : std::nullopt;
        std::optional<ScriptureReference> reference = candidate ? parse(candidate->canonical) : std::nullopt;
        if (!reference) {
            ++i;
            continue;
        }
        const std::size_t begin = words[i].begin;
        const std::size_t end = words[candidate->next - 1].end;
        found.push_back(SpokenReference{std::move(*reference), begin, end - begin});
        i = candidate->next;
    }
    return found;
}

} // namespace quillon::scripture
