#include "cli/HideCommand.h"

namespace quillon::cli {

void HideCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    command.add_flag("--off", m_off, "Show it again");
}

int HideCommand::runOnDesk(CommandContext& context, Desk& desk) {
    desk.controller().setHidden(desk.sermon(m_sermon).id, !m_off);
    return desk.report(context);
}

} // namespace quillon::cli
