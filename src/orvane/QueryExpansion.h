#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/QueryCorrection.h"
#include "orvane/StringLookup.h"

namespace orvane {

/// Spelling correction against an index's own vocabulary, plus a small fixed synonym table.
struct QueryExpansion {
    /// The terms that the index being searched actually contains.
    StringSet vocabulary;
    /// The least similarity a spelling correction must reach (the semantic index uses 0.82).
    double minimumRatio = 0.82;

    struct Expansion {
        /// The typed tokens (kept even when corrected), corrections and synonyms; may hold repeats.
        std::vector<std::string> terms;
        std::vector<QueryCorrection> corrections;
    };

    Expansion expand(std::string_view query) const;
    /// The one vocabulary word clearly closest to `token`; nothing for tokens under 4 characters, for no word
    /// reaching `minimumRatio`, or for a near tie.
    std::optional<std::string> correction(std::string_view token) const;

    /// The synonym groups, each in its order.
    static std::span<const std::vector<std::string_view>> synonymGroups();
    /// The other words of the word's group, in group order; empty when it has none.
    static std::span<const std::string_view> synonyms(std::string_view word);
};

} // namespace orvane
