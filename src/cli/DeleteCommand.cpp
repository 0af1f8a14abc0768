#include "cli/DeleteCommand.h"

#include <algorithm>

namespace quillon::cli {

void DeleteCommand::configure(CLI::App& command) {
    command.add_option("ID", m_ids, "The sermons' ids (or unique beginnings of them)")->required();
    command.add_flag("--yes", m_yes, "Move them without asking");
}

int DeleteCommand::runOnDesk(CommandContext& context, Desk& desk) {
    std::vector<model::Uuid> ids;
    for (const auto& text : m_ids) {
        const model::Uuid id = desk.sermon(text).id;
        if (std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    }
    auto& controller = desk.controller();
    controller.requestMoveToTrash(ids);
    const std::string question = controller.trashConfirmationMessage();
    if (!confirm(context, question, m_yes)) {
        controller.cancelMoveToTrash();
        return 1;
    }
    controller.confirmMoveToTrash();
    nlohmann::ordered_json moved = nlohmann::ordered_json::array();
    for (const auto& id : ids)
        if (!controller.sermon(id))
            moved.push_back(id.text());
    return desk.report(context, {{"confirmation", question}, {"moved", moved}});
}

} // namespace quillon::cli
