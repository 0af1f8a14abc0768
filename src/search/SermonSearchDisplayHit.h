#pragma once

#include "model/SermonNote.h"
#include "orvane/QueryCorrection.h"
#include "orvane/SearchHit.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::search {

/// A sermon search hit as the interface and the command line show it.
struct SermonSearchDisplayHit {
    /// `title`: the sermon's title holds a query term; `text`: only its body does.
    enum class MatchTier { title, text };

    /// Unique among all hits of the unified search.
    std::string id;
    model::Uuid sermonID;
    std::string title;
    /// The series and the date, "Romans · March 9, 2025", or the date alone.
    std::string subtitle;
    /// The sentence that best matches the query, at most `maximumSnippetLength` user-perceived characters, with "…"
    /// where it was cut.
    std::string snippet;
    MatchTier matchTier = MatchTier::text;
    double score = 0.0;

    bool operator==(const SermonSearchDisplayHit&) const = default;

    static constexpr int maximumSnippetLength = 160;

    /// The display form of `hit` for `sermon`, found with `query` and `corrections` (whose words count as query
    /// terms too).
    static SermonSearchDisplayHit make(const orvane::SearchHit& hit, const model::SermonNote& sermon,
                                       std::string_view query, const std::vector<orvane::QueryCorrection>& corrections);

    /// "March 9, 2025" (the date in UTC).
    static std::string formattedDate(model::DateTime date);
    /// The sentence of `text` holding most of `terms` (the earliest among equals; the first sentence when none holds
    /// any), shortened around its first matching word to `maximumSnippetLength` characters.
    static std::string snippetText(std::string_view text, const std::vector<std::string>& terms);
};

std::string_view rawValue(SermonSearchDisplayHit::MatchTier tier);

} // namespace quillon::search
