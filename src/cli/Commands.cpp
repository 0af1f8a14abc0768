#include "cli/Commands.h"

#include "cli/CommentaryCommand.h"
#include "cli/ModelStatusCommand.h"

namespace quillon::cli {

std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    // One line per command; keep related commands together.
    commands.push_back(std::make_unique<ModelStatusCommand>());
    commands.push_back(std::make_unique<CommentaryCommand>());
    return commands;
}

} // namespace quillon::cli
