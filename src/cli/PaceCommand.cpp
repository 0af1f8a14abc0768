#include "cli/PaceCommand.h"

#include "cli/ExportVerses.h"
#include "cli/Library.h"
#include "platform/Clock.h"
#include "preach/PreachPaceLearner.h"
#include "preach/PreachTimeEstimate.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <ostream>

namespace quillon::cli {

void PaceCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    CLI::App* record = command.add_subcommand("record", preach::recordingPrompt);
    record->add_option("id", m_id, "The sermon's id (or its first characters)")->required();
    record->add_option("minutes", m_minutes, "How many minutes the sermon actually took")->required();
}

int PaceCommand::run(CommandContext& context, Library& library) {
    if (!std::isfinite(m_minutes) || m_minutes <= 0)
        throw UserError("The minutes a sermon took must be a number greater than zero.");
    const model::SermonNote& sermon = library.find(m_id);
    std::shared_ptr<exports::VerseTextSource> verses = exportVerseSource();
    preach::PreachTimeEstimate estimate = preach::PreachTimeEstimate::estimate(
        sermon, preach::PreachPace::fromPreferences(library.preferences()),
        [verses](const model::SermonScripture& scripture) { return verses->passage(scripture).text; });

    preach::PreachPaceLearner learner(library.preferences());
    learner.record({sermon.id, estimate.words(preach::Delivery::prose), estimate.words(preach::Delivery::scripture),
                    estimate.words(preach::Delivery::list), m_minutes,
                    std::chrono::time_point_cast<std::chrono::seconds>(platform::SystemClock::shared().now())});
    preach::PreachPace pace = preach::PreachPace::fromPreferences(library.preferences());
    std::optional<double> learned = learner.learnedPace(pace.scriptureFactor, pace.listFactor);
    context.out << "Recorded " << fmt::format("{:g}", m_minutes) << " minutes for “" << sermon.title << "”.\n";
    if (learned)
        context.out << "Your learned pace: " << std::lround(*learned) << " words a minute.\n";
    return 0;
}

} // namespace quillon::cli
