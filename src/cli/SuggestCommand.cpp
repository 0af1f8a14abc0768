#include "cli/SuggestCommand.h"

#include "cli/Library.h"
#include "cli/OutcomeReport.h"
#include "intelligence/AlternativeOutlines.h"
#include "intelligence/FeatureText.h"
#include "intelligence/HighlightSuggester.h"
#include "intelligence/RewriteForTheRoom.h"
#include "intelligence/SectionQuestions.h"
#include "intelligence/SeriesIdeaSuggester.h"
#include "intelligence/SermonArticleGenerator.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SermonTitleAndSummary.h"
#include "intelligence/SharedRouter.h"
#include "preach/PreachPace.h"
#include "scripture/BibleLoader.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

namespace {

/// What one feature produced, ready to print: where it came from, its captions and its lines.
struct Suggestion {
    orvane::IntelligencePath path;
    bool needsGeneratedLabel = false;
    std::string generatedCaption;
    std::string fallbackCaption;
    std::vector<std::string> lines;
    /// Set when the sermon gave nothing to work from: shown alone, and no request was made.
    std::string emptyState;
};

/// The sentence alone, with no caption: nothing was generated and nothing fell back.
Suggestion nothingToWorkFrom(std::string text) {
    return {orvane::IntelligencePath::fallback(), false, "", "", {}, std::move(text)};
}

/// Runs `feature` unless its input gives nothing to work from. A model that answered with nothing
/// (NONE) gets `noneAnswer` as its line, so the caption never stands alone.
template <typename Feature, typename Input, typename Lines>
Suggestion suggest(const Feature& feature, const Input& input, const orvane::ModelRouter& router,
                   std::string generatedCaption, std::string fallbackCaption, Lines lines,
                   std::string noneAnswer = {}) {
    if (std::string empty = feature.emptyState(input); !empty.empty())
        return nothingToWorkFrom(std::move(empty));
    auto outcome = orvane::run(feature, input, router);
    std::vector<std::string> shown = lines(outcome.value);
    if (shown.empty() && outcome.path.isGenerated() && !noneAnswer.empty())
        shown.push_back(std::move(noneAnswer));
    return {outcome.path,
            outcome.needsGeneratedLabel,
            std::move(generatedCaption),
            std::move(fallbackCaption),
            std::move(shown),
            {}};
}

std::vector<std::string> questionLines(const std::vector<intelligence::SectionQuestion>& questions) {
    std::vector<std::string> lines;
    for (const auto& question : questions)
        lines.push_back(question.heading.empty() ? question.question : question.heading + ": " + question.question);
    return lines;
}

/// The topic `show` numbers `section`: one numbering for every command that takes --section.
const model::SermonTopic& topicNumbered(const model::SermonNote& sermon, int section) {
    if (section < 1 || static_cast<std::size_t>(section) > sermon.topics.size())
        throw UserError(fmt::format("This sermon has no section {}.", section));
    return sermon.topics[static_cast<std::size_t>(section - 1)];
}

/// The verses of the first passage attached under the chosen section, for outlining.
intelligence::OutlinePassage outlinePassage(const model::SermonNote& sermon, int section) {
    for (const model::SermonSubTopic& subTopic : topicNumbered(sermon, section).subTopics)
        for (const model::SermonScripture& scripture : subTopic.scriptures) {
            std::optional<scripture::ScriptureReference> reference = intelligence::featureText::referenceOf(scripture);
            if (!reference)
                continue;
            intelligence::OutlinePassage passage{reference->book.name, reference->chapter, {}};
            scripture::BibleLoader loader;
            for (const scripture::BibleSearchResult& result : loader.verses(*reference, {scripture.version}))
                passage.verses.emplace_back(result.verse.verse, result.verse.text);
            if (passage.verses.empty())
                throw UserError("The text of " + reference->description() + " is not available on this computer.");
            return passage;
        }
    throw UserError(fmt::format("Section {} has no scripture attached to outline.", section));
}

std::string sectionText(const model::SermonNote& sermon, int section) {
    return intelligence::topicSection(topicNumbered(sermon, section), static_cast<std::size_t>(section - 1)).body();
}

/// "Jude — Title: reason", without a dangling colon when the model gave no reason.
std::string seriesLine(const intelligence::SeriesIdea& idea) {
    return idea.book + " — " + idea.title + (idea.reason.empty() ? "" : ": " + idea.reason);
}

Suggestion suggestionFor(const std::string& kind, const model::SermonNote& sermon, Library& library,
                         const std::string& roomName, int section, const orvane::ModelRouter& router) {
    using namespace intelligence;
    if (kind == "questions") {
        GenerateDiscussionQuestions feature;
        return suggest(feature, sermon, router, GenerateDiscussionQuestions::generatedCaption,
                       GenerateDiscussionQuestions::fallbackCaption, questionLines, feature.noneAnswer());
    }
    if (kind == "listener") {
        ListenerQuestions feature;
        return suggest(feature, sermon, router, ListenerQuestions::generatedCaption, ListenerQuestions::fallbackCaption,
                       questionLines, feature.noneAnswer());
    }
    if (kind == "outline") {
        OutlinePassage passage = outlinePassage(sermon, section);
        // Each point is numbered once, by the verse it outlines.
        return suggest(AlternativeOutlines(), passage, router, "", "", [&passage](const AlternativeOutline& outline) {
            std::vector<std::string> lines{outline.name};
            for (std::size_t i = 0; i < outline.points.size() && i < passage.verses.size(); ++i)
                lines.push_back(fmt::format("{}. {}", passage.verses[i].first, outline.points[i]));
            return lines;
        });
    }
    if (kind == "article")
        return suggest(SermonArticleGenerator(), sermon, router, SermonArticleGenerator::generatedCaption,
                       SermonArticleGenerator::fallbackCaption,
                       [](const std::string& article) { return std::vector<std::string>{article}; });
    if (kind == "series") {
        std::vector<std::string> books = SeriesIdeaSuggester::booksNeverPreached(library.manager().sermons());
        return suggest(SeriesIdeaSuggester(), books, router, SeriesIdeaSuggester::generatedCaption,
                       SeriesIdeaSuggester::fallbackCaption, [&books](const std::vector<SeriesIdea>& ideas) {
                           // The proposals come first; the whole never-preached list always follows, as both
                           // captions promise.
                           std::vector<std::string> lines;
                           for (const SeriesIdea& idea : ideas)
                               lines.push_back(seriesLine(idea));
                           lines.insert(lines.end(), books.begin(), books.end());
                           return lines;
                       });
    }
    if (kind == "tags")
        return suggest(SermonTagSuggester(), sermon, router, SermonTagSuggester::generatedCaption,
                       SermonTagSuggester::fallbackCaption, [](const std::vector<std::string>& tags) { return tags; });
    if (kind == "highlights")
        return suggest(HighlightSuggester(), sermon, router, HighlightSuggester::generatedCaption,
                       HighlightSuggester::fallbackCaption, [](const std::vector<Highlight>& highlights) {
                           std::vector<std::string> lines;
                           for (const Highlight& highlight : highlights)
                               lines.push_back(highlight.text + " — " + highlight.reason);
                           return lines;
                       });
    if (kind == "titles" || kind == "media") {
        if (std::string empty = SermonTitleAndSummary::emptyState(sermon); !empty.empty())
            return nothingToWorkFrom(std::move(empty));
        auto outcome = orvane::run(SermonTitleAndSummary(), sermon, router);
        std::vector<std::string> lines = outcome.value.titles;
        if (!outcome.value.summary.empty())
            lines.push_back(outcome.value.summary);
        if (kind == "media") {
            SermonMediaPackage package = SermonMediaPackage::assemble(
                sermon, outcome.value, outcome.path.isGenerated(),
                preach::PreachPace::forSpeaker(library.preferences(), sermon.speaker).wordsPerMinute);
            for (const std::string& quote : package.pullQuotes)
                lines.push_back("“" + quote + "”");
            for (const SocialCaption& caption : package.captions)
                lines.push_back(caption.platform + ": " + caption.text);
            for (const ChapterMarker& marker : package.chapterMarkers)
                lines.push_back(fmt::format("{:02}:{:02} {}", static_cast<int>(marker.startSeconds) / 60,
                                            static_cast<int>(marker.startSeconds) % 60, marker.title));
        }
        return {outcome.path,
                outcome.needsGeneratedLabel,
                SermonTitleAndSummary::generatedCaption,
                SermonTitleAndSummary::fallbackCaption,
                lines,
                {}};
    }
    if (kind == "rewrite") {
        std::optional<RoomProfile> room = roomProfileFromRawValue(roomName);
        if (!room)
            throw UserError("There is no room called “" + roomName +
                            "”: choose liveStream, largeSanctuary, youthAndFamily or smallGroup.");
        RewriteRequest request{sectionText(sermon, section), *room};
        if (std::string empty = RewriteForTheRoom::emptyState(request); !empty.empty())
            return nothingToWorkFrom(std::move(empty));
        auto outcome = orvane::run(RewriteForTheRoom(), request, router);
        return {outcome.path,
                outcome.needsGeneratedLabel,
                RewriteForTheRoom::caption(*room, outcome.value.readingGrade),
                RewriteForTheRoom::unverified,
                {outcome.value.text},
                {}};
    }
    throw UserError("There is no suggestion called “" + kind + "”.");
}

} // namespace

