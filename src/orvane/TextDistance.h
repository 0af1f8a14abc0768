#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Edit distance with adjacent transpositions over user-perceived characters, and the helpers built on it.
class TextDistance {
public:
    TextDistance() = delete;

    /// Optimal-string-alignment distance; compared exactly (callers normalise first).
    static std::size_t distance(std::string_view a, std::string_view b);
    /// 1 - distance / longer length, in [0, 1]; 1 when both are empty.
    static double similarity(std::string_view a, std::string_view b);
    /// Folded text whose letter-and-digit runs are joined by single spaces.
    static std::string normalised(std::string_view text);
    /// The candidate equal to the query after normalisation, else the earliest most similar one reaching
    /// `minimumSimilarity`; nothing when none qualifies or the query normalises to nothing.
    static std::optional<std::string> closestMatch(std::string_view query, const std::vector<std::string>& candidates,
                                                   double minimumSimilarity);
};

} // namespace orvane
