#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillon::search {

/// A group of the unified search: where a hit comes from.
enum class SearchGroup { scripture, commentaries, dictionaries, historical, sermons };

/// Every group, in the order the search field lists them; also the initial focus.
inline constexpr std::array<SearchGroup, 5> allSearchGroups = {SearchGroup::scripture, SearchGroup::commentaries,
                                                               SearchGroup::dictionaries, SearchGroup::historical,
                                                               SearchGroup::sermons};

/// "scripture", "commentaries", "dictionaries", "historical", "sermons".
std::string_view rawValue(SearchGroup group);
/// The group whose raw value is `text`, ignoring case; nothing otherwise.
std::optional<SearchGroup> searchGroupFromRawValue(std::string_view text);

} // namespace quillon::search
