#include "cli/CheckQuotesCommand.h"

#include "cli/ExportVerses.h"
#include "cli/Library.h"
#include "intelligence/ScriptureQuoteChecker.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void CheckQuotesCommand::configure(CLI::App& command) {
    command.add_option("id", m_id, "The sermon's id (or its first characters)")->required();
}

int CheckQuotesCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote& sermon = library.find(m_id);
    std::shared_ptr<exports::VerseTextSource> verses = exportVerseSource();
    intelligence::ScriptureQuoteChecker checker(
        [verses](const model::SermonScripture& scripture) -> std::optional<std::string> {
            exports::PassageText passage = verses->passage(scripture);
            if (!passage.versionAvailable)
                return std::nullopt;
            return passage.text;
        });
    std::vector<intelligence::ScriptureQuoteChecker::Finding> findings = checker.check(sermon);

    if (context.json) {
        nlohmann::ordered_json json = nlohmann::json::array();
        for (const auto& finding : findings)
            json.push_back({{"subtopic", finding.subtopicTitle},
                            {"quotation", finding.quotation},
                            {"message", finding.message()}});
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (findings.empty()) {
        context.out << "Every quotation matches the verses attached beside it.\n";
        return 0;
    }
    for (const auto& finding : findings)
        context.out << finding.subtopicTitle << ": “" << finding.quotation << "”\n  " << finding.message() << "\n";
    return 0;
}

} // namespace quillon::cli
