#include "scripture/ReferenceNormaliser.h"

#include "orvane/AsciiText.h"
#include "scripture/ReferenceParser.h"
#include "scripture/StyleGuideAbbreviations.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillon::scripture {

namespace {

using orvane::ascii::isDigit;
using orvane::ascii::isLetter;
using orvane::ascii::isSpace;
using orvane::ascii::lower;
using orvane::ascii::lowercased;
using orvane::ascii::trimmed;

bool hasDigit(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isDigit);
}
bool hasLetter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isLetter);
}
std::string inQuotes(std::string_view text) {
    return "“" + std::string(text) + "”";
}

/// Single spaces between words, none at the ends.
std::string collapsedSpaces(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        if (isSpace(c)) {
            if (!result.empty() && result.back() != ' ')
                result.push_back(' ');
            continue;
        }
        result.push_back(c);
    }
    if (!result.empty() && result.back() == ' ')
        result.pop_back();
    return result;
}

/// What a non-ASCII character of pasted text becomes in a reference.
enum class Fold { keep, space, drop, dash, singleQuote, doubleQuote, colon, comma, openBracket, closeBracket };

constexpr char32_t unicodeSpaces[] = {0x85, 0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
constexpr char32_t invisibles[] = {0xAD, 0x200B, 0x200C, 0x200D, 0x2060, 0xFEFF};
constexpr char32_t dashes[] = {0x2010, 0x2011, 0x2012, 0x2013, 0x2014, 0x2015, 0x2212, 0xFE58, 0xFE63, 0xFF0D};
constexpr char32_t singleQuotes[] = {0x2018, 0x2019, 0x201A, 0x201B, 0x2039, 0x203A, 0x2032};
constexpr char32_t doubleQuotes[] = {0x201C, 0x201D, 0x201E, 0x201F, 0xAB, 0xBB, 0x2033};
constexpr char32_t colons[] = {0xFF1A, 0x2236};
constexpr char32_t openBrackets[] = {0xFF08, 0xFF3B, 0x3010};
constexpr char32_t closeBrackets[] = {0xFF09, 0xFF3D, 0x3011};

template <std::size_t N>
bool isOneOf(char32_t c, const char32_t (&set)[N]) {
    return std::find(std::begin(set), std::end(set), c) != std::end(set);
}

Fold foldOf(char32_t c) {
    if ((c >= 0x2000 && c <= 0x200A) || isOneOf(c, unicodeSpaces))
        return Fold::space;
    if (isOneOf(c, invisibles))
        return Fold::drop;
    if (isOneOf(c, dashes))
        return Fold::dash;
    if (isOneOf(c, singleQuotes))
        return Fold::singleQuote;
    if (isOneOf(c, doubleQuotes))
        return Fold::doubleQuote;
    if (isOneOf(c, colons))
        return Fold::colon;
    if (c == 0xFF0C)
        return Fold::comma;
    if (isOneOf(c, openBrackets))
        return Fold::openBracket;
    return isOneOf(c, closeBrackets) ? Fold::closeBracket : Fold::keep;
}

/// The plain character a folded one becomes; none for kept and dropped ones.
char plainCharacter(Fold fold) {
    switch (fold) {
    case Fold::space:
        return ' ';
    case Fold::dash:
        return '-';
    case Fold::singleQuote:
        return '\'';
    case Fold::doubleQuote:
        return '"';
    case Fold::colon:
        return ':';
    case Fold::comma:
        return ',';
    case Fold::openBracket:
        return '(';
    case Fold::closeBracket:
        return ')';
    case Fold::keep:
    case Fold::drop:
        return '\0';
    }
    return '\0';
}

/// The code point at `at` and its length in bytes; a malformed byte is itself, one byte long.
std::pair<char32_t, std::size_t> decodeAt(std::string_view text, std::size_t at) {
    auto byte = static_cast<unsigned char>(text[at]);
    std::size_t length = byte < 0x80           ? 1
                         : (byte >> 5) == 0x6  ? 2
                         : (byte >> 4) == 0xE  ? 3
                         : (byte >> 3) == 0x1E ? 4
                                               : 0;
    if (length <= 1 || at + length > text.size())
        return {byte, 1};
    char32_t point = byte & (0xFF >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
        auto next = static_cast<unsigned char>(text[at + k]);
        if ((next & 0xC0) != 0x80)
            return {byte, 1};
        point = (point << 6) | (next & 0x3F);
    }
    return {point, length};
}

/// English translation tags as they follow or precede references; the last column names ours.
struct Tag {
    std::string_view text;
    std::optional<model::BibleVersion> version;
};
constexpr std::array<Tag, 68> translationTags = {{
    {"KJV", model::BibleVersion::kjv},
    {"AV", model::BibleVersion::kjv},
    {"ASV", model::BibleVersion::asv},
    {"YLT", model::BibleVersion::ylt},
    {"LSV", model::BibleVersion::lsv},
    {"NLT", model::BibleVersion::nlt},
    {"NKJV", model::BibleVersion::nkjv},
    {"AMP", model::BibleVersion::amp},
    {"AMPC", {}},
    {"NIV", {}},
    {"NIV84", {}},
    {"NIVUK", {}},
    {"TNIV", {}},
    {"NIRV", {}},
    {"ESV", {}},
    {"ESVUK", {}},
    {"NASB", {}},
    {"NASB95", {}},
    {"NASB1995", {}},
    {"NASB2020", {}},
    {"LSB", {}},
    {"RSV", {}},
    {"RSVCE", {}},
    {"NRSV", {}},
    {"NRSVUE", {}},
    {"NRSVA", {}},
    {"CSB", {}},
    {"HCSB", {}},
    {"NET", {}},
    {"NABRE", {}},
    {"NAB", {}},
    {"NJB", {}},
    {"JB", {}},
    {"NEB", {}},
    {"REB", {}},
    {"GNT", {}},
    {"GNB", {}},
    {"TEV", {}},
    {"CEV", {}},
    {"CEB", {}},
    {"MSG", {}},
    {"TLB", {}},
    {"NCV", {}},
    {"ICB", {}},
    {"ERV", {}},
    {"EXB", {}},
    {"GW", {}},
    {"ISV", {}},
    {"LEB", {}},
    {"WEB", {}},
    {"BSB", {}},
    {"MEV", {}},
    {"TPT", {}},
    {"KJ21", {}},
    {"AKJV", {}},
    {"DRA", {}},
    {"DRB", {}},
    {"RV", {}},
    {"BBE", {}},
    {"CJB", {}},
    {"TLV", {}},
    {"OJB", {}},
    {"NLV", {}},
    {"WYC", {}},
    {"DARBY", {}},
    {"PHILLIPS", {}},
    {"VOICE", {}},
    {"NOG", {}},
}};

const Tag* tagNamed(std::string_view text) {
    if (text.size() < 2 || text.size() > 8 || !isLetter(text[0]))
        return nullptr;
    char buffer[8];
    for (std::size_t i = 0; i < text.size(); ++i)
        buffer[i] = (text[i] >= 'a' && text[i] <= 'z') ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
    const std::string_view upper(buffer, text.size());
    for (const Tag& tag : translationTags)
        if (tag.text == upper)
            return &tag;
    return nullptr;
}

bool isWordCharacter(char c) {
    return isLetter(c) || isDigit(c);
}

constexpr std::array<std::string_view, 4> chapterWords = {"chapter", "chapters", "chap", "ch"};
constexpr std::array<std::string_view, 7> verseWords = {"verse", "verses", "ver", "vv", "vs", "v", "vers"};

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == y; });
}

