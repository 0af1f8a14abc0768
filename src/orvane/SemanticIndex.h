#pragma once

#include "orvane/CorrectedSearch.h"
#include "orvane/IndexedDocument.h"
#include "orvane/InverseDocumentFrequency.h"
#include "orvane/SearchHit.h"
#include "orvane/StringLookup.h"
#include "orvane/TextEmbedding.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

/// An in-memory search index over plain documents. Documents with an embedding vector are ranked by cosine
/// similarity to the query's vector; every other document (or every document, when there is no embedding or the
/// query has no vector) is ranked lexically with inverse-document-frequency weights. Nothing is persisted: the owner
/// rebuilds the index from its own data. Every operation takes one lock, so callers may be on any thread.
class SemanticIndex {
public:
    /// An index on the platform's English sentence embedding; purely lexical where the platform has none.
    explicit SemanticIndex(double minimumScore);
    /// An index on `embedding`; purely lexical when it is null. A semantic hit must score strictly above
    /// `minimumScore`.
    SemanticIndex(std::shared_ptr<const TextEmbedding> embedding, double minimumScore);

    SemanticIndex(const SemanticIndex&) = delete;
    SemanticIndex& operator=(const SemanticIndex&) = delete;

    /// Adds new documents and replaces changed ones, by `id`. A document whose embedding text is unchanged is left
    /// alone (no new tokens, no new vector).
    void upsert(const std::vector<IndexedDocument>& documents);
    /// Drops the documents with these ids; unknown ids are ignored.
    void remove(const std::vector<std::string>& ids);

    /// At most `limit` hits, best first; equal scores in ascending order of `documentID`.
    std::vector<SearchHit> search(std::string_view query, int limit);
    /// Searches as typed; when that finds nothing, retries once with the query corrected and expanded against the
    /// index's own vocabulary and reports the corrections.
    CorrectedSearch correctedSearch(std::string_view query, int limit);

    std::size_t documentCount() const;
    /// How many documents have been tokenised (and embedded) since the index was created: a measure of indexing
    /// work that does not depend on time.
    std::size_t indexedDocumentWork() const;

private:
    std::vector<SearchHit> searchLocked(std::string_view query, int limit);
    std::vector<std::uint32_t> termIDs(std::string_view text);
    void countTerms(const std::vector<std::uint32_t>& terms, int delta);
    const InverseDocumentFrequency& weighting();

    /// One indexed document with everything derived from it. Keeping them together (rather than in maps keyed by
    /// id) lets a search walk the documents in order without a lookup per document.
    struct Entry {
        IndexedDocument document;
        /// A hash of the embedding text, to skip re-tokenising and re-embedding unchanged documents.
        std::uint64_t signature = 0;
        /// The document's lexical terms, as sorted ids into `m_termTexts`: a search tests membership by binary
        /// search over a few hundred contiguous integers instead of probing one hash table per document.
        std::vector<std::uint32_t> terms;
        /// The document's embedding, when there is one.
        std::optional<std::vector<double>> vector;
    };

    mutable std::mutex m_mutex;
    std::shared_ptr<const TextEmbedding> m_embedding;
    /// The documents in the order they were first given.
    std::vector<Entry> m_documents;
    /// Where each id sits in `m_documents`.
    std::unordered_map<std::string, std::size_t> m_positions;
    /// Every term ever seen gets a stable id; ids are never reused, so entries never need renumbering.
    StringMap<std::uint32_t> m_termIDs;
    std::vector<std::string> m_termTexts;
    /// In how many documents each term occurs, by term id. A term with 0 is not part of the vocabulary.
    std::vector<int> m_frequencies;
    /// Weights derived from `m_frequencies`; cleared when the documents change, rebuilt on demand.
    std::optional<InverseDocumentFrequency> m_cachedWeighting;
    double m_minimumScore;
    std::size_t m_indexedDocumentWork = 0;
};

} // namespace orvane
