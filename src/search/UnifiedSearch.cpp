#include "search/UnifiedSearch.h"

#include "scripture/BibleLoader.h"
#include "search/SermonSearchIndex.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <exception>
#include <unordered_set>

namespace quillon::search {

void UnifiedSearch::setSource(SearchGroup group, Source source) {
    if (source)
        m_sources[group] = std::move(source);
    else
        m_sources.erase(group);
}

std::vector<SearchResultGroup> UnifiedSearch::search(std::string_view query, std::span<const SearchGroup> focus,
                                                     std::size_t limitPerGroup) const {
    std::vector<SearchResultGroup> groups;
    if (limitPerGroup == 0)
        return groups;
    std::unordered_set<std::string> seen;
    for (SearchGroup group : allSearchGroups) {
        auto source = m_sources.find(group);
        if (source == m_sources.end() || std::find(focus.begin(), focus.end(), group) == focus.end())
            continue;
        std::vector<SearchHit> found;
        try {
            found = source->second(query, limitPerGroup);
        } catch (const std::exception& failure) {
            spdlog::error("The {} search failed: {}", rawValue(group), failure.what());
            continue;
        }
        SearchResultGroup result{group, {}};
        for (SearchHit& hit : found)
            if (hit.group() == group && result.hits.size() < limitPerGroup && seen.insert(hit.id()).second)
                result.hits.push_back(std::move(hit));
        if (!result.hits.empty())
            groups.push_back(std::move(result));
    }
    return groups;
}

UnifiedSearch::Source UnifiedSearch::bibleSource(std::shared_ptr<scripture::BibleLoader> loader,
                                                 std::vector<model::BibleVersion> versions) {
    return [loader = std::move(loader), versions = std::move(versions)](std::string_view query, std::size_t limit) {
        std::vector<SearchHit> hits;
        for (auto& result : loader->search(query, versions, limit))
            hits.push_back(SearchHit::scripture(std::move(result)));
        return hits;
    };
}

UnifiedSearch::Source
UnifiedSearch::sermonSource(std::shared_ptr<SermonSearchIndex> index,
                            std::function<const model::SermonNote*(const model::Uuid&)> sermonWithID) {
    return [index = std::move(index), sermonWithID = std::move(sermonWithID)](std::string_view query,
                                                                              std::size_t limit) {
        std::vector<SearchHit> hits;
        const auto found = index->search(query, static_cast<int>(std::min<std::size_t>(limit, 1000)));
        for (const auto& hit : found.hits) {
            const auto id = model::Uuid::parse(hit.documentID);
            if (const model::SermonNote* sermon = id ? sermonWithID(*id) : nullptr)
                hits.push_back(SearchHit::sermon(SermonSearchDisplayHit::make(hit, *sermon, query, found.corrections)));
        }
        return hits;
    };
}

} // namespace quillon::search
