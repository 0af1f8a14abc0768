#include "search/SermonSearchIndex.h"

#include "orvane/SeededHash.h"

#include <string>
#include <vector>

namespace quillon::search {
namespace {

// The threshold a semantic hit must pass when the application gives sermon search an embedding; without one the
// search is lexical and it never applies.
constexpr double sermonMinimumScore = 0.55;

std::string printedScripture(const model::SermonScripture& scripture) {
    std::string printed = scripture.bookName;
    printed += ' ';
    printed += std::to_string(scripture.chapter);
    printed += ':';
    printed += std::to_string(scripture.startVerse);
    if (scripture.endVerse != scripture.startVerse) {
        printed += '-';
        printed += std::to_string(scripture.endVerse);
    }
    return printed;
}

void appendPiece(std::vector<std::string>& pieces, std::string piece) {
    if (!piece.empty())
        pieces.push_back(std::move(piece));
}

} // namespace

SermonSearchIndex::SermonSearchIndex(std::shared_ptr<const orvane::TextEmbedding> embedding)
    : m_index(std::move(embedding), sermonMinimumScore) {}

std::vector<std::string> SermonSearchIndex::documentPieces(const model::SermonNote& sermon) {
    std::vector<std::string> pieces;
    appendPiece(pieces, sermon.notes);
    for (const auto& topic : sermon.topics) {
        appendPiece(pieces, topic.title);
        appendPiece(pieces, topic.details);
        for (const auto& subTopic : topic.subTopics) {
            appendPiece(pieces, subTopic.title);
            appendPiece(pieces, subTopic.details);
            for (const auto& scripture : subTopic.scriptures)
                appendPiece(pieces, printedScripture(scripture));
        }
    }
    // Tags are indexed too: a preacher looking for "advent" expects the sermons tagged so.
    for (const auto& tag : sermon.tags)
        appendPiece(pieces, tag);
    return pieces;
}

orvane::IndexedDocument SermonSearchIndex::document(const model::SermonNote& sermon) {
    std::string text;
    for (const auto& piece : documentPieces(sermon)) {
        if (!text.empty())
            text += ". ";
        text += piece;
    }
    return {sermon.id.text(), sermon.title, std::move(text)};
}

std::uint64_t SermonSearchIndex::fingerprint(std::span<const model::SermonNote> sermons) {
    orvane::SeededHash hash;
    for (const auto& sermon : sermons) {
        hash.combine(std::string_view(reinterpret_cast<const char*>(sermon.id.bytes.data()), sermon.id.bytes.size()));
        hash.combine(static_cast<std::uint64_t>(sermon.modifiedAt.time_since_epoch().count()));
    }
    return hash.value();
}

void SermonSearchIndex::refresh(std::span<const model::SermonNote> sermons) {
    const auto current = fingerprint(sermons);
    if (m_indexedFingerprint == current)
        return;

    std::vector<orvane::IndexedDocument> documents;
    documents.reserve(sermons.size());
    std::unordered_set<std::string> ids;
    ids.reserve(sermons.size());
    for (const auto& sermon : sermons) {
        documents.push_back(document(sermon));
        ids.insert(documents.back().id);
    }

    // The set difference walks whichever set is smaller.
    std::vector<std::string> vanished;
    if (m_indexedIDs.size() <= ids.size()) {
        for (const auto& id : m_indexedIDs)
            if (!ids.contains(id))
                vanished.push_back(id);
    } else {
        auto remaining = m_indexedIDs;
        for (const auto& id : ids)
            remaining.erase(id);
        vanished.assign(remaining.begin(), remaining.end());
    }
    if (!vanished.empty()) {
        m_index.remove(vanished);
        ++m_indexOperations;
    }
    m_index.upsert(documents);
    ++m_indexOperations;

    m_indexedFingerprint = current;
    m_indexedIDs = std::move(ids);
}

orvane::CorrectedSearch SermonSearchIndex::search(std::string_view query, int limit) {
    return m_index.correctedSearch(query, limit);
}

} // namespace quillon::search
