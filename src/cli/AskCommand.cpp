#include "cli/AskCommand.h"

#include "cli/Library.h"
#include "cli/OutcomeReport.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/SharedRouter.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"
#include "search/SermonSearchIndex.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

namespace {

/// Enough sources to answer from without burying the model's prompt.
constexpr int sermonSourceLimit = 5;
constexpr std::size_t verseSourceLimit = 5;
constexpr std::size_t excerptLength = 400;

intelligence::LibrarySource sermonSource(const model::SermonNote& sermon) {
    intelligence::LibrarySource::Sermon source{sermon.title, sermon.notes.substr(0, excerptLength), {}};
    for (const model::SermonTopic& topic : sermon.topics)
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            for (const model::SermonScripture& scripture : subTopic.scriptures) {
                std::string text = fmt::format("{} {}:{}-{}", scripture.bookName, scripture.chapter,
                                               scripture.startVerse, scripture.endVerse);
                if (std::optional<scripture::ScriptureReference> reference = scripture::parse(text))
                    source.references.push_back(*reference);
            }
    return {source};
}

std::vector<intelligence::LibrarySource> sourcesFor(const std::string& question, Library& library) {
    std::vector<intelligence::LibrarySource> sources;
    const std::vector<model::SermonNote>& sermons = library.manager().sermons();
    search::SermonSearchIndex index;
    index.refresh(sermons);
    for (const orvane::SearchHit& hit : index.search(question, sermonSourceLimit).hits)
        for (const model::SermonNote& sermon : sermons)
            if (sermon.id.text() == hit.documentID)
                sources.push_back(sermonSource(sermon));
    scripture::BibleLoader loader;
    for (const scripture::BibleSearchResult& result : loader.search(question, {}, verseSourceLimit)) {
        const scripture::BibleBook* book = scripture::resolveBookInTable(result.verse.bookAbbreviation);
        sources.push_back(
            {intelligence::LibrarySource::Verse{book ? book->name : result.verse.bookAbbreviation, result.verse.chapter,
                                                result.verse.verse, result.version, result.verse.text}});
    }
    return sources;
}

} // namespace

void AskCommand::configure(CLI::App& command) {
    command.add_option("question", m_question, "What you want to know")->required();
}

int AskCommand::run(CommandContext& context, Library& library) {
    std::vector<intelligence::LibrarySource> sources = sourcesFor(m_question, library);
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
    writeOutcomeHeader(context.out, outcome.path, false, "", intelligence::AskYourLibrary::unsummarised);
    for (const auto& source : sources)
        context.out << "\n" << source.line() << "\n";
    return 0;
}

} // namespace quillon::cli
