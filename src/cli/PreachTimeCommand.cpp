#include "cli/PreachTimeCommand.h"

#include "cli/ExportVerses.h"
#include "cli/Library.h"
#include "cli/OutcomeReport.h"
#include "intelligence/SharedRouter.h"
#include "preach/PreachTimeCategoriser.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

namespace {

constexpr const char* categorisedCaption = "Sections labelled as prose or list by a model.";
constexpr const char* uncategorisedCaption = "Every section counted as prose or scripture reading.";

} // namespace

void PreachTimeCommand::configure(CLI::App& command) {
    command.add_option("id", m_id, "The sermon's id (or its first characters)")->required();
}

int PreachTimeCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote& sermon = library.find(m_id);
    preach::PreachPace pace = preach::PreachPace::forSpeaker(library.preferences(), sermon.speaker);
    std::shared_ptr<exports::VerseTextSource> verses = exportVerseSource();
    preach::ScriptureTextProvider scriptureText = [verses](const model::SermonScripture& scripture) {
        return verses->passage(scripture).text;
    };
    auto router = intelligence::makeSharedRouter(library.preferences());
    auto outcome = preach::PreachTimeCategoriser::categorisedEstimate(sermon, pace, scriptureText, *router);
    const preach::PreachTimeEstimate& estimate = outcome.value;

    if (context.json) {
        nlohmann::ordered_json json = {{"id", sermon.id.text()},
                                       {"minutes", estimate.minutes},
                                       {"formatted", preach::PreachTimeEstimate::formatted(estimate.minutes)},
                                       {"path", pathName(outcome.path)},
                                       {"generated", outcome.needsGeneratedLabel},
                                       {"wordsPerMinute", pace.wordsPerMinute},
                                       {"sections", nlohmann::json::array()}};
        if (outcome.path.reason())
            json["reason"] = outcome.path.reason()->message();
        for (const preach::PreachTimeEstimate::Section& section : estimate.sections)
            json["sections"].push_back({{"title", section.title},
                                        {"words", section.words},
                                        {"delivery", std::string(preach::rawValue(section.delivery))}});
        context.out << json.dump(2) << "\n";
        return 0;
    }
    // The categoriser's labels need no generated label (they only change how words are timed), so the outcome's own
    // flag decides, as for every other feature.
    writeOutcomeHeader(context.out, outcome.path, outcome.needsGeneratedLabel, categorisedCaption,
                       uncategorisedCaption);
    context.out << "About " << preach::PreachTimeEstimate::formatted(estimate.minutes) << " to preach\n"
                << pace.explanation() << "\n";
    for (const preach::PreachTimeEstimate::Section& section : estimate.sections)
        context.out << "  " << section.title << " — " << section.words << " words, "
                    << std::string(preach::rawValue(section.delivery)) << "\n";
    return 0;
}

} // namespace quillon::cli
