#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/StringLookup.h"

namespace orvane {

/// Reduces English words, archaic Bible forms included ("saith", "spake", "loveth"), to a common stem for verse,
/// commentary and library search.
class ScriptureStemmer {
public:
    ScriptureStemmer() = delete;

    /// Distinct stems of the text's letter runs (3+ characters, query fillers dropped), in order of first appearance.
    static std::vector<std::string> terms(std::string_view text);
    /// The stem of one lowercase word; may equal the input.
    static std::string stem(std::string_view word);

    /// Words of a typed query that say nothing about what is searched ("passage", "where", "find").
    static const StringSet& queryFillers();
    /// Suffixes in the order they are tried.
    static std::span<const std::string_view> suffixes();
    /// Irregular form -> base form, applied once before suffix removal.
    static const StringMap<std::string>& irregularForms();
};

} // namespace orvane
