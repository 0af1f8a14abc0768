#include "intelligence/ReferenceRecogniser.h"

#include "scripture/BibleBook.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace quillon::intelligence {

namespace {

using scripture::BibleBook;
using scripture::ScriptureReference;

// ---- Text as tokens -------------------------------------------------------------------------

/// A run of ASCII letters, a run of digits, or one other character (a byte of it for non-ASCII).
struct Token {
    enum class Kind { word, number, mark };
    Kind kind = Kind::mark;
    std::string_view text;
    /// White space separates it from the token before.
    bool spaceBefore = false;

    bool isWord() const { return kind == Kind::word; }
    bool isNumber() const { return kind == Kind::number; }
    bool isMark(char c) const { return kind == Kind::mark && text.size() == 1 && text[0] == c; }
};

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

/// The text with every kind of space turned into a blank and every kind of dash into a hyphen, so
/// that "8:28–29" and "John 3:16" with a no-break space read as typed ones do.
std::string plainSpacesAndDashes(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        auto byte = static_cast<unsigned char>(text[i]);
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) == 0xA0) {
            plain += ' ';
            i += 2;
            continue;
        }
        if (byte == 0xE2 && i + 2 < text.size()) {
            auto second = static_cast<unsigned char>(text[i + 1]);
            auto third = static_cast<unsigned char>(text[i + 2]);
            bool space = (second == 0x80 && (third <= 0x8B || third == 0xAF)) || (second == 0x81 && third == 0x9F);
            bool dash = (second == 0x80 && third >= 0x90 && third <= 0x95) || (second == 0x88 && third == 0x92);
            if (space || dash) {
                plain += space ? ' ' : '-';
                i += 3;
                continue;
            }
        }
        plain += text[i] == '\t' ? ' ' : text[i];
        ++i;
    }
    return plain;
}

std::vector<Token> tokensOf(std::string_view text) {
    std::vector<Token> tokens;
    bool space = true;
    for (std::size_t i = 0; i < text.size();) {
        char c = text[i];
        if (c == ' ') {
            space = true;
            ++i;
            continue;
        }
        std::size_t end = i + 1;
        Token::Kind kind = Token::Kind::mark;
        if (isLetter(c)) {
            kind = Token::Kind::word;
            while (end < text.size() && isLetter(text[end]))
                ++end;
        } else if (isDigit(c)) {
            kind = Token::Kind::number;
            while (end < text.size() && isDigit(text[end]))
                ++end;
        }
        tokens.push_back({kind, text.substr(i, end - i), space});
        space = false;
        i = end;
    }
    return tokens;
}

// ---- Book names -----------------------------------------------------------------------------

struct KnownName {
    const BibleBook* book = nullptr;
    bool fullName = false;
};

/// Every book name and alias as the parser normalises them.
const std::unordered_map<std::string, KnownName>& knownNames() {
    static const std::unordered_map<std::string, KnownName> names = [] {
        std::unordered_map<std::string, KnownName> result;
        for (const BibleBook& book : scripture::allBibleBooks()) {
            result[scripture::normaliseBookName(book.name)] = {&book, true};
            for (std::string_view alias : scripture::bibleBookAliases(book.id))
                result.try_emplace(scripture::normaliseBookName(alias), KnownName{&book, false});
        }
        return result;
    }();
    return names;
}

/// Book names and abbreviations that are also ordinary words, so that "Is 5 enough?" or "the
/// numbers 3 and 4" are not taken for a chapter; with a verse ("Job 5:7") they still count.
bool isOrdinaryWord(const std::string& name) {
    static const std::unordered_set<std::string> words = {
        "am",  "he",  "is",  "ex",  "co",  "de",  "ho",  "la",  "na",   "ne",   "re",      "ge",
        "da",  "ga",  "ti",  "ob",  "lu",  "jd",  "ss",  "act", "est",  "job",  "joe",     "jon",
        "mat", "pro", "dan", "hag", "col", "tit", "mic", "sos", "mark", "acts", "numbers", "judges",
    };
    return words.contains(name);
}

