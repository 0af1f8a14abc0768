#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "orvane/StringLookup.h"

namespace orvane {

/// Splits text into lowercase word tokens for lexical ranking and query expansion.
class LexicalTokenizer {
public:
    LexicalTokenizer() = delete;

    /// Tokens in order of appearance, duplicates kept. Tokens holding non-ASCII are folded ("Éphèse" -> "ephese"),
    /// a trailing "'s" or "’s" is dropped, all-digit tokens are always kept, others need `minimumLength`
    /// characters and, when `removingStopWords`, must not be common English function words.
    static std::vector<std::string> tokens(std::string_view text, std::size_t minimumLength, bool removingStopWords);

    /// The same tokens without building a vector; the view is valid only during the call.
    static void forEachToken(std::string_view text, std::size_t minimumLength, bool removingStopWords,
                             const std::function<void(std::string_view)>& visit);

    /// The common English function words (with contractions) dropped when stop words are removed.
    static const StringSet& stopWords();
};

} // namespace orvane
