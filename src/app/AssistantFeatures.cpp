#include "app/AssistantFeatures.h"

#include "app/LibrarySources.h"
#include "app/SermonNotesViewModel.h"
#include "export/VerseTextSource.h"
#include "intelligence/AlternativeOutlines.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/CommentaryLibrary.h"
#include "intelligence/CommentarySearchSource.h"
#include "intelligence/CommentaryTool.h"
#include "intelligence/FeatureText.h"
#include "intelligence/HighlightSuggester.h"
#include "intelligence/PassageCommentary.h"
#include "intelligence/RewriteForTheRoom.h"
#include "intelligence/ScriptureQuoteChecker.h"
#include "intelligence/SectionQuestions.h"
#include "intelligence/SeriesIdeaSuggester.h"
#include "intelligence/SermonArticleGenerator.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SermonTitleAndSummary.h"
#include "preach/PreachPace.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"
#include "search/SermonSearchIndex.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon::app {

namespace {

using Id = AssistantFeatureId;
using In = AssistantInput;

// clang-format off
const AssistantFeatureDescription features[] = {
    {Id::discussionQuestions, "Discussion Questions", "Questions for a small group, one or more for each section.", In::none},
    {Id::listenerQuestions, "Listener Questions", "What a first-time hearer might still be asking after each section.", In::none},
    {Id::alternativeOutlines, "Alternative Outlines", "Another way to outline the section’s passage than verse by verse.", In::section},
    {Id::sermonArticle, "Sermon Article", "The sermon as an article to publish.", In::none},
    {Id::seriesPlanner, "Series Planner", "Books never preached from, and series ideas for them.", In::none},
    {Id::rewriteForTheRoom, "Rewrite for the Room", "A section reworded for the room it will be heard in.", In::sectionAndRoom},
    {Id::tagSuggestions, "Tag Suggestions", "Tags for this sermon; the ones you tick are added.", In::none, "", AssistantProposal::addTags},
    {Id::highlightSuggestions, "Highlight Suggestions", "The sentences worth highlighting, and why.", In::none},
    {Id::titlesAndSummary, "Titles and Summary", "Titles to choose from and a short summary; the title you pick replaces the working title.", In::none, "", AssistantProposal::setTitle},
    {Id::mediaPackage, "Media Package", "Titles, summary, pull quotes, captions and chapter markers for publishing.", In::none},
    {Id::askYourLibrary, "Ask Your Library", "Answers from your own sermons and Bible, each point with its source.", In::question, intelligence::AskYourLibrary::sheetPrompt},
    {Id::passageCommentary, "Passage Commentary", "What the bundled commentaries say about a passage.", In::reference, "Passage, such as Romans 8:28"},
    {Id::quotationCheck, "Quotation Check", "Quotations in the notes compared with the verses attached beside them.", In::none, "", AssistantProposal::none, false},
    {Id::illustrationFinder, "Illustration Finder", "Passages from your own sermons and the commentaries that illustrate a point.", In::point, "The point to illustrate", AssistantProposal::none, false},
};
// clang-format on

AssistantAnswer emptyAnswer(std::string sentence) {
    AssistantAnswer answer;
    answer.emptyState = std::move(sentence);
    return answer;
}

template <typename Outcome>
OutcomeCaption captionOf(const Outcome& outcome, const std::string& generated, const std::string& fallback) {
    return OutcomeCaption::of(outcome.path, outcome.needsGeneratedLabel, generated, fallback);
}

/// Runs `feature` unless its input gives nothing to work from; a model that answered with nothing gets
/// `noneAnswer` as its line, so the caption never stands alone (as `quillon suggest` does).
template <typename Feature, typename Input, typename Lines>
AssistantAnswer suggest(const Feature& feature, const Input& input, const orvane::ModelRouter& router,
                        const std::string& generatedCaption, const std::string& fallbackCaption, Lines lines,
                        std::string noneAnswer = {}) {
    if (std::string empty = feature.emptyState(input); !empty.empty())
        return emptyAnswer(std::move(empty));
    auto outcome = orvane::run(feature, input, router);
    AssistantAnswer answer;
    answer.caption = captionOf(outcome, generatedCaption, fallbackCaption);
    answer.items = lines(outcome.value);
    if (answer.items.empty() && outcome.path.isGenerated() && !noneAnswer.empty())
        answer.items.push_back({std::move(noneAnswer)});
    return answer;
}

std::vector<AssistantItem> plain(const std::vector<std::string>& lines, bool proposable = false) {
    std::vector<AssistantItem> items;
    for (const std::string& line : lines)
        items.push_back({line, {}, {}, proposable});
    return items;
}

std::vector<AssistantItem> questionItems(const std::vector<intelligence::SectionQuestion>& questions) {
    std::vector<AssistantItem> items;
    for (const auto& question : questions)
        items.push_back({question.question, question.heading, {}, false});
    return items;
}

const model::SermonTopic* topicNumbered(const model::SermonNote& sermon, int section) {
    if (section < 1 || static_cast<std::size_t>(section) > sermon.topics.size())
        return nullptr;
    return &sermon.topics[static_cast<std::size_t>(section - 1)];
}

std::string noSection(int section) {
    return fmt::format("This sermon has no section {}.", section);
}

AssistantAnswer alternativeOutlines(const AssistantRequest& request, const orvane::ModelRouter& router) {
    const model::SermonTopic* topic = topicNumbered(request.sermon, request.section);
    if (!topic)
        return emptyAnswer(noSection(request.section));
    for (const model::SermonSubTopic& subTopic : topic->subTopics)
        for (const model::SermonScripture& scripture : subTopic.scriptures) {
            auto reference = intelligence::featureText::referenceOf(scripture);
            if (!reference)
                continue;
            intelligence::OutlinePassage passage{reference->book.name, reference->chapter, {}};
            scripture::BibleLoader loader;
            for (const scripture::BibleSearchResult& result : loader.verses(*reference, {scripture.version}))
                passage.verses.emplace_back(result.verse.verse, result.verse.text);
            if (passage.verses.empty())
                return emptyAnswer("The text of " + reference->description() + " is not available on this computer.");
            return suggest(intelligence::AlternativeOutlines(), passage, router, "", "",
                           [&passage](const intelligence::AlternativeOutline& outline) {
                               std::vector<AssistantItem> items{{outline.name}};
                               for (std::size_t i = 0; i < outline.points.size() && i < passage.verses.size(); ++i)
                                   items.push_back({fmt::format("{}. {}", passage.verses[i].first, outline.points[i])});
                               return items;
                           });
        }
    return emptyAnswer(fmt::format("Section {} has no scripture attached to outline.", request.section));
}

AssistantAnswer rewrite(const AssistantRequest& request, const orvane::ModelRouter& router) {
    const model::SermonTopic* topic = topicNumbered(request.sermon, request.section);
    if (!topic)
        return emptyAnswer(noSection(request.section));
    auto room = intelligence::roomProfileFromRawValue(request.room);
    if (!room)
        return emptyAnswer("There is no room called “" + request.room +
                           "”: choose liveStream, largeSanctuary, youthAndFamily or smallGroup.");
    intelligence::RewriteRequest rewriteRequest{
        intelligence::topicSection(*topic, static_cast<std::size_t>(request.section - 1)).body(), *room};
    if (std::string empty = intelligence::RewriteForTheRoom::emptyState(rewriteRequest); !empty.empty())
        return emptyAnswer(std::move(empty));
    auto outcome = orvane::run(intelligence::RewriteForTheRoom(), rewriteRequest, router);
    AssistantAnswer answer;
    answer.caption = captionOf(outcome, intelligence::RewriteForTheRoom::caption(*room, outcome.value.readingGrade),
                               intelligence::RewriteForTheRoom::unverified);
    answer.items.push_back({outcome.value.text});
    return answer;
}

AssistantAnswer titles(const AssistantRequest& request, const orvane::ModelRouter& router,
                       const AssistantServices& services, bool media) {
    using intelligence::SermonTitleAndSummary;
    if (std::string empty = SermonTitleAndSummary::emptyState(request.sermon); !empty.empty())
        return emptyAnswer(std::move(empty));
    auto outcome = orvane::run(SermonTitleAndSummary(), request.sermon, router);
    AssistantAnswer answer;
    answer.caption =
        captionOf(outcome, SermonTitleAndSummary::generatedCaption, SermonTitleAndSummary::fallbackCaption);
    answer.items = plain(outcome.value.titles, !media);
    answer.proposal = media ? AssistantProposal::none : AssistantProposal::setTitle;
    if (!outcome.value.summary.empty())
        answer.items.push_back({outcome.value.summary, "Summary"});
    if (!media)
        return answer;
    const double pace =
        services.preferences
            ? preach::PreachPace::forSpeaker(*services.preferences, request.sermon.speaker).wordsPerMinute
            : preach::PreachPace().wordsPerMinute;
    auto package =
        intelligence::SermonMediaPackage::assemble(request.sermon, outcome.value, outcome.path.isGenerated(), pace);
    for (const std::string& quote : package.pullQuotes)
        answer.items.push_back({"“" + quote + "”", "Pull quote"});
    for (const auto& caption : package.captions)
        answer.items.push_back({caption.text, caption.platform});
    for (const auto& marker : package.chapterMarkers)
        answer.items.push_back({fmt::format("{:02}:{:02} {}", static_cast<int>(marker.startSeconds) / 60,
                                            static_cast<int>(marker.startSeconds) % 60, marker.title),
                                "Chapter"});
    return answer;
}

std::string sourceLink(const intelligence::LibrarySource& source, const std::vector<model::SermonNote>& library) {
    if (const auto* verse = std::get_if<intelligence::LibrarySource::Verse>(&source.value))
        return fmt::format("bible:{} {}:{}", verse->bookName, verse->chapter, verse->verse);
    const auto& sermon = std::get<intelligence::LibrarySource::Sermon>(source.value);
    for (const model::SermonNote& candidate : library)
        if (candidate.title == sermon.title)
            return "sermon:" + candidate.id.text();
    return {};
}

AssistantAnswer askYourLibrary(const AssistantRequest& request, const orvane::ModelRouter& router,
                               const AssistantServices& services) {
    using intelligence::AskYourLibrary;
    if (intelligence::featureText::trimmed(request.text).empty())
        return emptyAnswer(AskYourLibrary::nothingMatches);
    std::vector<intelligence::LibrarySource> sources =
        librarySources(request.text, request.library, services.preferences);
    if (sources.empty())
        return emptyAnswer(AskYourLibrary::nothingMatches);
    auto outcome = orvane::run(AskYourLibrary(), AskYourLibrary::Input{request.text, sources}, router);
    AssistantAnswer answer;
    if (outcome.path.isGenerated() && !outcome.value.empty()) {
        answer.caption = captionOf(outcome, AskYourLibrary::pointsIntroduction, "");
        for (const auto& point : outcome.value)
            answer.items.push_back(
                {point.text, "— " + point.source.label(), sourceLink(point.source, request.library)});
        return answer;
    }
    // A model that answered NONE, or whose every point was dropped, leaves the sources to speak for themselves.
    answer.caption =
        OutcomeCaption::of(outcome.path.isGenerated() ? orvane::IntelligencePath::fallback() : outcome.path, false, "",
                           AskYourLibrary::unsummarised);
    for (const auto& source : sources)
        answer.items.push_back({source.label(), source.line(), sourceLink(source, request.library)});
    return answer;
}

AssistantAnswer passageCommentary(const AssistantRequest& request, const orvane::ModelRouter& router,
                                  const AssistantServices& services) {
    using intelligence::PassageCommentary;
    std::optional<scripture::ScriptureReference> reference = scripture::parse(request.text);
    if (!reference)
        return emptyAnswer("Quillon could not read “" + request.text + "” as a scripture reference.");
    auto library = services.commentaries ? services.commentaries : std::make_shared<intelligence::CommentaryLibrary>();
    PassageCommentary feature(std::make_shared<intelligence::CommentaryTool>(library));
    auto outcome = orvane::run(feature, PassageCommentary::Input{reference->description(), ""}, router);
    const intelligence::GroundedAnswer& grounded = outcome.value;
    AssistantAnswer answer;
    if (grounded.sources.empty()) {
        answer.caption = OutcomeCaption::of(outcome.path, false, "", PassageCommentary::noNotes);
        return answer;
    }
    answer.caption = captionOf(outcome, grounded.isSynthesised ? PassageCommentary::generatedHeading : "", "");
    if (grounded.isSynthesised)
        answer.items.push_back({grounded.text});
    for (const orvane::Passage& passage : grounded.sources)
        answer.items.push_back({passage.source, passage.text, "bible:" + reference->description()});
    return answer;
}

AssistantAnswer quotationCheck(const AssistantRequest& request, const AssistantServices& services) {
    const exports::VerseTextSource* verses = services.verses;
    intelligence::ScriptureQuoteChecker checker(
        [verses](const model::SermonScripture& scripture) -> std::optional<std::string> {
            if (!verses)
                return std::nullopt;
            exports::PassageText passage = verses->passage(scripture);
            if (!passage.versionAvailable)
                return std::nullopt;
            return passage.text;
        });
    AssistantAnswer answer;
    for (const auto& finding : checker.check(request.sermon))
        answer.items.push_back({finding.subtopicTitle + ": “" + finding.quotation + "”", finding.message()});
    if (answer.items.empty())
        answer.emptyState = "Every quotation matches the verses attached beside it.";
    return answer;
}

AssistantAnswer illustrationFinder(const AssistantRequest& request, const AssistantServices& services) {
    constexpr int sermonLimit = 6;
    constexpr std::size_t commentaryLimit = 6;
    const std::string point = intelligence::featureText::trimmed(request.text);
    if (point.empty())
        return emptyAnswer("Choose a point of the sermon, or type one, to find illustrations for it.");
    std::vector<model::SermonNote> others;
    for (const model::SermonNote& sermon : request.library)
        if (sermon.id != request.sermon.id)
            others.push_back(sermon);
    search::SermonSearchIndex index;
    index.refresh(others);
    AssistantAnswer answer;
    orvane::CorrectedSearch found = index.search(point, sermonLimit);
    for (const orvane::SearchHit& hit : found.hits)
        for (const model::SermonNote& sermon : others)
            if (sermon.id.text() == hit.documentID) {
                auto display = search::SermonSearchDisplayHit::make(hit, sermon, point, found.corrections);
                answer.items.push_back({display.title, display.snippet, "sermon:" + hit.documentID});
            }
    if (services.commentaries) {
        auto source = intelligence::commentarySearchSource(services.commentaries);
        for (const search::SearchHit& hit : source(point, commentaryLimit))
            if (const search::ReferenceWorkHit* work = hit.referenceWork())
                answer.items.push_back({work->work + " — " + work->heading, work->snippet, "bible:" + work->heading});
    }
    if (answer.items.empty())
        answer.emptyState = "Nothing in your sermons or the commentaries illustrates that point yet. Try other words.";
    return answer;
}

AssistantAnswer runFeature(Id id, const AssistantRequest& request, const orvane::ModelRouter& router,
                           const AssistantServices& services) {
    using namespace intelligence;
    const model::SermonNote& sermon = request.sermon;
    switch (id) {
    case Id::discussionQuestions: {
        GenerateDiscussionQuestions feature;
        return suggest(feature, sermon, router, GenerateDiscussionQuestions::generatedCaption,
                       GenerateDiscussionQuestions::fallbackCaption, questionItems, feature.noneAnswer());
    }
    case Id::listenerQuestions: {
        ListenerQuestions feature;
        return suggest(feature, sermon, router, ListenerQuestions::generatedCaption, ListenerQuestions::fallbackCaption,
                       questionItems, feature.noneAnswer());
    }
    case Id::alternativeOutlines:
        return alternativeOutlines(request, router);
    case Id::sermonArticle:
        return suggest(SermonArticleGenerator(), sermon, router, SermonArticleGenerator::generatedCaption,
                       SermonArticleGenerator::fallbackCaption,
                       [](const std::string& article) { return plain({article}); });
    case Id::seriesPlanner: {
        std::vector<std::string> books = SeriesIdeaSuggester::booksNeverPreached(request.library);
        return suggest(SeriesIdeaSuggester(), books, router, SeriesIdeaSuggester::generatedCaption,
                       SeriesIdeaSuggester::fallbackCaption, [&books](const std::vector<SeriesIdea>& ideas) {
                           std::vector<AssistantItem> items;
                           for (const SeriesIdea& idea : ideas)
                               items.push_back({idea.book + " — " + idea.title, idea.reason});
                           for (const std::string& book : books)
                               items.push_back({book, "Never preached from"});
                           return items;
                       });
    }
    case Id::rewriteForTheRoom:
        return rewrite(request, router);
    case Id::tagSuggestions: {
        AssistantAnswer answer = suggest(SermonTagSuggester(), sermon, router, SermonTagSuggester::generatedCaption,
                                         SermonTagSuggester::fallbackCaption,
                                         [](const std::vector<std::string>& tags) { return plain(tags, true); });
        answer.proposal = AssistantProposal::addTags;
        return answer;
    }
    case Id::highlightSuggestions:
        return suggest(HighlightSuggester(), sermon, router, HighlightSuggester::generatedCaption,
                       HighlightSuggester::fallbackCaption, [](const std::vector<Highlight>& highlights) {
                           std::vector<AssistantItem> items;
                           for (const Highlight& highlight : highlights)
                               items.push_back({highlight.text, highlight.reason});
                           return items;
                       });
    case Id::titlesAndSummary:
        return titles(request, router, services, false);
    case Id::mediaPackage:
        return titles(request, router, services, true);
    case Id::askYourLibrary:
        return askYourLibrary(request, router, services);
    case Id::passageCommentary:
        return passageCommentary(request, router, services);
    case Id::quotationCheck:
        return quotationCheck(request, services);
    case Id::illustrationFinder:
        return illustrationFinder(request, services);
    }
    return {};
}

} // namespace

