#include "cli/ListCommand.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

namespace quillon::cli {

void ListCommand::configure(CLI::App& command) {
    command.add_flag("--all", m_includeHidden, "Include hidden sermons");
}

int ListCommand::run(CommandContext& context, Library& library) {
    auto& manager = library.manager();
    const auto& pinned = manager.pinnedSermonIds();
    const auto& hidden = manager.hiddenSermonIds();

    std::vector<const model::SermonNote*> shown;
    for (const auto& sermon : manager.sermons())
        if (m_includeHidden || !hidden.contains(sermon.id))
            shown.push_back(&sermon);
    std::sort(shown.begin(), shown.end(), [&](const model::SermonNote* a, const model::SermonNote* b) {
        bool aPinned = pinned.contains(a->id), bPinned = pinned.contains(b->id);
        if (aPinned != bPinned)
            return aPinned;
        if (a->modifiedAt != b->modifiedAt)
            return a->modifiedAt > b->modifiedAt;
        return a->id < b->id;
    });

    if (context.json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto* sermon : shown)
            list.push_back({{"id", sermon->id.text()},
                            {"title", sermon->title},
                            {"modifiedAt", model::formatDateTime(sermon->modifiedAt)},
                            {"pinned", pinned.contains(sermon->id)},
                            {"hidden", hidden.contains(sermon->id)}});
        context.out << list.dump(2) << "\n";
        return 0;
    }
    if (shown.empty()) {
        context.out << "No sermons yet in " << library.storage().sermonsFolder().string() << ".\n"
                    << "Create one with: quillon new --title \"Title\"\n";
        return 0;
    }
    for (const auto* sermon : shown)
        context.out << sermon->id.text() << "  " << model::formatDateTime(sermon->modifiedAt) << "  "
                    << (pinned.contains(sermon->id) ? "pinned" : "-     ") << "  " << sermon->title << "\n";
    return 0;
}

} // namespace quillon::cli