template <std::size_t N>
bool isOneOf(std::string_view word, const std::array<std::string_view, N>& words) {
    return std::any_of(words.begin(), words.end(),
                       [word](std::string_view known) { return equalsIgnoringCase(word, known); });
}

/// The suffix of an ordinal number: "st", "nd", "rd" or "th".
bool isOrdinalSuffix(std::string_view text) {
    const std::string key = lowercased(text);
    return key == "st" || key == "nd" || key == "rd" || key == "th";
}

class Normaliser {
public:
    Normaliser(std::string_view typed, bool explain) : m_typed(typed), m_text(typed), m_explain(explain) {}

    NormalisedReference run() {
        foldPastedCharacters();
        // Without a digit nothing here can become a reference: the descriptive forms need no help.
        if (hasDigit(m_text)) {
            // Quotes hide a tag ("“John 3:16 (NIV)”"), and so do brackets around both ("(John 3:16 NIV)").
            stripWrapping(false);
            takeTranslationTag();
            stripWrapping(true);
            if (m_result.translation.empty() && takeTranslationTag())
                stripWrapping(true);
            readOrdinalForms();
            rewriteBookAndNumbers();
        }
        m_result.text = collapsedSpaces(m_text);
        m_result.changed = m_result.text != trimmed(m_typed) || !m_result.translation.empty();
        return std::move(m_result);
    }

private:
    /// Builds the sentence only when explaining: the parser calls this on every text it refuses.
    template <typename Sentence>
    void note(Sentence&& sentence) {
        if (m_explain)
            m_result.changes.push_back(sentence());
    }

