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

std::shared_ptr<const WordIndex> WordIndex::build(std::shared_ptr<const VerseDictionary> verses) {
    auto index = std::make_shared<WordIndex>();
    index->m_verses = std::move(verses);
    index->m_words.reserve(expectedWordCount);
    index->m_entries.reserve(index->m_verses->size());
    index->m_offsets.reserve(index->m_verses->size() + 1);

    // A Bible repeats some 13,000 distinct spellings about 800,000 times: stem each spelling once
    // and remember which posting list it feeds (nullptr: too short to index).
    // The standard string hash keeps each node's hash code, which this hot lookup needs.
    std::unordered_map<std::string, std::vector<const VerseEntry*>*> postingsBySpelling;
    postingsBySpelling.reserve(expectedWordCount * 2);
    std::vector<std::vector<const VerseEntry*>*> seenInVerse;
    std::string word;
    for (const VerseEntry& entry : *index->m_verses) {
        seenInVerse.clear();
        forEachLoweredWord(entry.second.text, word, [&](const std::string& lowered) {
            auto spelling = postingsBySpelling.find(lowered);
            if (spelling == postingsBySpelling.end()) {
                std::vector<const VerseEntry*>* postings = nullptr;
                std::string stem = normalisedWord(lowered);
                if (!stem.empty())
                    postings = &index->m_words.try_emplace(std::move(stem)).first->second;
                spelling = postingsBySpelling.emplace(lowered, postings).first;
            }
            std::vector<const VerseEntry*>* postings = spelling->second;
            // A verse holds a few dozen words at most, so a linear scan beats a hash set here.
            if (!postings || std::find(seenInVerse.begin(), seenInVerse.end(), postings) != seenInVerse.end())
                return;
            postings->push_back(&entry);
            seenInVerse.push_back(postings);
        });
        index->m_offsets.push_back(static_cast<std::uint32_t>(index->m_loweredText.size()));
        index->m_entries.push_back(&entry);
        index->m_loweredText += loweredText(entry.second.text);
        index->m_loweredText.push_back('\n');
    }
    index->m_offsets.push_back(static_cast<std::uint32_t>(index->m_loweredText.size()));
    return index;
}

const std::vector<const VerseEntry*>& WordIndex::versesWith(std::string_view normalisedWord) const {
    static const std::vector<const VerseEntry*> none;
    auto found = m_words.find(normalisedWord);
    return found == m_words.end() ? none : found->second;
}

std::vector<const VerseEntry*> WordIndex::versesContaining(std::string_view phrase) const {
    std::vector<const VerseEntry*> found;
    const std::string needle = loweredText(phrase);
    if (needle.empty())
        return found;
    const char* start = m_loweredText.data();
    const std::size_t size = m_loweredText.size();
    std::size_t from = 0;
    while (from < size) {
        const void* hit = memmem(start + from, size - from, needle.data(), needle.size());
        if (!hit)
            break;
        auto at = static_cast<std::size_t>(static_cast<const char*>(hit) - start);
        // The verse whose text the hit begins in; a hit running into the next verse does not count.
        auto next = std::upper_bound(m_offsets.begin(), m_offsets.end(), static_cast<std::uint32_t>(at));
        std::size_t verse = static_cast<std::size_t>(next - m_offsets.begin()) - 1;
        std::size_t verseEnd = *next - 1; // the "\n" after the verse
        if (at + needle.size() <= verseEnd)
            found.push_back(m_entries[verse]);
        from = verseEnd + 1;
    }
    return found;
}

} // namespace quillon::scripture
