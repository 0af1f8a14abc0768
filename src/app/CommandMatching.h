#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// Fuzzy matching of the command palette: the typed letters must appear in the command's name in
/// order ("nws" finds "New Sermon"); letters that start words or follow one another score higher,
/// and shorter names win ties. When no name holds the letters in order, a misspelt word is
/// tolerated through the catalogue search ("presch preview" still finds "Preach Preview").
class CommandMatching {
public:
    /// Higher is better; nothing when the letters of `query` do not appear in `name` in order.
    static std::optional<int> score(std::string_view query, std::string_view name);
    /// Indexes into `names`, best first; every name, in order, for an empty query.
    static std::vector<std::size_t> rank(std::string_view query, const std::vector<std::string>& names);
};

} // namespace quillon::app
