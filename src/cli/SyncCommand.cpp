#include "cli/SyncCommand.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

int SyncCommand::run(CommandContext& context, Library& library) {
    auto& manager = library.manager();
    manager.syncFromCloud();
    if (context.json)
        context.out << nlohmann::ordered_json{{"status", manager.lastSyncStatus()},
                                              {"sermons", manager.sermons().size()},
                                              {"usingSyncFolder", library.storage().isUsingCloud()}}
                           .dump(2)
                    << "\n";
    else
        context.out << manager.lastSyncStatus() << "\n";
    return 0;
}

} // namespace quillon::cli
