#include "cli/RestoreCommand.h"

namespace quillon::cli {

void RestoreCommand::configure(CLI::App& command) {
    command.add_option("BACKUP_DIR", m_backup, "A “.quillonbackup” folder")->required();
    command.add_flag("--yes", m_yes, "Restore without asking");
}

int RestoreCommand::runOnDesk(CommandContext& context, Desk& desk) {
    auto& controller = desk.controller();
    controller.requestRestore(m_backup);
    const std::string question = controller.restoreQuestion();
    if (!confirm(context, question, m_yes)) {
        controller.cancelRestore();
        return 1;
    }
    const auto result = controller.confirmRestore();
    nlohmann::ordered_json extra = nlohmann::ordered_json::object();
    if (result)
        extra = {{"sermonsRestored", result->sermonsRestored}, {"coverImagesRestored", result->coverImagesRestored}};
    return desk.report(context, extra);
}

} // namespace quillon::cli
