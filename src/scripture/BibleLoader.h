#pragma once

#include "model/BibleVersion.h"
#include "scripture/BibleResourceBundle.h"
#include "scripture/BibleSearchResult.h"
#include "scripture/ScriptureReference.h"
#include "scripture/WordIndex.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// Reads the Bible text files, caches each version's verses and word index for the life of the
/// program, looks verses up by reference and answers the Bible search box. Any thread may call it.
/// Lookups never fail loudly: a missing file, unknown book or verse out of range is an empty result.
class BibleLoader {
public:
    explicit BibleLoader(BibleResourceBundle resourceBundle = BibleResourceBundle::standard());

    /// True when the version's text file is present now (checked afresh on every call).
    bool isAvailable(model::BibleVersion version) const;
    /// The version's verses, read and cached on first use. A missing or unreadable file gives an
    /// empty dictionary that is not cached, so a file added later is picked up.
    std::shared_ptr<const VerseDictionary> loadVerses(model::BibleVersion version);
    /// The version's word index, built and cached on first use.
    std::shared_ptr<const WordIndex> wordIndex(model::BibleVersion version);

    /// The verses of one reference in each version, version by version, in the order of the
    /// reference's verses (or the whole chapter). Verses a version lacks are skipped.
    std::vector<BibleSearchResult> verses(const ScriptureReference& reference,
                                          const std::vector<model::BibleVersion>& versions);
    /// The Bible search box: a reference, then a topic ("verses about grace"), then full text with
    /// "quoted phrases", AND/OR/NOT and -terms. An empty version list means KJV alone.
    std::vector<BibleSearchResult> search(std::string_view query, std::vector<model::BibleVersion> versions,
                                          std::size_t limit);

    const BibleResourceBundle& resourceBundle() const { return m_resourceBundle; }

    /// Reads the text-file format: "<abbreviation> <chapter>:<verse>|<text>" per line; lines that
    /// do not fit are skipped. Nothing when the bytes are not UTF-8.
    static std::optional<VerseDictionary> parseVerseFile(std::string_view bytes);

private:
    std::vector<BibleSearchResult> topicResults(std::string_view query, model::BibleVersion version);
    std::vector<BibleSearchResult> fullTextResults(std::string_view query,
                                                   const std::vector<model::BibleVersion>& versions, std::size_t limit);

    std::map<model::BibleVersion, std::shared_ptr<const VerseDictionary>> m_cache;
    std::map<model::BibleVersion, std::shared_ptr<const WordIndex>> m_wordIndexCache;
    /// Guards both caches, and nothing else: reading, parsing and indexing run outside it.
    mutable std::mutex m_stateLock;
    BibleResourceBundle m_resourceBundle;
};

} // namespace quillon::scripture
