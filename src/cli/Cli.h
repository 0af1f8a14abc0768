#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace quillon::cli {

/// Parses `arguments` (without the program name), runs the chosen command and returns the exit
/// status: 0 on success, 1 on a user error, whose sentence is written to `err`.
int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

} // namespace quillon::cli
