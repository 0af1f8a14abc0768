#include "cli/TrashCommand.h"

#include "store/SermonTrashManager.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <ostream>

namespace quillon::cli {

namespace {

/// The trashed sermon named by its full id or an unambiguous prefix of four characters or more.
store::TrashedSermon findTrashed(const std::vector<store::TrashedSermon>& trashed, const std::string& idText) {
    std::string wanted = idText;
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const store::TrashedSermon* match = nullptr;
    if (wanted.size() >= 4) {
        for (const auto& entry : trashed) {
            const std::string id = entry.sermon.id.text();
            if (id == wanted)
                return entry;
            if (id.starts_with(wanted)) {
                if (match)
                    throw UserError("The id “" + idText + "” matches more than one sermon in the trash.");
                match = &entry;
            }
        }
    }
    if (!match)
        throw UserError("No sermon in the trash has the id “" + idText + "”.");
    return *match;
}

} // namespace

void TrashCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    m_list = command.add_subcommand("list", "List the sermons in the trash, oldest first");
    m_restore = command.add_subcommand("restore", "Put a sermon back into the library");
    m_restore->add_option("ID", m_id, "The trashed sermon's id (or a unique prefix)")->required();
    m_delete = command.add_subcommand("delete", "Delete a trashed sermon permanently");
    m_delete->add_option("ID", m_id, "The trashed sermon's id (or a unique prefix)")->required();
    m_purge = command.add_subcommand("purge", "Delete every sermon that has been in the trash too long");
}

int TrashCommand::run(CommandContext& context, Library& library) {
    store::SermonTrashManager trash(library.manager(), library.preferences());

    if (m_list->parsed()) {
        const auto trashed = trash.allTrashed();
        if (context.json) {
            auto list = nlohmann::ordered_json::array();
            for (const auto& entry : trashed)
                list.push_back({{"id", entry.sermon.id.text()},
                                {"title", entry.sermon.title},
                                {"trashedAt", model::formatDateTime(entry.trashedAt)}});
            context.out << list.dump(2) << "\n";
        } else if (trashed.empty()) {
            context.out << "The trash is empty.\n";
        } else {
            for (const auto& entry : trashed)
                context.out << entry.sermon.id.text() << "  " << model::formatDateTime(entry.trashedAt) << "  "
                            << entry.sermon.title << "\n";
        }
        return 0;
    }
    if (m_restore->parsed()) {
        const store::TrashedSermon entry = findTrashed(trash.allTrashed(), m_id);
        if (!trash.restore(entry.sermon.id))
            throw UserError("Quillon could not restore “" + entry.sermon.title + "” from the trash.");
        context.out << "Restored “" << entry.sermon.title << "” from the trash.\n";
        return 0;
    }
    if (m_delete->parsed()) {
        const store::TrashedSermon entry = findTrashed(trash.allTrashed(), m_id);
        if (!trash.deletePermanently(entry.sermon.id))
            throw UserError("Quillon could not delete “" + entry.sermon.title + "”.");
        context.out << "Deleted “" << entry.sermon.title << "” permanently.\n";
        return 0;
    }
    const int removed = trash.purgeExpired();
    context.out << "Removed " << removed << (removed == 1 ? " sermon" : " sermons") << " trashed more than "
                << trash.retentionDays() << " days ago.\n";
    return 0;
}

} // namespace quillon::cli
