#include "cli/TagCommand.h"

namespace quillon::cli {

void TagCommand::configure(CLI::App& command) {
    command.add_option("TAG", m_tag, "The tag")->required();
    command.add_option("ID", m_ids, "The sermons' ids (or unique beginnings of them)")->required();
}

int TagCommand::runOnDesk(CommandContext& context, Desk& desk) {
    std::vector<model::Uuid> ids;
    for (const auto& text : m_ids)
        ids.push_back(desk.sermon(text).id);
    const std::size_t tagged = desk.controller().applyTag(m_tag, ids);
    return desk.report(context, {{"tagged", tagged}});
}

} // namespace quillon::cli
