#include "cli/MeshSermonTools.h"

#include "intelligence/LocalModelEmbedding.h"
#include "search/SermonSearchDisplayHit.h"

namespace quillon::cli {

MeshSermonTools::MeshSermonTools(Library& library)
    : m_library(library), m_index(intelligence::LocalModelEmbedding::forSearch(library.preferences())) {}

model::SermonNote MeshSermonTools::open(std::string_view idText) {
    std::lock_guard lock(m_mutex);
    m_library.manager().load();
    const model::SermonNote& sermon = m_library.find(idText);
    m_current = sermon.id;
    return sermon;
}

std::optional<model::SermonNote> MeshSermonTools::current() const {
    std::lock_guard lock(m_mutex);
    const model::SermonNote* sermon = m_current ? m_library.manager().sermon(*m_current) : nullptr;
    return sermon ? std::optional(*sermon) : std::nullopt;
}

mesh::ToolAnswer MeshSermonTools::answer(const std::string& tool, const std::string& query) {
    std::lock_guard lock(m_mutex);
    if (tool == "currentSermon")
        return mesh::ToolAnswer::found(currentSermon());
    if (tool == "searchSermons")
        return mesh::ToolAnswer::found(searchSermons(query));
    return mesh::ToolAnswer::failed("Quillon has no tool named \"" + tool + "\".");
}

orvane::ToolResult MeshSermonTools::currentSermon() const {
    const model::SermonNote* sermon = m_current ? m_library.manager().sermon(*m_current) : nullptr;
    if (!sermon)
        return orvane::ToolResult::empty();
    // The text the sermon search reads: notes, points, sub-points with their scriptures, tags.
    std::string text = search::SermonSearchIndex::document(*sermon).text;
    return {{{sermon->title, text}}};
}

orvane::ToolResult MeshSermonTools::searchSermons(const std::string& query) {
    const auto& sermons = m_library.manager().sermons();
    m_index.refresh(sermons);
    const auto found = m_index.search(query, searchLimit);
    orvane::ToolResult result;
    for (const auto& hit : found.hits) {
        const model::SermonNote* sermon = nullptr;
        if (auto id = model::Uuid::parse(hit.documentID))
            sermon = m_library.manager().sermon(*id);
        if (!sermon)
            continue;
        auto display = search::SermonSearchDisplayHit::make(hit, *sermon, query, found.corrections);
        // A sermon found by its title alone has no sentence to show; its series and date stand in.
        result.passages.push_back({display.title, display.snippet.empty() ? display.subtitle : display.snippet});
    }
    return result;
}

} // namespace quillon::cli
