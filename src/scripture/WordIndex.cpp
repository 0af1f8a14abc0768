#include "scripture/WordIndex.h"

#include "orvane/ScriptureStemmer.h"
#include "orvane/UnicodeText.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace quillon::scripture {

namespace {

// Pre-sized so that building a whole Bible's index never rehashes.
constexpr std::size_t expectedWordCount = 20000;

bool isAsciiAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

char asciiLower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string loweredText(std::string_view text) {
    if (orvane::UnicodeText::isAscii(text)) {
        std::string lowered(text);
        for (char& c : lowered)
            c = asciiLower(c);
        return lowered;
    }
    return orvane::UnicodeText::lowercased(text);
}

std::size_t characterCount(std::string_view word) {
    return orvane::UnicodeText::isAscii(word) ? word.size() : orvane::UnicodeText::characterCount(word);
}

} // namespace

namespace {

/// Calls `visit` with each maximal run of letters and digits of `text`, lower-cased.
template <typename Visit>
void forEachLoweredWord(std::string_view text, std::string& word, Visit&& visit) {
    word.clear();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), INT32_MAX));
    for (std::int32_t i = 0; i < length;) {
        if (bytes[i] < 0x80) {
            char c = static_cast<char>(bytes[i++]);
            if (isAsciiAlphanumeric(c)) {
                word.push_back(asciiLower(c));
            } else if (!word.empty()) {
                visit(static_cast<const std::string&>(word));
                word.clear();
            }
            continue;
        }
        UChar32 point = 0;
        U8_NEXT(bytes, i, length, point);
        if (point < 0 || !u_isalnum(point)) {
            if (!word.empty()) {
                visit(static_cast<const std::string&>(word));
                word.clear();
            }
            continue;
        }
        char encoded[4];
        std::int32_t size = 0;
        UBool failed = false;
        U8_APPEND(encoded, size, 4, u_tolower(point), failed);
        if (!failed)
            word.append(encoded, static_cast<std::size_t>(size));
    }
    if (!word.empty())
        visit(static_cast<const std::string&>(word));
}

/// The index form of one lowered word; empty when it is too short to index.
std::string normalisedWord(std::string_view lowered) {
    std::string stem = orvane::ScriptureStemmer::stem(lowered);
    if (characterCount(stem) < 2)
        stem.clear();
    return stem;
}

} // namespace

void WordIndex::forEachNormalisedWord(std::string_view text, const std::function<void(std::string&&)>& visit) {
    std::string word;
    forEachLoweredWord(text, word, [&](std::string_view lowered) {
        std::string stem = normalisedWord(lowered);
        if (!stem.empty())
            visit(std::move(stem));
    });
}

namespace {

/// Each distinct spelling of a text, mapped once to the word it is indexed under. A Bible repeats
/// some 13,000 spellings about 800,000 times, so this lookup is the hot loop of the build: an
/// open-addressing table over one byte arena, probed without allocating.
class SpellingTable {
public:
    static constexpr std::uint32_t unindexed = UINT32_MAX;

    SpellingTable() : m_slots(1u << 15) {}

    /// The word number stored for `spelling`, or nothing when it was not seen yet.
    const std::uint32_t* find(std::string_view spelling, std::uint32_t hash) const {
        for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
            const Slot& slot = m_slots[at];
            if (slot.length == 0)
                return nullptr;
            if (slot.hash == hash && slot.length == spelling.size() && sameBytes(slot.offset, spelling))
                return &slot.word;
        }
    }

    /// Records a spelling not in the table yet (`find` gave nothing).
    void insert(std::string_view spelling, std::uint32_t hash, std::uint32_t word) {
        if ((m_count + 1) * 2 > m_slots.size())
            grow();
        place(
            Slot{hash, static_cast<std::uint32_t>(spelling.size()), static_cast<std::uint32_t>(m_bytes.size()), word});
        m_bytes.append(spelling);
        ++m_count;
    }

    static std::uint32_t hashOf(std::string_view spelling) {
        std::uint64_t hash = 0xcbf29ce484222325ULL; // FNV-1a, then folded: spellings are a few bytes long
        for (char c : spelling)
            hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001b3ULL;
        return static_cast<std::uint32_t>(hash ^ (hash >> 29));
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t length = 0; // 0: empty; a spelling is never empty
        std::uint32_t offset = 0;
        std::uint32_t word = 0;
    };

