#include "cli/SearchCommand.h"

#include "cli/UnifiedSearchRun.h"
#include "intelligence/LocalModelEmbedding.h"
#include "orvane/QueryCorrection.h"
#include "search/SermonSearchDisplayHit.h"
#include "search/SermonSearchIndex.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void SearchCommand::configure(CLI::App& command) {
    command.add_option("query", m_words, "Words to look for")->required()->type_name("QUERY");
    command.add_option("--limit", m_limit, "Most hits to show")
        ->default_val(defaultLimit)
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    command.add_option("--in", m_groups, "Search these groups instead: scripture, commentaries, sermons, … or all")
        ->type_name("GROUPS");
}

int SearchCommand::run(CommandContext& context, Library& library) {
    std::string query;
    for (const auto& word : m_words)
        query += (query.empty() ? "" : " ") + word;
    if (!m_groups.empty())
        return runUnifiedSearch(context, library, query, searchGroupsNamed(m_groups), m_limit);

    search::SermonSearchIndex index(intelligence::LocalModelEmbedding::forSearch(library.preferences()));
    index.refresh(library.manager().sermons());
    const auto result = index.search(query, m_limit);
    const auto banner = orvane::QueryCorrection::bannerText(result.corrections);

    std::vector<std::pair<orvane::SearchHit, search::SermonSearchDisplayHit>> hits;
    for (const auto& hit : result.hits) {
        const auto id = model::Uuid::parse(hit.documentID);
        if (const model::SermonNote* sermon = id ? library.manager().sermon(*id) : nullptr)
            hits.emplace_back(hit, search::SermonSearchDisplayHit::make(hit, *sermon, query, result.corrections));
    }

    if (context.json) {
        nlohmann::ordered_json corrections = nlohmann::ordered_json::array();
        for (const auto& correction : result.corrections)
            corrections.push_back({{"typed", correction.typed},
                                   {"used", correction.used},
                                   {"kind", std::string(orvane::rawValue(correction.kind))}});
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto& [hit, display] : hits)
            list.push_back({{"id", display.sermonID.text()},
                            {"title", display.title},
                            {"subtitle", display.subtitle},
                            {"snippet", display.snippet},
                            {"score", display.score},
                            {"match", std::string(orvane::rawValue(hit.match))},
                            {"matchTier", std::string(search::rawValue(display.matchTier))}});
        nlohmann::ordered_json output{{"query", query},
                                      {"banner", banner ? nlohmann::ordered_json(*banner) : nullptr},
                                      {"corrections", corrections},
                                      {"hits", list}};
        context.out << output.dump(2) << "\n";
        return 0;
    }

    if (banner)
        context.out << *banner << "\n";
    if (hits.empty()) {
        context.out << "No sermons match “" << query << "”.\n";
        return 0;
    }
    for (const auto& [hit, display] : hits) {
        context.out << fmt::format("{:.2f}  {}  —  {}", display.score, display.title, display.subtitle);
        if (!display.snippet.empty())
            context.out << "  —  " << display.snippet;
        context.out << "\n";
    }
    return 0;
}

} // namespace quillon::cli
