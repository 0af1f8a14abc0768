#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// One ranked answer of a search: which document, how well it matched and how the score was obtained.
struct SearchHit {
    /// How the score was obtained; the raw values are stable text ("contextual", "sentence", "word", "lexical").
    enum class Match { contextual, sentence, word, lexical };

    std::string documentID;
    std::string title;
    /// In [0, 1], higher is better.
    double score = 0.0;
    Match match = Match::lexical;

    bool operator==(const SearchHit&) const = default;
};

constexpr std::string_view rawValue(SearchHit::Match match) {
    switch (match) {
    case SearchHit::Match::contextual:
        return "contextual";
    case SearchHit::Match::sentence:
        return "sentence";
    case SearchHit::Match::word:
        return "word";
    case SearchHit::Match::lexical:
        return "lexical";
    }
    return "lexical";
}

/// The kind whose raw value is exactly `text`; anything else is nothing.
constexpr std::optional<SearchHit::Match> matchFromRawValue(std::string_view text) {
    for (auto match :
         {SearchHit::Match::contextual, SearchHit::Match::sentence, SearchHit::Match::word, SearchHit::Match::lexical})
        if (rawValue(match) == text)
            return match;
    return std::nullopt;
}

} // namespace orvane
