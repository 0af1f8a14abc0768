#include "cli/VersionsCommand.h"

#include "cli/RelativeTime.h"
#include "platform/Clock.h"
#include "store/SermonVersionHistory.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <ostream>

namespace quillon::cli {

namespace {

const store::VersionSnapshot& findSnapshot(const std::vector<store::VersionSnapshot>& snapshots,
                                           const std::string& idText) {
    std::string wanted = idText;
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const store::VersionSnapshot* match = nullptr;
    if (wanted.size() >= 4) {
        for (const auto& snapshot : snapshots) {
            const std::string id = snapshot.id.text();
            if (id == wanted)
                return snapshot;
            if (id.starts_with(wanted)) {
                if (match)
                    throw UserError("The snapshot id “" + idText + "” matches more than one version.");
                match = &snapshot;
            }
        }
    }
    if (!match)
        throw UserError("That sermon has no version with the id “" + idText + "”.");
    return *match;
}

} // namespace

void VersionsCommand::configure(CLI::App& command) {
    command.add_option("ID", m_id, "The sermon's id (or a unique prefix of it)");
    m_restore = command.add_subcommand("restore", "Put an earlier version of a sermon back");
    m_restore->add_option("ID", m_restoreId, "The sermon's id (or a unique prefix of it)")->required();
    m_restore->add_option("SNAPSHOT", m_snapshotId, "The version's id from `versions ID`")->required();
}

int VersionsCommand::run(CommandContext& context, Library& library) {
    store::SermonVersionHistory& history = library.versions();
    const auto now = model::toDateTime(platform::SystemClock::shared().now());

    if (m_restore->parsed()) {
        const model::SermonNote current = library.find(m_restoreId);
        const auto snapshots = history.snapshots(current.id);
        const store::VersionSnapshot& snapshot = findSnapshot(snapshots, m_snapshotId);
        // The state being replaced is kept first, whatever the snapshot interval, so a restore
        // can itself be undone from the history.
        history.recordSnapshotNow(current);
        library.manager().update(snapshot.sermon);
        context.out << "Restored “" << current.title << "” to the version from " << relativeTime(snapshot.savedAt, now)
                    << ".\n";
        return 0;
    }

    if (m_id.empty())
        throw UserError("Name the sermon whose versions you want to see: quillon versions ID.");
    const model::SermonNote& sermon = library.find(m_id);
    const auto snapshots = history.snapshots(sermon.id);
    if (context.json) {
        auto list = nlohmann::ordered_json::array();
        for (const auto& snapshot : snapshots)
            list.push_back({{"id", snapshot.id.text()},
                            {"savedAt", model::formatDateTime(snapshot.savedAt)},
                            {"title", snapshot.sermon.title}});
        context.out << list.dump(2) << "\n";
        return 0;
    }
    if (snapshots.empty()) {
        context.out << "“" << sermon.title << "” has no earlier versions yet.\n";
        return 0;
    }
    for (const auto& snapshot : snapshots)
        context.out << snapshot.id.text() << "  " << relativeTime(snapshot.savedAt, now) << "  "
                    << snapshot.sermon.title << "\n";
    return 0;
}

} // namespace quillon::cli
