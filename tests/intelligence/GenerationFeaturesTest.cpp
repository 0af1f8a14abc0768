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
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(sections[0].heading, "God is at work"); // sort order, not stored order
    EXPECT_EQ(SectionQuestions::prompt(sections),
              "0. God is at work\nEven in loss, providence is quietly busy.\nThe promise: All things work together "
              "for good.\nScripture cited here: Romans 8:28-30\n1. Resting in it\nTrust is a practice, not a feeling.");
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
         "0 || What does Romans 8:28 promise?\n1 || Is Romans 8:28 true?",
         {"What does Romans 8:28 promise?"},
         nullptr},
        {"scripture not given at all",
         "0 || What does John 3:16 add?",
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
    EXPECT_EQ(discussion.fallback(sermon).size(), 4u);
    EXPECT_NE(discussion.fallback(sermon)[1].question.find("Romans 8:28-30"), std::string::npos);
    EXPECT_TRUE(discussion.fallback(model::SermonNote{}).empty());
}

TEST(SermonTagSuggester, readsTagLinesAndFallsBackToRepeatedWords) {
    SermonTagSuggester tags;
    EXPECT_NE(tags.instructions().find("Give at most 5. Name what"), std::string::npos);
    EXPECT_EQ(tags.tagsFrom("Providence\n- grief and hope\n2. Trust.\nprovidence\nA tag that is far too long\nTags: x"),
              (std::vector<std::string>{"Providence", "grief and hope", "Trust"}));
    EXPECT_EQ(SermonTagSuggester(2).tagsFrom("a\nb\nc"), (std::vector<std::string>{"a", "b"}));
    EXPECT_THROW(tags.tagsFrom("Here are some tags for this sermon about many things:\n\n"), IntelligenceError);
    std::vector<std::string> fallback = tags.fallback(sampleSermon());
    ASSERT_FALSE(fallback.empty());
    EXPECT_LE(fallback.size(), 5u);
    EXPECT_EQ(fallback[0], "grace");
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
              (std::vector<std::string>{"Held by Grace", "Held by Grace: God is at work", "Romans — Held by Grace"}));
    EXPECT_FALSE(fallback.summary.empty());
    EXPECT_LE(featureText::characterCount(fallback.summary), 280u);

    SermonMediaPackage package = SermonMediaPackage::assemble(sermon, fallback, false);
    EXPECT_EQ(package.captions.size(), 3u);
    for (const SocialCaption& caption : package.captions)
        EXPECT_TRUE(caption.text.starts_with("Held by Grace")) << caption.platform;
    ASSERT_EQ(package.chapterMarkers.size(), 2u);
    EXPECT_EQ(package.chapterMarkers[0], (ChapterMarker{"God is at work", 0}));
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
    EXPECT_EQ(fallback.points[0], "1. The LORD is my shepherd; I shall not want.");
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
    EXPECT_TRUE(SeriesIdeaSuggester().fallback(books).empty());
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
