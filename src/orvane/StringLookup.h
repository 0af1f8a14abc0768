#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace orvane {

/// Lets the constant word tables be searched with a std::string_view without building a std::string.
struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};

using StringSet = std::unordered_set<std::string, StringHash, std::equal_to<>>;
template <typename Value>
using StringMap = std::unordered_map<std::string, Value, StringHash, std::equal_to<>>;

} // namespace orvane

namespace orvane {

template <typename Words>
StringSet setOf(const Words& words) {
    StringSet set;
    set.reserve(std::size(words));
    for (std::string_view word : words)
        set.emplace(word);
    return set;
}

} // namespace orvane