void SuggestCommand::configure(CLI::App& command) {
    command.add_option("kind", m_kind, "What to suggest")
        ->required()
        ->check(CLI::IsMember({"questions", "outline", "article", "series", "tags", "highlights", "titles", "listener",
                               "media", "rewrite"}));
    command.add_option("id", m_id, "The sermon's id (or its first characters)")->required();
    command.add_option("--room", m_room, "For rewrite: liveStream, largeSanctuary, youthAndFamily or smallGroup");
    command.add_option("--section", m_section, "For outline and rewrite: which section, counting from 1");
}

int SuggestCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote& sermon = library.find(m_id);
    auto router = intelligence::makeSharedRouter(library.preferences());
    Suggestion suggestion = suggestionFor(m_kind, sermon, library, m_room, m_section, *router);

    if (context.json) {
        nlohmann::ordered_json json = {{"kind", m_kind},
                                       {"path", pathName(suggestion.path)},
                                       {"generated", suggestion.needsGeneratedLabel},
                                       {"lines", suggestion.lines}};
        if (suggestion.path.reason())
            json["reason"] = suggestion.path.reason()->message();
        if (!suggestion.emptyState.empty())
            json["empty"] = suggestion.emptyState;
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (!suggestion.emptyState.empty()) {
        context.out << suggestion.emptyState << "\n";
        return 0;
    }
    writeOutcomeHeader(context.out, suggestion.path, suggestion.needsGeneratedLabel, suggestion.generatedCaption,
                       suggestion.fallbackCaption);
    for (const std::string& line : suggestion.lines)
        context.out << "\n" << line << "\n";
    return 0;
}

} // namespace quillon::cli
