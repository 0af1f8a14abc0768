#include "orvane/LexicalRanking.h"

#include "orvane/IndexedDocument.h"
#include "orvane/LexicalTokenizer.h"

namespace orvane::LexicalRanking {

std::vector<std::string> terms(std::string_view text) {
    std::vector<std::string> distinct;
    std::unordered_set<std::string> seen;
    for (auto& token : LexicalTokenizer::tokens(text, 2, true))
        if (seen.insert(token).second)
            distinct.push_back(std::move(token));
    return distinct;
}

double score(std::string_view query, std::string_view title, std::string_view text,
             const InverseDocumentFrequency* weighting, double unseen) {
    const auto queryTerms = terms(query);
    if (queryTerms.empty())
        return 0.0;
    const auto documentTokens = terms(compositeText(std::string(title), std::string(text)));
    const std::unordered_set<std::string> documentTerms(documentTokens.begin(), documentTokens.end());
    return score(queryTerms, documentTerms, weighting, unseen);
}

double score(const std::vector<std::string>& queryTerms, const std::unordered_set<std::string>& documentTerms,
             const InverseDocumentFrequency* weighting, double unseen) {
    if (queryTerms.empty() || documentTerms.empty())
        return 0.0;
    if (!weighting) {
        std::size_t held = 0;
        for (const auto& term : queryTerms)
            held += documentTerms.contains(term) ? 1 : 0;
        return static_cast<double>(held) / static_cast<double>(queryTerms.size());
    }
    double total = 0.0;
    double matched = 0.0;
    for (const auto& term : queryTerms) {
        const double weight = weighting->weight(term, unseen);
        total += weight;
        if (documentTerms.contains(term))
            matched += weight;
    }
    return total > 0.0 ? matched / total : 0.0;
}

} // namespace orvane::LexicalRanking
