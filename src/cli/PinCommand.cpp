#include "cli/PinCommand.h"

namespace quillon::cli {

void PinCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    command.add_flag("--off", m_off, "Unpin it");
}

int PinCommand::runOnDesk(CommandContext& context, Desk& desk) {
    desk.controller().setPinned(desk.sermon(m_sermon).id, !m_off);
    return desk.report(context);
}

} // namespace quillon::cli
