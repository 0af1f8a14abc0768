#include "cli/RestoreCommand.h"

#include "platform/FileError.h"
#include "store/SermonBackupManager.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void RestoreCommand::configure(CLI::App& command) {
    command.add_option("BACKUP_DIR", m_backup, "A “.quillonbackup” folder")->required();
}

int RestoreCommand::run(CommandContext& context, Library& library) {
    store::SermonBackupManager backups([&library] { return library.storage().mediaFolder(); }, library.preferences());
    store::RestoreResult result;
    try {
        result = backups.restoreInto(library.manager(), m_backup);
    } catch (const store::BackupError& error) {
        throw UserError(std::string("Restore Failed: ") + error.what());
    } catch (const platform::FileError& error) {
        throw UserError(std::string("Restore Failed: ") + error.what());
    }
    if (context.json)
        context.out << nlohmann::ordered_json{{"sermonsRestored", result.sermonsRestored},
                                              {"coverImagesRestored", result.coverImagesRestored}}
                           .dump(2)
                    << "\n";
    else
        context.out << store::restoreCompleteMessage(result) << "\n";
    return 0;
}

} // namespace quillon::cli
