#include "orvane/SemanticIndex.h"

#include "orvane/LexicalRanking.h"
#include "orvane/QueryExpansion.h"
#include "orvane/SeededHash.h"
#include "orvane/SentenceEmbedding.h"
#include "orvane/VectorMath.h"

#include <algorithm>

namespace orvane {
namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view whitespace = " \t\n\r\v\f";
    const auto first = text.find_first_not_of(whitespace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(whitespace) - first + 1);
}

} // namespace

SemanticIndex::SemanticIndex(double minimumScore) : SemanticIndex(SentenceEmbedding::english(), minimumScore) {}

SemanticIndex::SemanticIndex(std::shared_ptr<const TextEmbedding> embedding, double minimumScore)
    : m_embedding(std::move(embedding)), m_minimumScore(minimumScore) {}

void SemanticIndex::upsert(const std::vector<IndexedDocument>& documents) {
    std::lock_guard lock(m_mutex);
    bool changed = false;
    for (const auto& document : documents) {
        const auto embeddingText = compositeText(document);
        const auto signature = SeededHash::of(embeddingText);
        const auto position = m_positions.find(document.id);
        if (position != m_positions.end() && m_documents[position->second].signature == signature)
            continue;

        auto tokens = LexicalRanking::terms(embeddingText);
        Entry entry{document, signature,
                    std::unordered_set<std::string>(std::make_move_iterator(tokens.begin()),
                                                    std::make_move_iterator(tokens.end())),
                    std::nullopt};
        if (m_embedding)
            entry.vector = m_embedding->vector(embeddingText);
        countTerms(entry.terms, +1);
        if (position != m_positions.end()) {
            auto& held = m_documents[position->second];
            countTerms(held.terms, -1);
            held = std::move(entry);
        } else {
            m_positions.emplace(document.id, m_documents.size());
            m_documents.push_back(std::move(entry));
        }
        ++m_indexedDocumentWork;
        changed = true;
    }
    if (changed)
        m_cachedWeighting.reset();
}

void SemanticIndex::remove(const std::vector<std::string>& ids) {
    std::lock_guard lock(m_mutex);
    std::vector<bool> removed(m_documents.size(), false);
    bool any = false;
    for (const auto& id : ids) {
        const auto position = m_positions.find(id);
        if (position == m_positions.end())
            continue;
        countTerms(m_documents[position->second].terms, -1);
        removed[position->second] = true;
        m_positions.erase(position);
        any = true;
    }
    if (!any)
        return;
    // One compaction for the whole batch keeps the remaining documents in their order.
    std::size_t kept = 0;
    for (std::size_t i = 0; i < m_documents.size(); ++i) {
        if (removed[i])
            continue;
        if (kept != i)
            m_documents[kept] = std::move(m_documents[i]);
        m_positions[m_documents[kept].document.id] = kept;
        ++kept;
    }
    m_documents.resize(kept);
    m_cachedWeighting.reset();
}

void SemanticIndex::countTerms(const std::unordered_set<std::string>& terms, int delta) {
    for (const auto& term : terms) {
        auto& count = m_frequencies[term];
        count += delta;
        // A term no document holds any more must leave the vocabulary, or corrections could pick it.
        if (count <= 0)
            m_frequencies.erase(term);
    }
}

const InverseDocumentFrequency& SemanticIndex::weighting() {
    if (!m_cachedWeighting)
        m_cachedWeighting = InverseDocumentFrequency::make(m_documents.size(), m_frequencies);
    return *m_cachedWeighting;
}

std::vector<SearchHit> SemanticIndex::search(std::string_view query, int limit) {
    std::lock_guard lock(m_mutex);
    return searchLocked(query, limit);
}

std::vector<SearchHit> SemanticIndex::searchLocked(std::string_view query, int limit) {
    query = trimmed(query);
    if (query.empty() || m_documents.empty() || limit < 1)
        return {};

    std::optional<std::vector<double>> queryVector;
    if (m_embedding)
        queryVector = m_embedding->vector(query);

    // The lexical side is prepared once per query: its terms and their weights.
    const auto queryTerms = LexicalRanking::terms(query);
    const auto& weights = weighting();

    struct Scored {
        double score;
        const Entry* entry;
        SearchHit::Match match;
    };
    std::vector<Scored> scored;
    for (const auto& entry : m_documents) {
        if (queryVector && entry.vector) {
            const double score = VectorMath::score(VectorMath::cosine(*queryVector, *entry.vector));
            if (m_minimumScore < score)
                scored.push_back({score, &entry, m_embedding->match()});
            continue;
        }
        const double score = LexicalRanking::score(queryTerms, entry.terms, &weights, weights.unseen);
        if (score > 0.0)
            scored.push_back({score, &entry, SearchHit::Match::lexical});
    }

    // Ids are unique, so score-then-id is a total order: a partial sort of the best `limit` gives exactly what a
    // stable sort of every hit followed by truncation would, without sorting (or copying) the rest.
    const auto count = std::min(scored.size(), static_cast<std::size_t>(limit));
    std::partial_sort(scored.begin(), scored.begin() + static_cast<std::ptrdiff_t>(count), scored.end(),
                      [](const Scored& a, const Scored& b) {
                          if (a.score != b.score)
                              return a.score > b.score;
                          return a.entry->document.id < b.entry->document.id;
                      });
    std::vector<SearchHit> hits;
    hits.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        hits.push_back(
            {scored[i].entry->document.id, scored[i].entry->document.title, scored[i].score, scored[i].match});
    return hits;
}

CorrectedSearch SemanticIndex::correctedSearch(std::string_view query, int limit) {
    std::lock_guard lock(m_mutex);
    query = trimmed(query);
    if (query.empty() || m_documents.empty() || limit < 1)
        return {};
    if (auto hits = searchLocked(query, limit); !hits.empty())
        return {std::move(hits), {}};

    QueryExpansion expansion;
    expansion.vocabulary.reserve(m_frequencies.size());
    for (const auto& [term, count] : m_frequencies)
        expansion.vocabulary.insert(term);
    expansion.minimumRatio = 0.82;
    auto [terms, corrections] = expansion.expand(query);
    if (corrections.empty())
        return {};

    std::string expanded;
    for (const auto& term : terms) {
        if (!expanded.empty())
            expanded += ' ';
        expanded += term;
    }
    return {searchLocked(expanded, limit), std::move(corrections)};
}

std::size_t SemanticIndex::documentCount() const {
    std::lock_guard lock(m_mutex);
    return m_documents.size();
}

std::size_t SemanticIndex::indexedDocumentWork() const {
    std::lock_guard lock(m_mutex);
    return m_indexedDocumentWork;
}

} // namespace orvane
