#include "search/SearchGroup.h"

#include <algorithm>

namespace quillon::search {

std::string_view rawValue(SearchGroup group) {
    switch (group) {
    case SearchGroup::scripture:
        return "scripture";
    case SearchGroup::commentaries:
        return "commentaries";
    case SearchGroup::dictionaries:
        return "dictionaries";
    case SearchGroup::historical:
        return "historical";
    case SearchGroup::sermons:
        return "sermons";
    }
    return "scripture"; // no default case, so the compiler can warn about missing cases
}

std::optional<SearchGroup> searchGroupFromRawValue(std::string_view text) {
    for (SearchGroup group : allSearchGroups) {
        const std::string_view raw = rawValue(group);
        if (raw.size() == text.size() && std::equal(raw.begin(), raw.end(), text.begin(), [](char a, char b) {
                return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b - 'A' + 'a') : b);
            }))
            return group;
    }
    return std::nullopt;
}

} // namespace quillon::search