    std::size_t mask() const { return m_slots.size() - 1; }

    // Spellings are a few bytes long: a plain loop beats a call to memcmp.
    bool sameBytes(std::uint32_t offset, std::string_view spelling) const {
        const char* stored = m_bytes.data() + offset;
        for (std::size_t i = 0; i < spelling.size(); ++i)
            if (stored[i] != spelling[i])
                return false;
        return true;
    }

    void place(const Slot& slot) {
        std::size_t at = slot.hash & mask();
        while (m_slots[at].length != 0)
            at = (at + 1) & mask();
        m_slots[at] = slot;
    }

    void grow() {
        std::vector<Slot> old(m_slots.size() * 2);
        old.swap(m_slots);
        for (const Slot& slot : old)
            if (slot.length != 0)
                place(slot);
    }

    std::vector<Slot> m_slots;
    std::string m_bytes;
    std::size_t m_count = 0;
};

/// Appends `text` lower-cased to `lowered` when it is plain ASCII; otherwise appends nothing and
/// returns false.
bool appendAsciiLowered(std::string_view text, std::string& lowered) {
    const std::size_t start = lowered.size();
    lowered.resize(start + text.size());
    char* out = lowered.data() + start;
    unsigned char any = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        any |= static_cast<unsigned char>(c);
        out[i] = asciiLower(c);
    }
    if (any < 0x80)
        return true;
    lowered.resize(start);
    return false;
}

/// Calls `visit` with each maximal run of lower-case ASCII letters and digits of `lowered`.
template <typename Visit>
void forEachAsciiWord(std::string_view lowered, Visit&& visit) {
    const char* bytes = lowered.data();
    const std::size_t size = lowered.size();
    std::size_t i = 0;
    while (i < size) {
        while (i < size && !isAsciiAlphanumeric(bytes[i]))
            ++i;
        const std::size_t start = i;
        while (i < size && isAsciiAlphanumeric(bytes[i]))
            ++i;
        if (i > start)
            visit(std::string_view(bytes + start, i - start));
    }
}

} // namespace

