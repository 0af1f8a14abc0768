#include "cli/OpenCommand.h"

namespace quillon::cli {

void OpenCommand::configure(CLI::App& command) {
    command.add_option("FILE", m_file, "A .quillet document")->required();
}

int OpenCommand::runOnDesk(CommandContext& context, Desk& desk) {
    const auto opened = desk.controller().openDocument(m_file);
    return desk.report(context,
                       opened ? nlohmann::ordered_json{{"id", opened->text()}} : nlohmann::ordered_json::object());
}

} // namespace quillon::cli
