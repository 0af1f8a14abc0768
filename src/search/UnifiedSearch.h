#pragma once

#include "model/BibleVersion.h"
#include "model/SermonNote.h"
#include "search/SearchGroup.h"
#include "search/SearchHit.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::search {

class SermonSearchIndex;

/// The hits of one group, best first.
struct SearchResultGroup {
    SearchGroup group = SearchGroup::scripture;
    std::vector<SearchHit> hits;

    bool operator==(const SearchResultGroup&) const = default;
};

/// The search field's search over the Bible, the reference works and the preacher's sermons,
/// answered group by group. Each group's source is handed in: the commentaries and dictionaries
/// live in modules above this one, and the desktop and the command line choose what to offer.
/// Never throws: a source that fails gives its group no hits.
class UnifiedSearch {
public:
    /// Up to `limit` hits of one group for the query, best first.
    using Source = std::function<std::vector<SearchHit>(std::string_view query, std::size_t limit)>;

    void setSource(SearchGroup group, Source source);
    bool hasSource(SearchGroup group) const { return m_sources.contains(group); }

    /// The groups of `focus` (all groups unless narrowed) that found something, in the order of
    /// `allSearchGroups`, each with at most `limitPerGroup` hits. A hit a source files under
    /// another group is left out, and so is a hit whose id an earlier hit already has.
    std::vector<SearchResultGroup> search(std::string_view query, std::span<const SearchGroup> focus = allSearchGroups,
                                          std::size_t limitPerGroup = 20) const;

    /// Verses from the Bible search box's stages (reference, topic, full text) in `versions`.
    static Source bibleSource(std::shared_ptr<scripture::BibleLoader> loader,
                              std::vector<model::BibleVersion> versions = {});
    /// Sermons from `index` (refreshed by the caller), shown with the sermon `sermonWithID` finds.
    static Source sermonSource(std::shared_ptr<SermonSearchIndex> index,
                               std::function<const model::SermonNote*(const model::Uuid&)> sermonWithID);

private:
    std::map<SearchGroup, Source> m_sources;
};

} // namespace quillon::search
