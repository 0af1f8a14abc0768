#pragma once

#include "cli/Command.h"

#include <filesystem>

namespace quillon::cli {

/// Prints the location of a file a command wrote: the path alone, or {"path": …} with --json.
void printOutputPath(CommandContext& context, const std::filesystem::path& file);

} // namespace quillon::cli