    void foldPastedCharacters();
    bool takeTranslationTag();
    bool takeTrailingTag();
    bool takeLeadingTag();
    void recordTag(const Tag& tag, std::string_view written);
    void stripWrapping(bool brackets);
    void readOrdinalForms();
    void rewriteBookAndNumbers();
    std::string readBookPart(std::string bookPart, bool& verseOnly);
    std::string readNumbers(std::string_view rest);
    const BibleBook* bookByOtherForms(std::string_view typedBook);

    std::string_view m_typed;
    std::string m_text;
    bool m_explain;
    bool m_unwrapped = false;
    NormalisedReference m_result;
};

void Normaliser::foldPastedCharacters() {
    if (std::all_of(m_text.begin(), m_text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return;
    std::string folded;
    folded.reserve(m_text.size());
    int spaces = 0, invisible = 0;
    std::string dash;
    for (std::size_t at = 0; at < m_text.size();) {
        auto [point, length] = decodeAt(m_text, at);
        const std::string_view written = std::string_view(m_text).substr(at, length);
        at += length;
        const Fold fold = length == 1 ? Fold::keep : foldOf(point);
        if (fold == Fold::keep) {
            folded.append(written);
            continue;
        }
        spaces += fold == Fold::space ? 1 : 0;
        invisible += fold == Fold::drop ? 1 : 0;
        if (fold == Fold::dash && dash.empty())
            dash = written;
        if (char plain = plainCharacter(fold))
            folded.push_back(plain);
    }
    m_text = std::move(folded);
    if (spaces)
        note([&] { return std::string("Read the no-break or other Unicode spaces as plain spaces."); });
    if (invisible)
        note([&] { return std::string("Removed invisible characters (zero-width spaces or joiners)."); });
    if (!dash.empty())
        note([&] { return std::string("Read the dash " + inQuotes(dash) + " as a hyphen."); });
}

bool Normaliser::takeTranslationTag() {
    return takeTrailingTag() || takeLeadingTag();
}

/// "John 3:16 NIV", "John 3:16, NIV", "Lev 1 (ESV)", "John 3:16 [NKJV]." — after a number only.
bool Normaliser::takeTrailingTag() {
    std::string_view text = trimmed(m_text);
    while (!text.empty() && (text.back() == '.' || text.back() == ','))
        text.remove_suffix(1);
    std::size_t end = text.size();
    bool bracketed = !text.empty() && (text.back() == ')' || text.back() == ']');
    if (bracketed)
        --end;
    std::size_t start = end;
    while (start > 0 && isWordCharacter(text[start - 1]))
        --start;
    const Tag* tag = tagNamed(text.substr(start, end - start));
    if (!tag || start == 0)
        return false;
    std::size_t before = start;
    if (bracketed) {
        if (text[before - 1] != (text.back() == ')' ? '(' : '['))
            return false;
        --before;
    }
    std::string_view reference = trimmed(text.substr(0, before));
    while (!reference.empty() && (reference.back() == ',' || reference.back() == '-' || reference.back() == ':'))
        reference = trimmed(reference.substr(0, reference.size() - 1));
    // Only a reference ending in a number carries a trailing tag; "Amos" never loses its end.
    if (reference.empty() || !isDigit(reference.back()) ||
        (!bracketed && !isSpace(text[start - 1]) && text[start - 1] != ',' && text[start - 1] != '-'))
        return false;
    recordTag(*tag, text.substr(start, end - start));
    m_text = std::string(reference);
    return true;
}

/// "NKJV: Matt 5:6", "(ESV) John 3:16", "KJV John 3:16".
bool Normaliser::takeLeadingTag() {
    std::string_view text = trimmed(m_text);
    const bool bracketed = !text.empty() && (text.front() == '(' || text.front() == '[');
    std::size_t start = bracketed ? 1 : 0;
    std::size_t end = start;
    while (end < text.size() && isWordCharacter(text[end]))
        ++end;
    const std::string_view written = text.substr(start, end - start);
    const Tag* tag = tagNamed(written);
    if (!tag)
        return false;
    std::size_t after = end;
    if (bracketed) {
        if (after >= text.size() || text[after] != (text.front() == '(' ? ')' : ']'))
            return false;
        ++after;
    } else if (after < text.size() && text[after] == ':') {
        ++after;
    } else {
        // A bare tag in front must be written as one ("KJV John 3:16") and followed by a book name.
        bool capitals = std::none_of(written.begin(), written.end(), [](char c) { return c >= 'a' && c <= 'z'; });
        if (!capitals || after >= text.size() || !isSpace(text[after]))
            return false;
    }
    std::string_view reference = trimmed(text.substr(after));
    if (!hasLetter(reference) || !hasDigit(reference))
        return false;
    recordTag(*tag, written);
    m_text = std::string(reference);
    return true;
}

void Normaliser::recordTag(const Tag& tag, std::string_view written) {
    m_result.translation = std::string(tag.text);
    m_result.version = tag.version;
    if (tag.version)
        note([&] {
            return std::string("Took off the translation tag " + inQuotes(written) + ": it names Quillon's " +
                               std::string(model::rawValue(*tag.version)) + " text.");
        });
    else
        note([&] {
            return std::string("Took off the translation tag " + inQuotes(written) + ": Quillon has no " +
                               std::string(tag.text) + " text, so the passage is shown in the version chosen.");
        });
}

/// Quotation marks and brackets around a pasted reference, and the full stop or comma after it.
void Normaliser::stripWrapping(bool brackets) {
    const std::string_view opening = brackets ? "\"'([{<" : "\"'";
    const std::string_view closing = brackets ? "\"')]}>" : "\"'";
    static constexpr std::string_view trailing = ".,;!?";
    std::string_view text = trimmed(m_text);
    bool wrapped = false;
    std::string removedPunctuation;
    for (bool changed = true; changed && !text.empty();) {
        changed = false;
        if (opening.find(text.front()) != std::string_view::npos) {
            text = trimmed(text.substr(1));
            wrapped = changed = true;
        }
        if (!text.empty() && closing.find(text.back()) != std::string_view::npos) {
            text = trimmed(text.substr(0, text.size() - 1));
            wrapped = changed = true;
        }
        if (!text.empty() && trailing.find(text.back()) != std::string_view::npos) {
            removedPunctuation.insert(removedPunctuation.begin(), text.back());
            text = trimmed(text.substr(0, text.size() - 1));
            changed = true;
        }
    }
    if (wrapped && !std::exchange(m_unwrapped, true))
        note([&] { return std::string("Removed the quotation marks or brackets around the reference."); });
    if (!removedPunctuation.empty())
        note([&] { return std::string("Removed " + inQuotes(removedPunctuation) + " at the end."); });
    m_text = std::string(text);
}

/// "the 23rd Psalm" → "Psalms 23"; "the 13th chapter of 1 Corinthians" → "1 Corinthians 13".
void Normaliser::readOrdinalForms() {
    std::string_view text = trimmed(m_text);
    // Only a text that begins with an ordinal number ("23rd", "the 13th") is one of these forms.
    std::string_view start = text.substr(0, 4);
    if (!text.empty() && !isDigit(text[0]) && (start.size() < 4 || !equalsIgnoringCase(start, "the ")))
        return;
    std::string lowered = lowercased(text);
    std::string_view rest = lowered;
    if (rest.starts_with("the "))
        rest.remove_prefix(4);
    std::size_t digits = 0;
    while (digits < rest.size() && isDigit(rest[digits]))
        ++digits;
    if (digits == 0 || digits > 3 || rest.size() < digits + 2 || !isOrdinalSuffix(rest.substr(digits, 2)))
        return;
    const std::string number(rest.substr(0, digits));
    std::string_view after = trimmed(rest.substr(digits + 2));
    if (after == "psalm" || after == "psalms" || after == "ps") {
        note([&] { return std::string("Read " + inQuotes(text) + " as Psalms " + number + "."); });
        m_text = "Psalms " + number;
        return;
    }
    static constexpr std::string_view chapterOf = "chapter of ";
    if (after.starts_with(chapterOf)) {
        const std::size_t bookAt = text.size() - (after.size() - chapterOf.size());
        const std::string book(trimmed(text.substr(bookAt)));
        note([&] { return std::string("Read " + inQuotes(text) + " as " + book + " " + number + "."); });
        m_text = book + " " + number;
    }
}

void Normaliser::rewriteBookAndNumbers() {
    std::string text(trimmed(m_text));
    // A leading numeral with a period: "1. Cor 13:4", "II. Tim 3:16".
    std::size_t numeral = 0;
    if (!text.empty() && text[0] >= '1' && text[0] <= '3')
        numeral = 1;
    else
        while (numeral < 3 && numeral < text.size() && lower(text[numeral]) == 'i')
            ++numeral;
    if (numeral > 0 && numeral < text.size() && text[numeral] == '.' &&
        (numeral + 1 >= text.size() || !isDigit(text[numeral + 1]))) {
        note([&] { return std::string("Dropped the period after " + inQuotes(text.substr(0, numeral)) + "."); });
        text[numeral] = ' ';
    }

    std::size_t firstLetter = 0;
    while (firstLetter < text.size() && !isLetter(text[firstLetter]))
        ++firstLetter;
    std::size_t numbersAt = firstLetter;
    while (numbersAt < text.size() && !isDigit(text[numbersAt]))
        ++numbersAt;
    if (firstLetter >= text.size() || numbersAt >= text.size())
        return;

    bool verseOnly = false;
    const std::string typedBook = readBookPart(text.substr(0, numbersAt), verseOnly);
    std::string numbers = readNumbers(std::string_view(text).substr(numbersAt));

    const BibleBook* book = resolveBookInTable(typedBook);
    bool renamed = false;
    if (!book) {
        book = bookByOtherForms(typedBook);
        renamed = book != nullptr;
        if (book)
            note([&] { return std::string("Read " + inQuotes(typedBook) + " as " + book->name + "."); });
    }
    if (book && book->chapterCount() == 1 && numbers.find_first_of(":.") == std::string::npos &&
        (verseOnly || numbers != "1")) {
        note([&] {
            return std::string(book->name + " has one chapter, so " + inQuotes(numbers) +
                               " is read as chapter 1, verse " + numbers + ".");
        });
        numbers = "1:" + numbers;
    }
    m_text = (renamed ? book->name : typedBook) + " " + numbers;
}

/// The book's name without periods after abbreviations and without a trailing "chapter" or "verse".
std::string Normaliser::readBookPart(std::string bookPart, bool& verseOnly) {
    for (std::size_t at = 1; at < bookPart.size(); ++at)
        if (bookPart[at] == '.' && isLetter(bookPart[at - 1])) {
            std::size_t wordStart = at;
            while (wordStart > 0 && isLetter(bookPart[wordStart - 1]))
                --wordStart;
            note([&] {
                return std::string("Dropped the period after " +
                                   inQuotes(std::string_view(bookPart).substr(wordStart, at - wordStart)) + ".");
            });
            bookPart[at] = ' ';
        }
    std::string_view name = trimmed(bookPart);
    while (!name.empty() && (name.back() == ',' || name.back() == ':'))
        name = trimmed(name.substr(0, name.size() - 1));
    auto lastWord = [&name]() {
        std::size_t start = name.size();
        while (start > 0 && isLetter(name[start - 1]))
            --start;
        return name.substr(start);
    };
    // "1 Ch" is a book, not "1" and the word "ch": a name must keep a letter.
    auto isWordAfterName = [&name](std::string_view word) {
        return word.size() < name.size() && hasLetter(name.substr(0, name.size() - word.size()));
    };
    if (std::string_view word = lastWord(); isWordAfterName(word) && isOneOf(word, verseWords)) {
        note([&] { return std::string("Read " + inQuotes(word) + " before the number as naming a verse."); });
        verseOnly = true;
        name = trimmed(name.substr(0, name.size() - word.size()));
    } else if (isWordAfterName(word) && isOneOf(word, chapterWords)) {
        note([&] { return std::string("Dropped the word " + inQuotes(word) + "."); });
        name = trimmed(name.substr(0, name.size() - word.size()));
    }
    return std::string(name);
}

/// Chapter and verses with "verse" words, part-verse letters and "ff" read: "8 verse 29" → "8:29",
/// "16a" → "16", "28ff" → "28-999" (the parser stops a range at the chapter's end), "28f" → "28-29".
std::string Normaliser::readNumbers(std::string_view rest) {
    std::string numbers;
    numbers.reserve(rest.size());
    for (std::size_t at = 0; at < rest.size();) {
        if (!isLetter(rest[at])) {
            numbers.push_back(rest[at++]);
            continue;
        }
        std::size_t end = at;
        while (end < rest.size() && isLetter(rest[end]))
            ++end;
        const std::string_view word = rest.substr(at, end - at);
        const bool glued = isDigit(rest[at - 1]); // the numbers begin with a digit, so at > 0
        const std::string_view written = trimmed(numbers);
        const bool afterNumber = !written.empty() && isDigit(written.back());
        bool read = true;
        if (afterNumber && isOneOf(word, verseWords)) {
            note([&] { return "Read " + inQuotes(word) + " as " + inQuotes(":") + "."; });
            numbers = std::string(written) + ":";
        } else if (glued && (word == "a" || word == "b" || word == "c")) {
            note([&] { return "Dropped the part-verse letter " + inQuotes(word) + "."; });
        } else if (glued && (word == "ff" || word == "f")) {
            std::size_t digits = written.size();
            while (digits > 0 && isDigit(written[digits - 1]))
                --digits;
            const int verse = std::stoi(std::string(written.substr(digits, 6)));
            note([&] { return "Read " + inQuotes(word) + " as the verses that follow."; });
            numbers += "-" + (word == "f" ? std::to_string(verse + 1) : std::string("999"));
        } else {
            numbers.append(word); // not ours to read: the parser will refuse it
            read = false;
        }
        at = end;
        if (read && at < rest.size() && rest[at] == '.')
            ++at; // "v. 29", "28ff."
    }
    return std::string(trimmed(numbers));
}

/// Forms of a book name the table does not read itself: "1 Jn" as "1jn", "1Kin" as "1 kin", and
/// the style guides' abbreviations.
const BibleBook* Normaliser::bookByOtherForms(std::string_view typedBook) {
    const std::string key = normaliseBookName(typedBook);
    if (key.size() < 2)
        return nullptr;
    std::string compact = key;
    if (isDigit(key[0]) && key[1] == ' ') {
        compact.erase(1, 1);
        if (const BibleBook* book = resolveBookInTable(compact))
            return book;
    } else if (isDigit(key[0]) && isLetter(key[1])) {
        if (const BibleBook* book = resolveBookInTable(key.substr(0, 1) + " " + key.substr(1)))
            return book;
    }
    return bookForStyleGuideAbbreviation(compact);
}

} // namespace

std::string withPlainSpaces(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            plain.push_back(text[at++]);
            continue;
        }
        auto [point, length] = decodeAt(text, at);
        const Fold fold = length == 1 ? Fold::keep : foldOf(point);
        if (fold == Fold::space)
            plain.push_back(' ');
        else if (fold != Fold::drop)
            plain.append(text.substr(at, length));
        at += length;
    }
    return plain;
}

std::optional<model::BibleVersion> versionForTranslationTag(std::string_view tag) {
    const Tag* found = tagNamed(tag);
    return found ? found->version : std::nullopt;
}

bool isTranslationTag(std::string_view tag) {
    return tagNamed(tag) != nullptr;
}

NormalisedReference normaliseReference(std::string_view text, bool explain) {
    return Normaliser(text, explain).run();
}

} // namespace quillon::scripture
