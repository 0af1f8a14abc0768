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
#include "platform/Preferences.h"
#include "scripture/ReferenceParser.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

#include <set>

namespace quillon::intelligence {
namespace {

using orvane::IntelligenceError;
using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

model::SermonNote sampleSermon() {
    model::SermonScripture romans;
    romans.bookName = "Romans";
    romans.chapter = 8;
    romans.startVerse = 28;
    romans.endVerse = 30;
    model::SermonSubTopic promise;
    promise.title = "The promise";
    promise.details = "All things work together for good.";
    promise.scriptures = {romans};
    model::SermonTopic first;
    first.title = "God is at work";
    first.details = "Even in loss, providence is quietly busy.";
    first.subTopics = {promise};
    first.sortOrder = 0;
    model::SermonTopic second;
    second.title = "Resting in it";
    second.details = "Trust is a practice, not a feeling.";
    second.sortOrder = 1;
    model::SermonNote sermon;
    sermon.title = "Held by Grace";
    sermon.series = "Romans";
    sermon.topics = {second, first};
    sermon.notes = "Grace holds us when we cannot hold on. Providence is quietly busy in every loss. Trust is a "
                   "practice. Trust grows when we rehearse the promise. The promise of Romans eight is not that all "
                   "things are good. Grace holds the grieving and the doubting alike.";
    return sermon;
}

TEST(SectionQuestions, keepOnlyQuestionsAboutOfferedSectionsAndTheirScripture) {
    model::SermonNote sermon = sampleSermon();
    std::vector<SermonSection> sections = sermonSections(sermon);
    ASSERT_EQ(sections.size(), 2u);
    // List order, as `show` prints it, although the sortOrder fields say the opposite.
    EXPECT_EQ(sections[0].heading, "Resting in it");
    EXPECT_EQ(sections[1].topic, 1u);
    EXPECT_EQ(SectionQuestions::prompt(sections),
              "0. Resting in it\nTrust is a practice, not a feeling.\n1. God is at work\nEven in loss, providence is "
              "quietly busy.\nThe promise: All things work together for good.\nScripture cited here: Romans 8:28-30");
    GenerateDiscussionQuestions discussion;
    struct Case {
        const char* name;
        const char* reply;
        std::vector<std::string> questions;
        const char* rejection;
    };
    const Case cases[] = {
        {"good",
         "0 || Where have you seen God at work?\n1 || How will you practise trust?",
         {"Where have you seen God at work?", "How will you practise trust?"},
         nullptr},
        {"none in odd case", "None", {}, nullptr},
        {"no question mark or no separator",
         "0 || Talk about loss.\n1 How will you rest?\n1 || What will you rest in?",
         {"What will you rest in?"},
         nullptr},
        {"sections not offered", "5 || Why?\n-2 || Who?", {}, "Nothing in the answer was a usable question."},
        {"scripture listed for that section only",
         "1 || What does Romans 8:28 promise?\n0 || Is Romans 8:28 true?",
         {"What does Romans 8:28 promise?"},
         nullptr},
        {"scripture not given at all",
         "0 || What does John 3:16 add?",
         {},
         "Nothing in the answer was a usable question."},
        {"more of the chapter than was given",
         "1 || Does Romans 8:28\u201331 say more?\n1 || And Romans 8:28, 31?\n1 || What of Romans chapter 8 verse "
         "31?\n1 || Romans 8:28 and 8:31?",
         {},
         "Nothing in the answer was a usable question."},
        {"empty", "  ", {}, "Nothing was written."},
    };
    for (const Case& test : cases) {
        try {
            std::vector<std::string> texts;
            for (const SectionQuestion& question : discussion.questionsFrom(test.reply, sections))
                texts.push_back(question.question);
            EXPECT_EQ(texts, test.questions) << test.name;
            EXPECT_EQ(test.rejection, nullptr) << test.name;
        } catch (const IntelligenceError& error) {
            ASSERT_NE(test.rejection, nullptr) << test.name << ": " << error.text();
            EXPECT_EQ(error.text(), test.rejection) << test.name;
        }
    }
    EXPECT_THROW(ListenerQuestions().questionsFrom("0 || no question", sections), IntelligenceError);
    // Without a model: per section one question from its scripture or, lacking that, its own most
    // telling sentence, and one from its heading.
    std::vector<SectionQuestion> fallback = discussion.fallback(sermon);
    ASSERT_EQ(fallback.size(), 4u);
    EXPECT_NE(fallback[0].question.find("“Trust is a practice, not a feeling.”"), std::string::npos);
    EXPECT_NE(fallback[1].question.find("“Resting in it”"), std::string::npos);
    EXPECT_EQ(fallback[2].section, 1);
    EXPECT_NE(fallback[2].question.find("Romans 8:28-30"), std::string::npos);
    EXPECT_TRUE(discussion.fallback(model::SermonNote{}).empty());
}

TEST(SectionQuestions, discussionFallbackAsksAboutEachSectionsOwnPassageAndWords) {
    const auto topic = [](std::string title, std::string details, std::vector<std::string> references) {
        model::SermonSubTopic subTopic;
        for (const std::string& text : references) {
            const auto reference = scripture::parse(text);
            model::SermonScripture attached;
            attached.bookName = reference->book.name;
            attached.chapter = reference->chapter;
            attached.startVerse = *reference->firstVerse();
            attached.endVerse = *reference->lastVerse();
            subTopic.scriptures.push_back(attached);
        }
        model::SermonTopic topic;
        topic.title = std::move(title);
        topic.details = std::move(details);
        topic.subTopics = {subTopic};
        return topic;
    };
    model::SermonNote sermon;
    sermon.title = "Treasure";
    // "grace" is every section's refrain, so it tells none of them apart.
    sermon.topics = {
        topic("Open Hands",
              "Generosity starts with open hands. Open hands receive before they give. Generosity is learnt "
              "slowly. Grace shapes it; grace frees it.",
              {"2 Corinthians 9:7"}),
        topic("The Hidden Treasure",
              "The treasure lies hidden in a field. The merchant sells everything for the treasure. Joy drives "
              "the merchant. Grace finds him; grace pays.",
              {"Matthew 13:44", "Matthew 13:45-46"}),
        topic("Storing Up",
              "Barns full of grain cannot keep a soul. The rich fool built bigger barns for his grain. Grace "
              "warns him; grace waits.",
              {"Luke 12:16-21"}),
    };
    const std::vector<std::vector<std::string>> ownWords = {
        {"“generosity”", "“hands”", "“open”"}, {"“treasure”", "“merchant”"}, {"“barns”", "“grain”"}};
    const std::vector<std::string> passages = {"2 Corinthians 9:7", "Matthew 13:44", "Luke 12:16-21"};

    const std::vector<SectionQuestion> questions = GenerateDiscussionQuestions().fallback(sermon);
    ASSERT_EQ(questions.size(), 6u);
    std::set<std::string> openings;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const std::string& question = questions[i].question;
        const std::size_t section = i / 2;
        EXPECT_EQ(questions[i].section, static_cast<int>(section));
        EXPECT_TRUE(question.ends_with('?')) << question;
        EXPECT_EQ(question.find("grace"), std::string::npos) << question;
        const bool aboutItsPassage = question.find(passages[section]) != std::string::npos;
        const bool aboutItsWords =
            std::any_of(ownWords[section].begin(), ownWords[section].end(),
                        [&](const std::string& word) { return question.find(word) != std::string::npos; });
        EXPECT_TRUE(i % 2 == 0 ? aboutItsPassage : aboutItsWords) << question;
        std::size_t third = question.find(' ', question.find(' ', question.find(' ') + 1) + 1);
        openings.insert(question.substr(0, third));
    }
    EXPECT_EQ(openings.size(), questions.size());
    // Another sermon with the same sections does not read the same.
    model::SermonNote other = sermon;
    other.title = "Treasure!";
    EXPECT_NE(GenerateDiscussionQuestions().fallback(other), questions);
}

TEST(SermonTagSuggester, readsTagLinesAndFallsBackToRepeatedWords) {
    SermonTagSuggester tags;
    EXPECT_NE(tags.instructions().find("Give at most 5. Name what"), std::string::npos);
    EXPECT_EQ(tags.tagsFrom("Providence\n- grief and hope\n2. Trust.\nprovidence\nA tag that is far too long\nTags: x"),
              (std::vector<std::string>{"Providence", "grief and hope", "Trust"}));
    EXPECT_EQ(SermonTagSuggester(2).tagsFrom("a\nb\nc"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(tags.tagsFrom("2 Corinthians\n1) self-control\nGod’s kindness\nÉphèse"),
              (std::vector<std::string>{"2 Corinthians", "self-control", "God’s kindness", "Éphèse"}));
    // Lines not shaped like tags are dropped; with nothing left the reply is rejected.
    for (const char* unshaped :
         {"|| Why", "\"Grace\"", "Tags:", "Grace, Hope, Love", "Romans 8", "romans 8:31", "one two three four",
          "Here are some tags for this sermon about many things:", "-- grace", "grace -"}) {
        try {
            tags.tagsFrom(unshaped, {*scripture::parse("Romans 8:28-30")});
            ADD_FAILURE() << unshaped;
        } catch (const IntelligenceError& error) {
            EXPECT_EQ(error.text(), "Nothing in the answer was shaped like a tag.") << unshaped;
        }
    }
    EXPECT_EQ(tags.tagsFrom("Romans 8:28\nGrace", {*scripture::parse("Romans 8:28-30")}),
              (std::vector<std::string>{"Romans 8:28", "Grace"}));
    std::vector<std::string> fallback = tags.fallback(sampleSermon());
    ASSERT_FALSE(fallback.empty());
    EXPECT_LE(fallback.size(), 5u);
    EXPECT_NE(std::find(fallback.begin(), fallback.begin() + 2, "grace"), fallback.begin() + 2);

    // Filler never becomes a tag, however often it is said; forms of one word count together and
    // the headings say most about what a sermon is about.
    model::SermonNote filler;
    filler.title = "Forgiven to forgive";
    model::SermonTopic topic;
    topic.title = "Forgiveness costs";
    filler.topics = {topic};
    filler.notes = "Good things will come. Good things will happen, good people will see things. Forgiving is "
                   "hard. We forgive because we were forgiven. Good things, good things. Mercy triumphs. Mercy wins.";
    std::vector<std::string> themes = tags.fallback(filler);
    ASSERT_GE(themes.size(), 2u);
    EXPECT_EQ(themes[0].substr(0, 7), "forgive");
    EXPECT_EQ(
        std::count_if(themes.begin(), themes.end(), [](const std::string& tag) { return tag.starts_with("forgiv"); }),
        1);
    EXPECT_NE(std::find(themes.begin(), themes.end(), "mercy"), themes.end());
    for (const std::string& tag : themes)
        for (const char* word : {"good", "things", "will", "people", "happen"})
            EXPECT_NE(tag, word);
}

TEST(HighlightSuggester, picksOfferedSentencesOnly) {
    HighlightSuggester highlights;
    std::vector<std::string> sentences = HighlightSuggester::sentencesOf(sampleSermon());
    ASSERT_EQ(sentences.size(), 6u);
    std::vector<Highlight> picked =
        highlights.highlightsFrom("4 || turns the argument\n9 || made up\n4 || again", sentences);
    ASSERT_EQ(picked.size(), 1u);
    EXPECT_EQ(picked[0], (Highlight{4, sentences[4], "turns the argument"}));
    EXPECT_THROW(highlights.highlightsFrom("7 || none of these", sentences), IntelligenceError);
    std::vector<Highlight> fallback = HighlightSuggester(2).fallback(sampleSermon());
    ASSERT_EQ(fallback.size(), 2u);
    EXPECT_LT(fallback[0].sentence, fallback[1].sentence);
}

TEST(SermonTitleAndSummary, keepsTitlesWithinTheLimitsAndFallsBackToTheWorkingTitle) {
    model::SermonNote sermon = sampleSermon();
    std::string instructions = SermonTitleAndSummary::instructions(sermon);
    EXPECT_NE(instructions.find("Give 3 different phrasings"), std::string::npos);
    EXPECT_NE(instructions.find("each at most 60 characters. Then"), std::string::npos);
    EXPECT_NE(instructions.find("at most 280 characters of plain prose"), std::string::npos);
    EXPECT_NE(instructions.find("are: Romans 8:28-30. Never quote"), std::string::npos);
    std::string longTitle(61, 'x');
    TitleAndSummary copy = SermonTitleAndSummary::copyFrom(
        "TITLE: \"Held, Not Holding\"\ntitle: " + longTitle +
            "\nTITLE: Grace in John 3:16\nTITLE: Romans 8:28 and Us\n" +
            "TITLE: Busy Providence\nTITLE: A Fourth\nSUMMARY: " + std::string(300, 'y'),
        sermon);
    EXPECT_EQ(copy.titles, (std::vector<std::string>{"Held, Not Holding", "Romans 8:28 and Us", "Busy Providence"}));
    EXPECT_LE(featureText::characterCount(copy.summary), 280u);
    EXPECT_THROW(SermonTitleAndSummary::copyFrom("SUMMARY: only a summary", sermon), IntelligenceError);

    TitleAndSummary fallback = SermonTitleAndSummary().fallback(sermon);
    EXPECT_EQ(fallback.titles,
              (std::vector<std::string>{"Held by Grace", "Held by Grace: Resting in it", "Romans — Held by Grace"}));
    EXPECT_FALSE(fallback.summary.empty());
    EXPECT_LE(featureText::characterCount(fallback.summary), 280u);

    SermonMediaPackage package = SermonMediaPackage::assemble(sermon, fallback, false);
    EXPECT_EQ(package.captions.size(), 3u);
    for (const SocialCaption& caption : package.captions)
        EXPECT_TRUE(caption.text.starts_with("Held by Grace")) << caption.platform;
    ASSERT_EQ(package.chapterMarkers.size(), 2u);
    EXPECT_EQ(package.chapterMarkers[0], (ChapterMarker{"Resting in it", 0}));
    EXPECT_GT(package.chapterMarkers[1].startSeconds, 0);
    EXPECT_LE(package.pullQuotes.size(), 3u);
}

TEST(SermonArticleGenerator, rejectsScriptureOutsideTheSermon) {
    model::SermonNote sermon = sampleSermon();
    EXPECT_EQ(SermonArticleGenerator::articleFrom("  Grace holds, as Romans 8:28 reminds us.\n", sermon),
              "Grace holds, as Romans 8:28 reminds us.");
    try {
        SermonArticleGenerator::articleFrom("As John 3:16 says…", sermon);
        FAIL();
    } catch (const IntelligenceError& error) {
        EXPECT_EQ(error.text(), "The article cited scripture that was not part of this sermon.");
    }
    EXPECT_THROW(SermonArticleGenerator::articleFrom("\n", sermon), IntelligenceError);
    std::string fallback = SermonArticleGenerator().fallback(sermon);
    EXPECT_TRUE(fallback.starts_with("Grace holds us when we cannot hold on."));
    EXPECT_NE(fallback.find("God is at work. Even in loss"), std::string::npos);
    EXPECT_NE(fallback.find("(See Romans 8:28-30.)"), std::string::npos);
}

TEST(RewriteForTheRoom, acceptsOnlyRewritesVerifiedAgainstTheOriginal) {
    const std::string original = "In Romans 8:28 Paul promises that God works all things together for good. Twelve "
                                 "disciples once doubted this in Galilee, and so do we.";
    struct Case {
        const char* name;
        std::string reply;
        bool accepted;
    };
    const Case cases[] = {
        {"plainer words",
         "Paul promises in Romans 8:28 that God works all things for good. Twelve disciples in "
         "Galilee once doubted it. So do we.",
         true},
        {"a new scripture reference",
         "Paul promises in Romans 8:28 and John 3:16 that God works all things for good. "
         "Twelve disciples in Galilee doubted.",
         false},
        {"a new proper name",
         "Paul promises in Romans 8:28 that God works all things for good. Twelve disciples and "
         "Peter in Galilee doubted it.",
         false},
        {"a new number",
         "Paul promises in Romans 8:28 that God works all things for good. In 1990 twelve disciples "
         "in Galilee doubted.",
         false},
        {"far too short", "God works for good.", false},
        {"far too long", original + " " + original, false},
        {"empty", "  ", false},
    };
    for (const Case& test : cases) {
        if (test.accepted) {
            EXPECT_EQ(RewriteForTheRoom::verified(original, test.reply).text, test.reply) << test.name;
        } else {
            EXPECT_THROW(RewriteForTheRoom::verified(original, test.reply), IntelligenceError) << test.name;
        }
    }
    EXPECT_EQ(RewriteForTheRoom::instructions(RoomProfile::smallGroup).substr(0, 40),
              "Rewrite this for a small group sitting c");
    EXPECT_NE(RewriteForTheRoom::instructions(RoomProfile::liveStream).find("direct sentences. Keep every fact"),
              std::string::npos);
    EXPECT_EQ(RewriteForTheRoom::caption(RoomProfile::youthAndFamily, 6.04),
              "Rewritten by a model for Youth & Family. Reading grade 6.0");
    // Flesch–Kincaid: "The cat sat on the mat." is 6 words, 6 syllables, 1 sentence.
    EXPECT_NEAR(RewriteForTheRoom::readingGrade("The cat sat on the mat."), 0.39 * 6 + 11.8 - 15.59, 1e-9);
    EXPECT_EQ(RewriteForTheRoom().fallback({original, RoomProfile::liveStream}).text, original);
    EXPECT_EQ(roomProfileFromRawValue("largeSanctuary"), RoomProfile::largeSanctuary);
    EXPECT_EQ(roomProfileFromRawValue("attic"), std::nullopt);
}

TEST(AlternativeOutlines, mustNameTheApproachAndCoverEverySection) {
    OutlinePassage passage{
        "Psalms",
        23,
        {{1, "The LORD is my shepherd; I shall not want."}, {2, "He maketh me to lie down in green pastures."}}};
    EXPECT_EQ(AlternativeOutlines::prompt(passage), "0. Psalms 23:1 — The LORD is my shepherd; I shall not want.\n1. "
                                                    "Psalms 23:2 — He maketh me to lie down in green pastures.");
    struct Case {
        const char* name;
        const char* reply;
        const char* rejection;
    };
    const Case cases[] = {
        {"good", "NAME: Need and provision\n0 || The need named\n1 || The rest given", nullptr},
        {"lower-case key", "name: Need and provision\n1 || Rest\n0 || Need", nullptr},
        {"no name", "0 || The need\n1 || The rest", "No outline name was given."},
        {"empty name", "NAME:   \n0 || a\n1 || b", "The outline name was unusable."},
        {"a section missing", "NAME: Shape\n0 || The need\n5 || Beyond", "The outline did not cover every section."},
        {"a reference not given", "NAME: Shape\n0 || As in John 10:11\n1 || Rest",
         "The outline did not cover every section."},
    };
    for (const Case& test : cases) {
        try {
            AlternativeOutline outline = AlternativeOutlines::outlineFrom(test.reply, passage);
            EXPECT_EQ(test.rejection, nullptr) << test.name;
            EXPECT_EQ(outline.points.size(), 2u) << test.name;
        } catch (const IntelligenceError& error) {
            ASSERT_NE(test.rejection, nullptr) << test.name;
            EXPECT_EQ(error.text(), test.rejection) << test.name;
        }
    }
    EXPECT_EQ(AlternativeOutlines::outlineFrom("name: Need\n1 || Rest\n0 || Need", passage).points,
              (std::vector<std::string>{"Need", "Rest"}));
    AlternativeOutline fallback = AlternativeOutlines().fallback(passage);
    EXPECT_EQ(fallback.name, "Verse by verse");
    EXPECT_EQ(fallback.points[0], "The LORD is my shepherd; I shall not want."); // numbered where it is shown
}

TEST(SeriesIdeaSuggester, proposesOnlyNeverPreachedBooks) {
    std::vector<std::string> never = SeriesIdeaSuggester::booksNeverPreached({sampleSermon()});
    EXPECT_EQ(never.size(), 65u);
    EXPECT_EQ(std::find(never.begin(), never.end(), "Romans"), never.end());
    EXPECT_EQ(never.front(), "Genesis");
    std::vector<std::string> books = {"Ruth", "Jonah", "Philemon", "Jude"};
    std::vector<SeriesIdea> ideas =
        SeriesIdeaSuggester::ideasFrom("1 || Running From God: a prophet's flight.\n9 || Invented\n1 || again\n0 || "
                                       "Kinsman\n3 || Contend\n2 || Too many",
                                       books);
    EXPECT_EQ(ideas, (std::vector<SeriesIdea>{{"Jonah", "Running From God", "a prophet's flight."},
                                              {"Ruth", "Kinsman", ""},
                                              {"Jude", "Contend", ""}}));
    EXPECT_THROW(SeriesIdeaSuggester::ideasFrom("7 || nothing offered", books), IntelligenceError);
    // The planner is given no references, so a reason that names one is its own invention.
    EXPECT_THROW(SeriesIdeaSuggester::ideasFrom("3 || Contend: see Jude 1:3 and John 3:16.", books), IntelligenceError);
    EXPECT_EQ(SeriesIdeaSuggester::ideasFrom("3 || Contend: see Jude 1:3.\n1 || Mercy: the book of Jonah.", books),
              (std::vector<SeriesIdea>{{"Jonah", "Mercy", "the book of Jonah."}}));
    EXPECT_TRUE(SeriesIdeaSuggester().fallback(books).empty());
}

/// Runs `feature` on `input` through a router to a server that would answer anything, and checks
/// that nothing was asked and nothing was labelled generated.
template <typename Feature, typename Input>
void expectNoRequest(const Feature& feature, const Input& input, const std::string& emptyState) {
    StubModelServer server;
    server.setDefaultChat(Behaviour::reply("0 || Anything at all?\nNAME: x\nTITLE: x\ntag"));
    platform::Preferences preferences = platform::Preferences::inMemory();
    LocalModelSettings settings;
    settings.endpoint = server.endpoint();
    auto router = makeSharedRouter(preferences, std::make_shared<LocalModelBackend>(settings));
    EXPECT_EQ(Feature::emptyState(input), emptyState);
    auto outcome = orvane::run(feature, input, *router);
    EXPECT_TRUE(outcome.path.isFallback()) << emptyState;
    EXPECT_FALSE(outcome.needsGeneratedLabel) << emptyState;
    EXPECT_TRUE(server.chatMessages().empty()) << emptyState;
}

TEST(GenerationFeatures, withNothingToWorkFromNoRequestIsMadeAndNothingIsLabelledGenerated) {
    model::SermonNote titleOnly;
    titleOnly.title = "Untitled thoughts";
    model::SermonNote blank;
    expectNoRequest(GenerateDiscussionQuestions(), titleOnly, SectionQuestions::nothingToAskAbout);
    expectNoRequest(ListenerQuestions(), titleOnly, SectionQuestions::nothingToAskAbout);
    expectNoRequest(SermonArticleGenerator(), titleOnly, SermonArticleGenerator::nothingToWriteFrom);
    expectNoRequest(HighlightSuggester(), titleOnly, HighlightSuggester::noManuscript);
    expectNoRequest(SermonTagSuggester(), blank, SermonTagSuggester::nothingToTag);
    expectNoRequest(SermonTitleAndSummary(), blank, SermonTitleAndSummary::nothingToPhrase);
    expectNoRequest(RewriteForTheRoom(), RewriteRequest{"  \n", RoomProfile::smallGroup},
                    RewriteForTheRoom::nothingToRewrite);
    expectNoRequest(AlternativeOutlines(), OutlinePassage{"Jude", 1, {}}, AlternativeOutlines::noVerses);
    expectNoRequest(SeriesIdeaSuggester(), std::vector<std::string>{}, SeriesIdeaSuggester::nothingToPlan);
    // Something to work from: no empty state.
    EXPECT_EQ(SermonTagSuggester::emptyState(titleOnly), "");
    EXPECT_EQ(HighlightSuggester::emptyState(sampleSermon()), "");
}

TEST(GenerationFeatures, runThroughTheLocalServerEndToEnd) {
    StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    LocalModelSettings settings;
    settings.endpoint = server.endpoint();
    settings.replyTimeout = std::chrono::milliseconds(300);
    auto router = makeSharedRouter(preferences, std::make_shared<LocalModelBackend>(settings));
    model::SermonNote sermon = sampleSermon();

    server.queueChat(Behaviour::reply("Providence\nGrief"));
    auto tags = orvane::run(SermonTagSuggester(), sermon, *router);
    EXPECT_EQ(tags.value, (std::vector<std::string>{"Providence", "Grief"}));
    EXPECT_TRUE(tags.needsGeneratedLabel);
    EXPECT_EQ(server.chatMessages().back().first, SermonTagSuggester().instructions());

    server.queueChat(Behaviour::neverReply());
    auto questions = orvane::run(ListenerQuestions(), sermon, *router);
    EXPECT_TRUE(questions.path.isFallback());
    EXPECT_FALSE(questions.path.reason());
    EXPECT_EQ(questions.value, ListenerQuestions().fallback(sermon));

    server.queueChat(Behaviour::reply("TITLE: Held"));
    auto copy = orvane::run(SermonTitleAndSummary(), sermon, *router);
    EXPECT_EQ(copy.value.titles, std::vector<std::string>{"Held"});

    server.setModelsBehaviour(Behaviour::statusCode(503));
    auto article = orvane::run(SermonArticleGenerator(), sermon, *router);
    EXPECT_EQ(article.path, orvane::IntelligencePath::fallback(orvane::IntelligenceUnavailableReason::modelNotReady()));
}

} // namespace
} // namespace quillon::intelligence
