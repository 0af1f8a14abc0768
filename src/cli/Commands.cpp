#include "cli/Commands.h"

namespace quillon::cli {

std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    // One line per command; keep related commands together.
    return commands;
}

} // namespace quillon::cli