std::span<const AssistantFeatureDescription> assistantFeatures() {
    return features;
}

const AssistantFeatureDescription& assistantFeature(AssistantFeatureId id) {
    for (const AssistantFeatureDescription& feature : features)
        if (feature.id == id)
            return feature;
    return features[0];
}

AssistantAnswer runAssistant(AssistantFeatureId id, const AssistantRequest& request, const orvane::ModelRouter& router,
                             const AssistantServices& services) {
    try {
        return runFeature(id, request, router, services);
    } catch (const std::exception& error) {
        // A fallback that fails on its own input (an unreadable Bible file, say) is still a sentence, never a crash.
        return emptyAnswer(std::string("Quillon could not prepare this: ") + error.what());
    }
}

bool applyProposal(SermonNotesViewModel& controller, const model::Uuid& sermonId, const AssistantAnswer& answer,
                   const std::vector<std::size_t>& chosen) {
    const model::SermonNote* sermon = controller.sermon(sermonId);
    if (!sermon || answer.proposal == AssistantProposal::none)
        return false;
    std::vector<std::string> picked;
    for (std::size_t index : chosen)
        if (index < answer.items.size() && answer.items[index].proposable)
            picked.push_back(answer.items[index].text);
    if (picked.empty())
        return false;
    SermonMetadataChange change;
    if (answer.proposal == AssistantProposal::setTitle) {
        change.title = picked.front();
    } else {
        std::vector<std::string> tags = sermon->tags;
        for (const std::string& tag : picked)
            if (std::find(tags.begin(), tags.end(), tag) == tags.end())
                tags.push_back(tag);
        if (tags == sermon->tags)
            return false;
        change.tags = std::move(tags);
    }
    return controller.setMetadata(sermonId, change);
}

} // namespace quillon::app
