#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A word that a search used instead of, or in addition to, what the user typed.
struct QueryCorrection {
    /// Why `used` was added; the raw values are stable text ("spelling", "synonym").
    enum class Kind {
        /// `typed` was not in the vocabulary and `used` is its correction.
        spelling,
        /// `typed` was found and `used` is a synonym the vocabulary also holds.
        synonym,
    };

    std::string typed;
    std::string used;
    Kind kind = Kind::spelling;

    bool operator==(const QueryCorrection&) const = default;

    /// "Showing results for " and the spelling corrections' words; nothing when there were none, because synonym
    /// additions are silent.
    static std::optional<std::string> bannerText(const std::vector<QueryCorrection>& corrections);
};

constexpr std::string_view rawValue(QueryCorrection::Kind kind) {
    switch (kind) {
    case QueryCorrection::Kind::spelling:
        return "spelling";
    case QueryCorrection::Kind::synonym:
        return "synonym";
    }
    return "spelling";
}

/// The kind whose raw value is exactly `text`; anything else is nothing.
constexpr std::optional<QueryCorrection::Kind> kindFromRawValue(std::string_view text) {
    for (auto kind : {QueryCorrection::Kind::spelling, QueryCorrection::Kind::synonym})
        if (rawValue(kind) == text)
            return kind;
    return std::nullopt;
}

} // namespace orvane
