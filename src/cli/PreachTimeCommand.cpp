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
    preach::PreachTimeEstimate estimate =
        preach::PreachTimeCategoriser::categorisedEstimate(sermon, pace, scriptureText, *router);

    if (context.json) {
        nlohmann::ordered_json json = {{"id", sermon.id.text()},
                                       {"minutes", estimate.minutes},
                                       {"formatted", preach::PreachTimeEstimate::formatted(estimate.minutes)},
                                       {"path", estimate.wasCategorised ? "generated" : "fallback"},
                                       {"wordsPerMinute", pace.wordsPerMinute},
                                       {"sections", nlohmann::json::array()}};
        for (const preach::PreachTimeEstimate::Section& section : estimate.sections)
            json["sections"].push_back({{"title", section.title},
                                        {"words", section.words},
                                        {"delivery", std::string(preach::rawValue(section.delivery))}});
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (estimate.wasCategorised)
        context.out << generatedLabel << " " << categorisedCaption << "\n";
    else
        context.out << uncategorisedCaption << "\n";
    context.out << "About " << preach::PreachTimeEstimate::formatted(estimate.minutes) << " to preach\n"
                << pace.explanation() << "\n";
    for (const preach::PreachTimeEstimate::Section& section : estimate.sections)
        context.out << "  " << section.title << " — " << section.words << " words, "
                    << std::string(preach::rawValue(section.delivery)) << "\n";
    return 0;
}

} // namespace quillon::cli
