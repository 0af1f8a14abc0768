#pragma once

#include <cstddef>
#include <string_view>

#include "orvane/StringLookup.h"

namespace orvane {

/// The sermon-aware noise list: besides function words it holds the words that occur everywhere in this domain
/// ("god", "jesus", "lord", "bible", "sermon", "verse").
class StopWords {
public:
    StopWords() = delete;

    /// Whether the word, lowercased and reduced to its letters and numbers, has at least `minimumLength`
    /// characters and is not in the list.
    static bool isMeaningful(std::string_view word, std::size_t minimumLength);
    static const StringSet& words();
};

} // namespace orvane