/// A book found before a chapter number.
struct BookName {
    const BibleBook* book = nullptr;
    /// The first token of the name.
    std::size_t first = 0;
    /// The name may stand before a chapter without a verse.
    bool standsAlone = false;
};

bool isOrdinalNumber(const Token& token) {
    return token.isNumber() && token.text.size() == 1 && token.text[0] >= '1' && token.text[0] <= '3';
}

/// The book named by the words that end at token `last` ("Song of Solomon", "1 John",
/// "2Cor", "Rom."), the longest exact name first, then the nearest capitalised word read as the
/// parser reads a typed book (unique beginning or a close spelling).
std::optional<BookName> bookEndingAt(const std::vector<Token>& tokens, std::size_t last) {
    bool dotted = false;
    if (tokens[last].isMark('.') && last > 0 && tokens[last - 1].isWord() && !tokens[last].spaceBefore) {
        dotted = true;
        --last;
    }
    if (!tokens[last].isWord())
        return std::nullopt;
    // Up to four words back, each separated by blanks; a book number may be glued on ("2Cor").
    std::size_t first = last;
    while (first > 0 && last - first < 3) {
        const Token& before = tokens[first - 1];
        bool joins = tokens[first].spaceBefore || isOrdinalNumber(before);
        if (!joins || !(before.isWord() || isOrdinalNumber(before)))
            break;
        --first;
        if (before.isNumber())
            break; // a book number opens the name
    }
    const auto& names = knownNames();
    for (std::size_t start = first; start <= last; ++start) {
        if (tokens[start].isNumber() && start == last)
            break;
        std::string name;
        for (std::size_t k = start; k <= last; ++k)
            name += (k > start ? " " : "") + std::string(tokens[k].text);
        std::string key = scripture::normaliseBookName(name);
        auto found = names.find(key);
        if (found == names.end() && tokens[start].isNumber())
            found = names.find(key.erase(1, 1)); // "2 cor" is also known as "2cor"
        if (found == names.end())
            continue;
        const Token& opening = tokens[start].isNumber() ? tokens[start + 1] : tokens[start];
        bool capitalised = opening.text[0] >= 'A' && opening.text[0] <= 'Z';
        bool ordinary = isOrdinaryWord(key);
        bool standsAlone = found->second.fullName ? (capitalised || !ordinary) : (capitalised && !ordinary);
        return BookName{found->second.book, start, standsAlone || (dotted && capitalised)};
    }
    // A misspelt or shortened name, only when capitalised and long enough not to be a common word.
    std::size_t start = last > 0 && isOrdinalNumber(tokens[last - 1]) ? last - 1 : last;
    const Token& word = tokens[last];
    if (word.text.size() < 4 || !(word.text[0] >= 'A' && word.text[0] <= 'Z'))
        return std::nullopt;
    std::string name =
        start < last ? std::string(tokens[start].text) + " " + std::string(word.text) : std::string(word.text);
    if (const BibleBook* book = scripture::resolveBookInTable(name))
        return BookName{book, start, false};
    return std::nullopt;
}

// ---- Verses ---------------------------------------------------------------------------------

