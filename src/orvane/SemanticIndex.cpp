#include "orvane/SemanticIndex.h"

#include "orvane/AsciiText.h"
#include "orvane/LexicalRanking.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/QueryExpansion.h"
#include "orvane/SeededHash.h"
#include "orvane/SentenceEmbedding.h"
#include "orvane/VectorMath.h"

#include <algorithm>

namespace orvane {
namespace {

using ascii::trimmed;

} // namespace

SemanticIndex::SemanticIndex(double minimumScore) : SemanticIndex(SentenceEmbedding::english(), minimumScore) {}

SemanticIndex::SemanticIndex(std::shared_ptr<const TextEmbedding> embedding, double minimumScore)
    : m_embedding(std::move(embedding)), m_minimumScore(minimumScore) {}

void SemanticIndex::upsert(const std::vector<IndexedDocument>& documents) {
    std::lock_guard lock(m_mutex);
    // The changed documents are embedded together after the loop: one batch costs an embedding service one round trip
    // instead of one per document.
    std::vector<std::string> embeddingTexts;
    std::vector<std::size_t> embeddedPositions;
    for (const auto& document : documents) {
        auto embeddingText = compositeText(document);
        const auto signature = SeededHash::of(embeddingText);
        const auto position = m_positions.find(document.id);
        if (position != m_positions.end() && m_documents[position->second].signature == signature)
            continue;

        Entry entry{document, signature, termIDs(embeddingText), std::nullopt};
        countTerms(entry.terms, +1);
        std::size_t at = m_documents.size();
        if (position != m_positions.end()) {
            at = position->second;
            countTerms(m_documents[at].terms, -1);
            m_documents[at] = std::move(entry);
        } else {
            m_positions.emplace(document.id, at);
            m_documents.push_back(std::move(entry));
        }
        if (m_embedding) {
            embeddingTexts.push_back(std::move(embeddingText));
            embeddedPositions.push_back(at);
        }
        ++m_indexedDocumentWork;
        m_cachedWeighting.reset();
    }
    if (embeddingTexts.empty())
        return;
    auto vectors = m_embedding->vectors(embeddingTexts);
    // A document given twice in one batch sits at one position; its later text (and vector) wins, as it did above.
    for (std::size_t i = 0; i < embeddedPositions.size() && i < vectors.size(); ++i)
        m_documents[embeddedPositions[i]].vector = std::move(vectors[i]);
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

std::vector<std::uint32_t> SemanticIndex::termIDs(std::string_view text) {
    std::vector<std::uint32_t> ids;
    LexicalTokenizer::forEachToken(text, 2, true, [&](std::string_view token) {
        auto found = m_termIDs.find(token);
        if (found == m_termIDs.end()) {
            found = m_termIDs.emplace(std::string(token), static_cast<std::uint32_t>(m_termTexts.size())).first;
            m_termTexts.emplace_back(token);
            m_frequencies.push_back(0);
        }
        ids.push_back(found->second);
    });
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

void SemanticIndex::countTerms(const std::vector<std::uint32_t>& terms, int delta) {
    for (const auto id : terms)
        m_frequencies[id] += delta;
}

const InverseDocumentFrequency& SemanticIndex::weighting() {
    if (!m_cachedWeighting) {
        std::unordered_map<std::string, int> frequencies;
        frequencies.reserve(m_termTexts.size());
        for (std::size_t id = 0; id < m_termTexts.size(); ++id)
            if (m_frequencies[id] > 0)
                frequencies.emplace(m_termTexts[id], m_frequencies[id]);
        m_cachedWeighting = InverseDocumentFrequency::make(m_documents.size(), frequencies);
    }
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

    // The lexical side is prepared once per query: each distinct term's weight and id (none for a term no document
    // holds). This is LexicalRanking::score over the terms the index keeps, summed in the same order.
    const auto& weights = weighting();
    std::vector<std::pair<std::uint32_t, double>> heldTerms;
    double total = 0.0;
    for (const auto& term : LexicalRanking::terms(query)) {
        const double weight = weights.weight(term, weights.unseen);
        total += weight;
        if (const auto id = m_termIDs.find(term); id != m_termIDs.end() && m_frequencies[id->second] > 0)
            heldTerms.emplace_back(id->second, weight);
    }

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
        double matched = 0.0;
        for (const auto& [id, weight] : heldTerms)
            if (std::binary_search(entry.terms.begin(), entry.terms.end(), id))
                matched += weight;
        const double score = total > 0.0 ? matched / total : 0.0;
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
    expansion.vocabulary.reserve(m_termTexts.size());
    for (std::size_t id = 0; id < m_termTexts.size(); ++id)
        if (m_frequencies[id] > 0)
            expansion.vocabulary.insert(m_termTexts[id]);
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
