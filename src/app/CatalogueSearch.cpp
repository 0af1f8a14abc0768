#include "app/CatalogueSearch.h"

#include "orvane/LexicalRanking.h"
#include "orvane/TextDistance.h"

#include <algorithm>
#include <unordered_map>

namespace quillon::app {

namespace {

/// A word being typed is completed only once it says enough to choose among a few words.
constexpr std::size_t shortestPrefix = 2;
constexpr std::size_t mostCompletions = 12;

std::size_t lengthGap(const std::string& a, const std::string& b) {
    return a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
}

} // namespace

CatalogueSearch::CatalogueSearch(std::vector<orvane::IndexedDocument> documents) : m_documents(std::move(documents)) {
    std::unordered_map<std::string, int> frequencies;
    m_terms.reserve(m_documents.size());
    for (const orvane::IndexedDocument& document : m_documents) {
        const auto terms = orvane::LexicalRanking::terms(orvane::compositeText(document));
        for (const std::string& term : terms)
            ++frequencies[term];
        m_terms.emplace_back(terms.begin(), terms.end());
        const auto titleTerms = orvane::LexicalRanking::terms(document.title);
        m_titleTerms.emplace_back(titleTerms.begin(), titleTerms.end());
    }
    for (const auto& [term, count] : frequencies)
        m_vocabulary.push_back(term);
    m_frequencies = frequencies;
    std::sort(m_vocabulary.begin(), m_vocabulary.end());
    m_weighting = orvane::InverseDocumentFrequency::make(m_documents.size(), frequencies);
}

std::vector<std::string> CatalogueSearch::alternatives(const std::string& term, bool last,
                                                       std::vector<orvane::QueryCorrection>& corrections) const {
    if (std::binary_search(m_vocabulary.begin(), m_vocabulary.end(), term))
        return {term};
    std::vector<std::string> found;
    if (last && term.size() >= shortestPrefix)
        for (auto it = std::lower_bound(m_vocabulary.begin(), m_vocabulary.end(), term);
             it != m_vocabulary.end() && it->starts_with(term) && found.size() < mostCompletions; ++it)
            found.push_back(*it);
    if (!found.empty() || term.size() < 4)
        return found;
    // The closest words win; among equally close ones, those more of the catalogue uses ("pase" is read as
    // "pace", which four settings name, rather than "page", which three do).
    double best = minimumSimilarity;
    int mostUsed = 0;
    for (const std::string& word : m_vocabulary) {
        if (lengthGap(word, term) >= 3)
            continue;
        const double similarity = orvane::TextDistance::similarity(term, word);
        if (similarity < best - 1e-9)
            continue;
        const int used = m_frequencies.at(word);
        if (similarity > best + 1e-9 || used > mostUsed) {
            best = similarity;
            mostUsed = used;
            found.clear();
        }
        if (used == mostUsed)
            found.push_back(word);
    }
    if (!found.empty())
        corrections.push_back({term, found.front(), orvane::QueryCorrection::Kind::spelling});
    return found;
}

orvane::CorrectedSearch CatalogueSearch::search(std::string_view query, int limit) const {
    const std::vector<std::string> typed = orvane::LexicalRanking::terms(query);
    if (typed.empty() || limit < 1)
        return {};
    orvane::CorrectedSearch result;
    std::vector<std::vector<std::string>> groups;
    for (std::size_t i = 0; i < typed.size(); ++i)
        groups.push_back(alternatives(typed[i], i + 1 == typed.size(), result.corrections));

    // Ranked by score, then by how many of the words the title holds: an article about Preach Preview beats one
    // that merely mentions it.
    struct Ranked {
        double score;
        std::size_t inTitle;
        std::size_t index;
    };
    std::vector<Ranked> ranked;
    std::vector<std::string> resolved(groups.size());
    for (std::size_t index = 0; index < m_documents.size(); ++index) {
        const auto& terms = m_terms[index];
        // Each typed word stands for the alternative this document holds, so completions and corrections
        // never dilute one another.
        for (std::size_t g = 0; g < groups.size(); ++g) {
            resolved[g] = groups[g].empty() ? typed[g] : groups[g].front();
            for (const std::string& alternative : groups[g])
                if (terms.contains(alternative)) {
                    resolved[g] = alternative;
                    break;
                }
        }
        const double score = orvane::LexicalRanking::score(resolved, terms, &m_weighting, m_weighting.unseen);
        if (score <= 0)
            continue;
        std::size_t inTitle = 0;
        for (const std::string& term : resolved)
            inTitle += m_titleTerms[index].contains(term) ? 1 : 0;
        ranked.push_back({score, inTitle, index});
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        return a.score != b.score ? a.score > b.score : a.inTitle > b.inTitle;
    });
    if (ranked.size() > static_cast<std::size_t>(limit))
        ranked.resize(static_cast<std::size_t>(limit));
    for (const Ranked& hit : ranked)
        result.hits.push_back(
            {m_documents[hit.index].id, m_documents[hit.index].title, hit.score, orvane::SearchHit::Match::lexical});
    return result;
}

} // namespace quillon::app