bool isWordOf(const Token& token, std::initializer_list<std::string_view> words) {
    if (!token.isWord())
        return false;
    std::string word = lowered(token.text);
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool isVerseWord(const Token& token) {
    return isWordOf(token, {"verse", "verses", "v", "vv", "ver", "vs", "vss"});
}
bool isChapterWord(const Token& token) {
    return isWordOf(token, {"chapter", "chapters", "chap", "ch"});
}

/// The value of a number token; anything longer than four digits reads as 9999, beyond every
/// chapter and verse, so it is still named and never matches.
int numberOf(const Token& token) {
    return token.text.size() > 4 ? 9999 : std::stoi(std::string(token.text));
}

/// Reads the tokens that make up references, one after the other.
class Reader {
public:
    explicit Reader(const std::vector<Token>& tokens) : m_tokens(tokens) {}

    std::vector<ScriptureReference> all() {
        for (std::size_t at = 0; at < m_tokens.size();)
            at = readAt(at);
        return std::move(m_found);
    }

private:
    const Token* token(std::size_t at) const { return at < m_tokens.size() ? &m_tokens[at] : nullptr; }

    bool markAt(std::size_t at, char c) const { return token(at) && token(at)->isMark(c); }
    bool numberAt(std::size_t at) const { return token(at) && token(at)->isNumber(); }

    /// Skips an optional full stop after an abbreviation ("v.", "ch.").
    std::size_t afterDot(std::size_t at) const { return markAt(at, '.') ? at + 1 : at; }

    /// Reads from token `at`; returns where to go on.
    std::size_t readAt(std::size_t at) {
        const Token& here = m_tokens[at];
        if (!here.isNumber() || here.text.size() > 3)
            return at + 1;
        // A number glued to the word before it ("Romans8", "v2") is not a chapter.
        if (at > 0 && !here.spaceBefore && (m_tokens[at - 1].isWord() || m_tokens[at - 1].isNumber()))
            return at + 1;
        std::size_t before = at;
        bool chapterWord = false;
        if (before > 0 && isChapterWord(m_tokens[afterDotBack(before - 1)])) {
            chapterWord = true;
            before = afterDotBack(before - 1);
            if (before > 0 && markAt(before - 1, ','))
                --before;
        } else if (before > 0 && isVerseWord(m_tokens[afterDotBack(before - 1)])) {
            return m_lastBook ? readVerses(at, m_lastBook, m_lastChapter) : at + 1;
        }
        if (before > 0)
            if (std::optional<BookName> name = bookEndingAt(m_tokens, before - 1))
                return readChapter(at, name->book, name->standsAlone || chapterWord);
        if (!m_lastBook)
            return at + 1;
        if (chapterWord)
            return readChapter(at, m_lastBook, true);
        // A bare "8:29" after a reference names a verse of the same book; a time of day does not.
        if (markAt(at + 1, ':') && numberAt(at + 2) && !isTimeOfDay(at))
            return readChapter(at, m_lastBook, false);
        return at + 1;
    }

    /// The token before `at`, stepping over a full stop that closes an abbreviation.
    std::size_t afterDotBack(std::size_t at) const {
        return markAt(at, '.') && at > 0 && m_tokens[at - 1].isWord() ? at - 1 : at;
    }

    bool isTimeOfDay(std::size_t at) const {
        if (at > 0 &&
            isWordOf(m_tokens[at - 1], {"at", "by", "until", "till", "from", "around", "about", "before", "after"}))
            return true;
        const Token* after = token(at + 3);
        return after && isWordOf(*after, {"am", "pm", "a", "p", "o"});
    }

    /// Reads "<chapter>" and what follows it: ":verses", ".verses" (glued), ", verse 29" or nothing.
    std::size_t readChapter(std::size_t at, const BibleBook* book, bool mayStandAlone) {
        int chapter = numberOf(m_tokens[at]);
        std::size_t next = at + 1;
        bool glued = token(next) && !token(next)->spaceBefore;
        if ((markAt(next, ':') || (markAt(next, '.') && glued)) && numberAt(next + 1) &&
            (markAt(next, ':') || !token(next + 1)->spaceBefore))
            return readVerses(next + 1, book, chapter);
        std::size_t verseWord = markAt(next, ',') ? next + 1 : next;
        if (token(verseWord) && isVerseWord(*token(verseWord)) && numberAt(afterDot(verseWord + 1)))
            return readVerses(afterDot(verseWord + 1), book, chapter);
        // A chapter alone: "Romans 8", never "Romans 8th" or "Romans 8a".
        if (!mayStandAlone || (token(next) && !token(next)->spaceBefore && token(next)->isWord()))
            return at + 1;
        add(book, chapter, {});
        return next;
    }

    /// Reads "28", "28-29", "28, 29", "28 to 30", "28; 12:1", "28-9:4" from token `at`.
    std::size_t readVerses(std::size_t at, const BibleBook* book, int chapter) {
        std::vector<int> verses;
        std::size_t next = at;
        while (true) {
            int first = numberOf(m_tokens[next]);
            ++next;
            int last = first;
            std::size_t range = next;
            if (markAt(range, '-') || (token(range) && isWordOf(*token(range), {"to", "through", "thru"}))) {
                if (numberAt(range + 1)) {
                    int end = numberOf(m_tokens[range + 1]);
                    if (markAt(range + 2, ':') && numberAt(range + 3)) {
                        // Across chapters: to the end of this one, then the next from its first verse.
                        addRange(verses, first, std::max(first, book->verseCount(chapter)));
                        add(book, chapter, std::move(verses));
                        verses.clear();
                        chapter = end;
                        first = 1;
                        last = numberOf(m_tokens[range + 3]);
                        next = range + 4;
                    } else {
                        last = end;
                        next = range + 2;
                    }
                }
            }
            addRange(verses, first, last);
            std::optional<std::size_t> more = continuation(next);
            if (!more)
                break;
            if (markAt(*more + 1, ':') && numberAt(*more + 2)) {
                add(book, chapter, std::move(verses));
                verses.clear();
                chapter = numberOf(m_tokens[*more]);
                next = *more + 2;
                continue;
            }
            next = *more;
        }
        add(book, chapter, std::move(verses));
        return next;
    }

    /// Where the next number of a list starts ("28, 29", "28 and 29", "28; 12:1"), or nothing when
    /// the list ends there (a new book, or a number that counts something else).
    std::optional<std::size_t> continuation(std::size_t at) const {
        const Token* separator = token(at);
        if (!separator)
            return std::nullopt;
        bool comma = separator->isMark(',');
        bool semicolon = separator->isMark(';');
        bool conjunction = isWordOf(*separator, {"and"}) || separator->isMark('&');
        if (!comma && !semicolon && !conjunction)
            return std::nullopt;
        std::size_t number = at + 1;
        if (!numberAt(number) || m_tokens[number].text.size() > 3)
            return std::nullopt;
        bool chapterFollows = markAt(number + 1, ':') && numberAt(number + 2);
        if (chapterFollows)
            return number;
        const Token* after = token(number + 1);
        // "…, 2 Corinthians 5:17" starts a new reference; "and 3 others" counts people.
        if (after && after->isWord() && (isOrdinalNumber(m_tokens[number]) || !comma))
            return std::nullopt;
        if (semicolon)
            return std::nullopt;
        return number;
    }

    static void addRange(std::vector<int>& verses, int first, int last) {
        if (last < first)
            std::swap(first, last);
        // A generated text does not list a thousand verses; anything past a chapter's length is
        // still named, so it cannot hide behind a huge range.
        last = std::min(last, first + 200);
        for (int verse = first; verse <= last; ++verse)
            verses.push_back(verse);
    }

    void add(const BibleBook* book, int chapter, std::vector<int> verses) {
        m_lastBook = book;
        m_lastChapter = chapter;
        // A chapter the book lacks is kept: an invented reference must not slip through unnamed.
        if (chapter < 1)
            return;
        ScriptureReference reference{*book, chapter, std::nullopt};
        if (!verses.empty())
            reference.verses = std::move(verses);
        m_found.push_back(std::move(reference));
    }

    const std::vector<Token>& m_tokens;
    std::vector<ScriptureReference> m_found;
    const BibleBook* m_lastBook = nullptr;
    int m_lastChapter = 0;
};

} // namespace

std::vector<ScriptureReference> ReferenceRecogniser::referencesIn(std::string_view text) {
    std::string plain = plainSpacesAndDashes(text);
    std::vector<Token> tokens = tokensOf(plain);
    return Reader(tokens).all();
}

bool ReferenceRecogniser::isWithin(const ScriptureReference& named, const ScriptureReference& given) {
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

bool ReferenceRecogniser::namesOnly(std::string_view text, const std::vector<ScriptureReference>& allowed) {
    for (const ScriptureReference& named : referencesIn(text))
        if (std::none_of(allowed.begin(), allowed.end(),
                         [&](const ScriptureReference& given) { return isWithin(named, given); }))
            return false;
    return true;
}

} // namespace quillon::intelligence
