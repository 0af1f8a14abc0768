#pragma once

#include "scripture/BibleVerse.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::scripture {

/// One version's verses: verse key → verse. Immutable once a loader has stored it.
using VerseDictionary = std::unordered_map<std::string, BibleVerse>;
/// One dictionary entry: the verse key and its verse.
using VerseEntry = VerseDictionary::value_type;

/// A version's word index: each normalised word (lower case, stemmed, at least 2 characters) →
/// the verses whose text holds it, each verse at most once. Verses are named by their ordinal,
/// their position in the dictionary's iteration order, so that posting lists are flat ascending
/// integer runs that merge cheaply. It keeps the dictionary alive and also holds the lower-cased
/// verse texts for phrase matching.
class WordIndex {
public:
    using Ordinal = std::uint32_t;

    static std::shared_ptr<const WordIndex> build(std::shared_ptr<const VerseDictionary> verses);

    /// The verses holding the normalised word, in ascending ordinal order; empty when none does.
    std::span<const Ordinal> versesWith(std::string_view normalisedWord) const;
    /// The verses whose lower-cased text contains `phrase` (lower-cased here), each once, ascending.
    std::vector<Ordinal> versesContaining(std::string_view phrase) const;

    /// The dictionary entry of one verse ordinal (below verseCount()).
    const VerseEntry& entry(Ordinal verse) const { return *m_entries[verse]; }
    std::size_t verseCount() const { return m_entries.size(); }
    std::size_t wordCount() const { return m_words.size(); }
    const VerseDictionary& verses() const { return *m_verses; }

    /// Lower-cases `text`, splits it at every character that is neither a letter nor a digit
    /// and stems each piece; pieces whose stem is shorter than 2 characters are not reported.
    static void forEachNormalisedWord(std::string_view text, const std::function<void(std::string&&)>& visit);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
    };
    /// Where one word's verses lie in m_postings.
    struct PostingRange {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    std::shared_ptr<const VerseDictionary> m_verses;
    /// Normalised word → its position in m_ranges.
    std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> m_words;
    std::vector<PostingRange> m_ranges;
    /// Every word's verse ordinals, one word after another.
    std::vector<Ordinal> m_postings;
    /// Every verse's lower-cased text followed by "\n", in ordinal order.
    std::string m_loweredText;
    std::vector<std::uint32_t> m_offsets;
    std::vector<const VerseEntry*> m_entries;
};

} // namespace quillon::scripture
