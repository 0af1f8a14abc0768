#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace orvane {

/// Lets the word tables be searched with a std::string_view without building a std::string. FNV-1a, because the
/// keys are short words and the library's general-purpose hash dominated tokenising time.
struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        std::uint64_t hash = 14695981039346656037ull;
        for (char c : text) {
            hash ^= static_cast<unsigned char>(c);
            hash *= 1099511628211ull;
        }
        return static_cast<std::size_t>(hash);
    }
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
