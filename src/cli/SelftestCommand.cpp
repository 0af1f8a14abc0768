#include "cli/SelftestCommand.h"

#include "cli/ExportVerses.h"
#include "export/LibraryReferences.h"
#include "export/SelfTest.h"
#include "model/DateTime.h"

#include <ostream>

namespace quillon::cli {

void SelftestCommand::configure(CLI::App&) {}

int SelftestCommand::execute(CommandContext& context) {
    const auto verses = exportVerseSource();
    const exports::SelfTest selfTest(exports::libraryReferenceRecognizer(), *verses);
    bool allPassed = true;
    for (const auto& result : selfTest.run(model::toDateTime(std::chrono::system_clock::now()))) {
        context.out << result.line() << "\n";
        if (!result.passed) {
            context.out << result.sentence << "\n";
            allPassed = false;
        }
    }
    return allPassed ? 0 : 1;
}

} // namespace quillon::cli
