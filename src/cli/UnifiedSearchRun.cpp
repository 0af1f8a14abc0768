#include "cli/UnifiedSearchRun.h"

#include "cli/Library.h"
#include "intelligence/CommentarySearchSource.h"
#include "intelligence/LocalModelEmbedding.h"
#include "scripture/BibleLoader.h"
#include "search/SermonSearchIndex.h"
#include "search/UnifiedSearch.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

namespace {

/// The text a hit shows under its title: the verse, the note's start, the sermon's snippet.
std::string hitText(const search::SearchHit& hit) {
    if (const auto* verse = hit.verse())
        return verse->verse.text;
    if (const auto* entry = hit.referenceWork())
        return entry->snippet;
    return hit.sermonHit()->snippet;
}

std::string groupHeading(search::SearchGroup group) {
    std::string heading(search::rawValue(group));
    heading[0] = static_cast<char>(heading[0] - 'a' + 'A');
    return heading;
}

search::UnifiedSearch sourcesFor(Library& library) {
    search::UnifiedSearch unified;
    unified.setSource(search::SearchGroup::scripture,
                      search::UnifiedSearch::bibleSource(std::make_shared<scripture::BibleLoader>()));
    unified.setSource(search::SearchGroup::commentaries,
                      intelligence::commentarySearchSource(std::make_shared<intelligence::CommentaryLibrary>()));
    auto index = std::make_shared<search::SermonSearchIndex>(
        intelligence::LocalModelEmbedding::forSearch(library.preferences()));
    index->refresh(library.manager().sermons());
    unified.setSource(search::SearchGroup::sermons,
                      search::UnifiedSearch::sermonSource(
                          index, [&library](const model::Uuid& id) { return library.manager().sermon(id); }));
    return unified;
}

} // namespace

std::vector<search::SearchGroup> searchGroupsNamed(const std::string& list) {
    if (list == "all")
        return {search::allSearchGroups.begin(), search::allSearchGroups.end()};
    std::vector<search::SearchGroup> groups;
    for (std::size_t start = 0; start <= list.size();) {
        std::size_t comma = std::min(list.find(',', start), list.size());
        std::string name = list.substr(start, comma - start);
        name.erase(0, name.find_first_not_of(' '));
        name.erase(name.find_last_not_of(' ') + 1);
        if (!name.empty()) {
            auto group = search::searchGroupFromRawValue(name);
            if (!group)
                throw UserError("Quillon does not know the search group “" + name +
                                "”. Groups: scripture, commentaries, dictionaries, historical, sermons, or all.");
            groups.push_back(*group);
        }
        start = comma + 1;
    }
    return groups;
}

int runUnifiedSearch(CommandContext& context, Library& library, const std::string& query,
                     const std::vector<search::SearchGroup>& focus, int limitPerGroup) {
    const search::UnifiedSearch unified = sourcesFor(library);
    const auto groups = unified.search(query, focus, static_cast<std::size_t>(limitPerGroup));
    if (context.json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto& group : groups) {
            nlohmann::ordered_json hits = nlohmann::ordered_json::array();
            for (const auto& hit : group.hits)
                hits.push_back({{"kind", std::string(search::rawValue(hit.kind()))},
                                {"id", hit.id()},
                                {"title", hit.title()},
                                {"text", hitText(hit)}});
            list.push_back({{"group", std::string(search::rawValue(group.group))}, {"hits", hits}});
        }
        context.out << nlohmann::ordered_json{{"query", query}, {"groups", list}}.dump(2) << "\n";
        return 0;
    }
    if (groups.empty()) {
        context.out << "Nothing matches “" << query << "”.\n";
        return 0;
    }
    for (const auto& group : groups) {
        context.out << groupHeading(group.group) << "\n";
        for (const auto& hit : group.hits) {
            const std::string text = hitText(hit);
            context.out << "  " << hit.title() << (text.empty() ? "" : "  —  " + text) << "\n";
        }
    }
    return 0;
}

} // namespace quillon::cli
