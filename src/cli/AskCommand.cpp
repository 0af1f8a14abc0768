#include "cli/AskCommand.h"

#include "app/LibrarySources.h"
#include "cli/Library.h"
#include "cli/OutcomeReport.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/SharedRouter.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void AskCommand::configure(CLI::App& command) {
    command.add_option("question", m_question, "What you want to know")->required();
}

int AskCommand::run(CommandContext& context, Library& library) {
    std::vector<intelligence::LibrarySource> sources =
        app::librarySources(m_question, library.manager().sermons(), &library.preferences());
    if (sources.empty()) {
        context.out << intelligence::AskYourLibrary::nothingMatches << "\n";
        return 0;
    }
    auto router = intelligence::makeSharedRouter(library.preferences());
    intelligence::AskYourLibrary feature;
    auto outcome = orvane::run(feature, intelligence::AskYourLibrary::Input{m_question, sources}, *router);
    const std::vector<intelligence::LibraryAnswerPoint>& points = outcome.value;
    bool answered = outcome.path.isGenerated() && !points.empty();

    if (context.json) {
        nlohmann::ordered_json json = {{"question", m_question},
                                       {"path", answered ? "generated" : "fallback"},
                                       {"generated", answered && outcome.needsGeneratedLabel},
                                       {"points", nlohmann::json::array()},
                                       {"sources", nlohmann::json::array()}};
        if (outcome.path.reason())
            json["reason"] = outcome.path.reason()->message();
        for (const auto& point : points)
            json["points"].push_back({{"text", point.text}, {"source", point.source.label()}});
        for (const auto& source : sources)
            json["sources"].push_back(source.line());
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (answered) {
        writeOutcomeHeader(context.out, outcome.path, outcome.needsGeneratedLabel,
                           intelligence::AskYourLibrary::pointsIntroduction, "");
        for (const auto& point : points)
            context.out << "\n" << point.text << "\n  — " << point.source.label() << "\n";
        return 0;
    }
    // A model that answered NONE, or whose every point was dropped, leaves the sources to speak for themselves just as
    // a missing model does, under the same caption.
    writeOutcomeHeader(context.out, outcome.path.isGenerated() ? orvane::IntelligencePath::fallback() : outcome.path,
                       false, "", intelligence::AskYourLibrary::unsummarised);
    for (const auto& source : sources)
        context.out << "\n" << source.line() << "\n";
    return 0;
}

} // namespace quillon::cli
