#include "cli/CommentaryCommand.h"

#include "cli/OutcomeReport.h"
#include "intelligence/CommentaryTool.h"
#include "intelligence/PassageCommentary.h"
#include "intelligence/SharedRouter.h"
#include "platform/Paths.h"
#include "platform/Preferences.h"
#include "scripture/ReferenceParser.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void CommentaryCommand::configure(CLI::App& command) {
    command.add_option("reference", m_reference, "A scripture reference, such as \"Romans 8:28\"")->required();
    command.add_option("--question", m_question, "What to ask the commentators");
}

int CommentaryCommand::execute(CommandContext& context) {
    std::optional<scripture::ScriptureReference> reference = scripture::parse(m_reference);
    if (!reference)
        throw UserError("Quillon could not read “" + m_reference + "” as a scripture reference.");
    platform::Preferences preferences(platform::preferencesFile());
    auto router = intelligence::makeSharedRouter(preferences);
    auto tool = std::make_shared<intelligence::CommentaryTool>(std::make_shared<intelligence::CommentaryLibrary>());
    intelligence::PassageCommentary feature(tool);
    auto outcome =
        orvane::run(feature, intelligence::PassageCommentary::Input{reference->description(), m_question}, *router);
    const intelligence::GroundedAnswer& answer = outcome.value;

    if (context.json) {
        nlohmann::ordered_json json = {{"reference", reference->description()},
                                       {"path", pathName(outcome.path)},
                                       {"generated", outcome.needsGeneratedLabel},
                                       {"answer", answer.text},
                                       {"sources", nlohmann::json::array()}};
        if (outcome.path.reason())
            json["reason"] = outcome.path.reason()->message();
        for (const orvane::Passage& passage : answer.sources)
            json["sources"].push_back({{"source", passage.source}, {"text", passage.text}});
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (answer.sources.empty()) {
        // Nothing to show either way, but the preacher still learns why no model was asked.
        writeOutcomeHeader(context.out, outcome.path, false, "", intelligence::PassageCommentary::noNotes);
        return 0;
    }
    writeOutcomeHeader(context.out, outcome.path, outcome.needsGeneratedLabel,
                       answer.isSynthesised ? intelligence::PassageCommentary::generatedHeading : "", "");
    if (answer.isSynthesised)
        context.out << "\n" << answer.text << "\n";
    for (const orvane::Passage& passage : answer.sources)
        context.out << "\n" << passage.source << "\n" << passage.text << "\n";
    return 0;
}

} // namespace quillon::cli
