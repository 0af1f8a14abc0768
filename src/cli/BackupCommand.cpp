#include "cli/BackupCommand.h"

#include "platform/FileError.h"
#include "store/SermonBackupManager.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void BackupCommand::configure(CLI::App& command) {
    command.add_option("DIR", m_destination, "The folder to put the backup in")->required();
    command.add_flag("--yes", m_yes, "Continue even when the location is low on storage");
}

int BackupCommand::run(CommandContext& context, Library& library) {
    const auto& sermons = library.manager().sermons();
    if (sermons.empty())
        throw UserError("Nothing to Back Up: There are no sermons in your library yet.");

    store::SermonBackupManager backups([&library] { return library.storage().mediaFolder(); }, library.preferences());
    if (auto available = backups.freeSpaceWarning(m_destination)) {
        context.err << store::lowOnStorageTitle << ": " << store::lowStorageBeforeBackupMessage(*available) << "\n";
        if (!m_yes)
            throw UserError("Run the backup again with --yes to continue, or choose a different folder.");
    }
    try {
        const auto folder = backups.backUp(sermons, m_destination);
        if (context.json)
            context.out << nlohmann::ordered_json{{"backup", folder.string()}, {"sermonCount", sermons.size()}}.dump(2)
                        << "\n";
        else
            context.out << folder.string() << "\n";
    } catch (const store::BackupError& error) {
        throw UserError(std::string("Backup Failed: ") + error.what());
    } catch (const platform::FileError& error) {
        throw UserError(std::string("Backup Failed: ") + error.what());
    }
    return 0;
}

} // namespace quillon::cli
