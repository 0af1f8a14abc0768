#include "cli/SelftestCommand.h"

#include <ostream>

namespace quillon::cli {

void SelftestCommand::configure(CLI::App&) {}

int SelftestCommand::runOnDesk(CommandContext& context, Desk& desk) {
    bool allPassed = true;
    for (const auto& result : desk.controller().runSelfTest()) {
        context.out << result.line() << "\n";
        if (!result.passed) {
            context.out << result.sentence << "\n";
            allPassed = false;
        }
    }
    return allPassed ? 0 : 1;
}

} // namespace quillon::cli
