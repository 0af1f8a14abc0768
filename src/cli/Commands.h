#pragma once

#include "cli/Command.h"

#include <memory>
#include <vector>

namespace quillon::cli {

/// Every subcommand, in the order `quillon --help` lists them.
std::vector<std::unique_ptr<Command>> allCommands();

} // namespace quillon::cli