std::shared_ptr<const WordIndex> WordIndex::build(std::shared_ptr<const VerseDictionary> verses) {
    auto index = std::make_shared<WordIndex>();
    index->m_verses = std::move(verses);
    const VerseDictionary& dictionary = *index->m_verses;
    index->m_words.reserve(expectedWordCount);
    index->m_entries.reserve(dictionary.size());
    index->m_offsets.reserve(dictionary.size() + 1);
    // A verse runs to some 140 bytes; a second walk over the dictionary's nodes to size this
    // exactly costs more than the rare late growth.
    index->m_loweredText.reserve(dictionary.size() * 160);

    // First pass: number the words in order of first appearance and note, verse by verse, which
    // words each verse holds (each once). The second pass lays the posting lists out in one array
    // sized from those counts, so no list ever grows and moves.
    SpellingTable spellings;
    std::vector<std::uint32_t> wordsOfVerses; // every verse's words, verse after verse
    wordsOfVerses.reserve(dictionary.size() * 24);
    std::vector<std::uint32_t> verseEnds; // where each verse's words end in wordsOfVerses
    verseEnds.reserve(dictionary.size());
    std::vector<std::uint32_t> lastVerseOfWord; // ordinal + 1 of the last verse that held the word
    std::vector<std::uint32_t> verseCountOfWord;
    lastVerseOfWord.reserve(expectedWordCount);
    verseCountOfWord.reserve(expectedWordCount);

    std::uint32_t ordinal = 0;
    auto record = [&](std::string_view lowered) {
        const std::uint32_t hash = SpellingTable::hashOf(lowered);
        std::uint32_t word = 0;
        if (const std::uint32_t* known = spellings.find(lowered, hash)) {
            word = *known;
        } else {
            word = SpellingTable::unindexed;
            std::string stem = normalisedWord(lowered);
            if (!stem.empty()) {
                auto [found, added] =
                    index->m_words.try_emplace(std::move(stem), static_cast<std::uint32_t>(verseCountOfWord.size()));
                word = found->second;
                if (added) {
                    lastVerseOfWord.push_back(0);
                    verseCountOfWord.push_back(0);
                }
            }
            spellings.insert(lowered, hash, word);
        }
        if (word == SpellingTable::unindexed || lastVerseOfWord[word] == ordinal + 1)
            return;
        lastVerseOfWord[word] = ordinal + 1;
        ++verseCountOfWord[word];
        wordsOfVerses.push_back(word);
    };

    std::string word;
    for (const VerseEntry& entry : dictionary) {
        const std::string& text = entry.second.text;
        const std::size_t start = index->m_loweredText.size();
        index->m_offsets.push_back(static_cast<std::uint32_t>(start));
        index->m_entries.push_back(&entry);
        if (appendAsciiLowered(text, index->m_loweredText)) {
            forEachAsciiWord(std::string_view(index->m_loweredText).substr(start), record);
        } else {
            // Letters beyond ASCII: the slower code-point walk, and full Unicode lower-casing for
            // the phrase text.
            forEachLoweredWord(text, word, record);
            index->m_loweredText += orvane::UnicodeText::lowercased(text);
        }
        index->m_loweredText.push_back('\n');
        verseEnds.push_back(static_cast<std::uint32_t>(wordsOfVerses.size()));
        ++ordinal;
    }
    index->m_offsets.push_back(static_cast<std::uint32_t>(index->m_loweredText.size()));

    // Second pass: each word's verses in ascending ordinal order, all in one array.
    index->m_ranges.resize(verseCountOfWord.size());
    std::uint32_t next = 0;
    for (std::size_t w = 0; w < verseCountOfWord.size(); ++w) {
        index->m_ranges[w] = PostingRange{next, next};
        next += verseCountOfWord[w];
    }
    index->m_postings.resize(next);
    std::uint32_t from = 0;
    for (std::uint32_t verse = 0; verse < verseEnds.size(); ++verse) {
        for (std::uint32_t at = from; at < verseEnds[verse]; ++at)
            index->m_postings[index->m_ranges[wordsOfVerses[at]].end++] = verse;
        from = verseEnds[verse];
    }
    return index;
}

std::span<const WordIndex::Ordinal> WordIndex::versesWith(std::string_view normalisedWord) const {
    auto found = m_words.find(normalisedWord);
    if (found == m_words.end())
        return {};
    const PostingRange& range = m_ranges[found->second];
    return std::span<const Ordinal>(m_postings.data() + range.begin, range.end - range.begin);
}

namespace {
/// How much of the Bible's text one search call looks at before it is cut at the next verse.
constexpr std::size_t searchWindowBytes = 4096;
} // namespace

std::vector<WordIndex::Ordinal> WordIndex::versesContaining(std::string_view phrase) const {
    std::vector<Ordinal> found;
    const std::string needle = loweredText(phrase);
    if (needle.empty())
        return found;
    const char* start = m_loweredText.data();
    const std::size_t size = m_loweredText.size();
    std::size_t from = 0;
    while (from < size) {
        // A few kilobytes at a time, cut where a verse begins (a hit never spans two verses): a
        // phrase found in every verse then costs one pass over the text, not one pass over the
        // rest of it per verse, as a memory checker's look at each call's whole range would.
        const auto cut = std::upper_bound(m_offsets.begin(), m_offsets.end(),
                                          static_cast<std::uint32_t>(std::min(size, from + searchWindowBytes) - 1));
        const std::size_t windowEnd = cut == m_offsets.end() ? size : *cut;
        const void* hit = memmem(start + from, windowEnd - from, needle.data(), needle.size());
        if (!hit) {
            from = windowEnd;
            continue;
        }
        auto at = static_cast<std::size_t>(static_cast<const char*>(hit) - start);
        // The verse whose text the hit begins in; a hit running into the next verse does not count.
        auto next = std::upper_bound(m_offsets.begin(), m_offsets.end(), static_cast<std::uint32_t>(at));
        auto verse = static_cast<Ordinal>(next - m_offsets.begin() - 1);
        std::size_t verseEnd = *next - 1; // the "\n" after the verse
        if (at + needle.size() <= verseEnd)
            found.push_back(verse);
        from = verseEnd + 1;
    }
    return found;
}

} // namespace quillon::scripture
