#pragma once

#include "model/SermonNote.h"
#include "orvane/CorrectedSearch.h"
#include "orvane/IndexedDocument.h"
#include "orvane/SemanticIndex.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quillon::search {

/// One searchable document per sermon of the library, rebuilt only when the library has changed since the last
/// build. Sermon search is lexical unless the application hands it an embedding (the local model server's, when the
/// preacher turns it on); this module never chooses one itself.
class SermonSearchIndex {
public:
    /// A lexical index; with `embedding`, sermons and queries that have a vector are ranked by it instead, a
    /// semantic hit scoring strictly above 0.55.
    explicit SermonSearchIndex(std::shared_ptr<const orvane::TextEmbedding> embedding = nullptr);

    /// Brings the index up to date with `sermons` (the library in its own order). An unchanged library costs one pass
    /// of hashing and no index work; a changed one removes the sermons that disappeared and re-upserts the rest,
    /// where the index skips every document whose text did not change.
    void refresh(std::span<const model::SermonNote> sermons);

    /// Searches as typed, then once more with spelling corrections if that found nothing. The hits carry the sermon
    /// ids (upper-case UUID text) and titles; `QueryCorrection::bannerText` of the corrections gives the notice.
    orvane::CorrectedSearch search(std::string_view query, int limit);

    /// The sermon as one document: its notes, then each topic's title and details, each sub-topic's title, details
    /// and printed scriptures, then its tags; empty pieces dropped, ". " between the rest.
    static orvane::IndexedDocument document(const model::SermonNote& sermon);
    /// The non-empty pieces of the document's text, in order, before they are joined.
    static std::vector<std::string> documentPieces(const model::SermonNote& sermon);
    /// A running hash over every sermon's id and `modifiedAt`, in library order. Valid within this process only.
    static std::uint64_t fingerprint(std::span<const model::SermonNote> sermons);

    /// How many remove and upsert calls the index has received: a refresh of an unchanged library adds none.
    std::size_t indexOperationCount() const { return m_indexOperations; }
    const orvane::SemanticIndex& index() const { return m_index; }

private:
    orvane::SemanticIndex m_index;
    std::optional<std::uint64_t> m_indexedFingerprint;
    std::unordered_set<std::string> m_indexedIDs;
    std::size_t m_indexOperations = 0;
};

} // namespace quillon::search
