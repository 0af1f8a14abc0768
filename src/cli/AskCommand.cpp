#include "cli/AskCommand.h"

#include "cli/Library.h"
#include "cli/OutcomeReport.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/LocalModelEmbedding.h"
#include "intelligence/SharedRouter.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/StopWords.h"
#include "scripture/BibleBook.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"
#include "search/SermonSearchDisplayHit.h"
#include "search/SermonSearchIndex.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <set>

namespace quillon::cli {

namespace {

/// Enough sources to answer from without burying the model's prompt.
constexpr int sermonSourceLimit = 5;
constexpr std::size_t verseSourceLimit = 5;

intelligence::LibrarySource sermonSource(const model::SermonNote& sermon, const orvane::SearchHit& hit,
                                         const std::string& question,
                                         const std::vector<orvane::QueryCorrection>& corrections) {
    // The sentence that matched says more about the question than the opening notes, which may be empty when the
    // sermon matched on its outline.
    std::string excerpt = search::SermonSearchDisplayHit::make(hit, sermon, question, corrections).snippet;
    intelligence::LibrarySource::Sermon source{sermon.title, std::move(excerpt), {}};
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

/// Verses for the question as typed (a reference, a topic or words that must all occur) and, when that finds none,
/// for any of its meaningful words: a question in a sentence ("What have I taught about love?") rarely has every
/// one of its words in a single verse.
std::vector<scripture::BibleSearchResult> matchingVerses(const std::string& question) {
    scripture::BibleLoader loader;
    std::vector<scripture::BibleSearchResult> results = loader.search(question, {}, verseSourceLimit);
    if (!results.empty())
        return results;
    std::string anyWord;
    std::set<std::string> seen;
    for (const std::string& word : orvane::LexicalTokenizer::tokens(question, 2, true))
        if (orvane::StopWords::isMeaningful(word, 3) && seen.insert(word).second)
            anyWord += (anyWord.empty() ? "" : " OR ") + word;
    return anyWord.empty() ? results : loader.search(anyWord, {}, verseSourceLimit);
}

std::vector<intelligence::LibrarySource> sourcesFor(const std::string& typed, Library& library) {
    // Searched for what the question is about: "taught" in "What have I taught about rest?" would
    // otherwise match sermons and verses that merely use the word.
    const std::string subject = intelligence::AskYourLibrary::subjectOf(typed);
    const std::string& question = subject.empty() ? typed : subject;
    std::vector<intelligence::LibrarySource> sources;
    search::SermonSearchIndex index(intelligence::LocalModelEmbedding::forSearch(library.preferences()));
    index.refresh(library.manager().sermons());
    orvane::CorrectedSearch found = index.search(question, sermonSourceLimit);
    for (const orvane::SearchHit& hit : found.hits) {
        const auto id = model::Uuid::parse(hit.documentID);
        if (const model::SermonNote* sermon = id ? library.manager().sermon(*id) : nullptr)
            sources.push_back(sermonSource(*sermon, hit, question, found.corrections));
    }
    for (const scripture::BibleSearchResult& result : matchingVerses(question)) {
        // Verses carry the book table's abbreviation ("1The"); sources name the book in full.
        const scripture::BibleBook* book = scripture::bibleBookWithAbbreviation(result.verse.bookAbbreviation);
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
    // A model that answered NONE, or whose every point was dropped, leaves the sources to speak for themselves just as
    // a missing model does, under the same caption.
    writeOutcomeHeader(context.out, outcome.path.isGenerated() ? orvane::IntelligencePath::fallback() : outcome.path,
                       false, "", intelligence::AskYourLibrary::unsummarised);
    for (const auto& source : sources)
        context.out << "\n" << source.line() << "\n";
    return 0;
}

} // namespace quillon::cli
