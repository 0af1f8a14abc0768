#pragma once

#include "orvane/CorrectedSearch.h"
#include "orvane/IndexedDocument.h"
#include "orvane/InverseDocumentFrequency.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon::app {

/// Search over a small fixed catalogue (the settings, the help articles, the palette's commands), ranked
/// by the project's lexical ranking. It is searched a keystroke at a time, so a word still being typed
/// matches the catalogue words it begins, and a misspelt word (from four letters) is corrected to the
/// catalogue words closest to it, "pase" to "pace". Never throws; an empty query finds nothing.
class CatalogueSearch {
public:
    /// The least similarity a correction must reach: one wrong letter in a four-letter word.
    static constexpr double minimumSimilarity = 0.75;

    explicit CatalogueSearch(std::vector<orvane::IndexedDocument> documents);

    /// At most `limit` hits, best first (equal scores in catalogue order); `corrections` names the
    /// misspelt words and what they were read as.
    orvane::CorrectedSearch search(std::string_view query, int limit) const;

    const std::vector<orvane::IndexedDocument>& documents() const { return m_documents; }

private:
    /// The catalogue words a typed word may stand for: itself, the words it begins, or its corrections.
    std::vector<std::string> alternatives(const std::string& term, bool last,
                                          std::vector<orvane::QueryCorrection>& corrections) const;

    std::vector<orvane::IndexedDocument> m_documents;
    std::vector<std::unordered_set<std::string>> m_terms;
    std::vector<std::unordered_set<std::string>> m_titleTerms;
    std::vector<std::string> m_vocabulary;
    /// In how many documents each word occurs.
    std::unordered_map<std::string, int> m_frequencies;
    orvane::InverseDocumentFrequency m_weighting;
};

} // namespace quillon::app
