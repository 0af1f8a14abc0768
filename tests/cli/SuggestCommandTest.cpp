#include "cli/LibraryRun.h"

#include "intelligence/HighlightSuggester.h"
#include "intelligence/RewriteForTheRoom.h"
#include "intelligence/SectionQuestions.h"
#include "intelligence/SeriesIdeaSuggester.h"
#include "intelligence/SermonArticleGenerator.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SermonTitleAndSummary.h"
#include "platform/Preferences.h"
#include "support/SermonFixtures.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace quillon::cli {
namespace {

using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;
using namespace intelligence;

/// One kind of suggestion: its arguments, its captions and a reply a model might well give for the fixture sermon
/// (one topic "The love of God" citing John 3:16-17, notes "For God so loved the world.").
struct Kind {
    std::vector<std::string> arguments;
    std::string fallbackCaption;
    std::string generatedCaption;
    std::string goodReply;
};

const std::string titlesReply = "TITLE: Love That Gives First\nTITLE: The Love That Goes First\nSUMMARY: Love gives "
                                "before it is asked, broad and deep.";

const std::vector<Kind> kinds = {
    {{"questions"},
     GenerateDiscussionQuestions::fallbackCaption,
     GenerateDiscussionQuestions::generatedCaption,
     "0 || Where could you give first this week?"},
    {{"listener"},
     ListenerQuestions::fallbackCaption,
     ListenerQuestions::generatedCaption,
     "0 || What does broad and deep mean here?"},
    {{"outline", "--section", "1"}, "", "", "NAME: Gift and purpose\n0 || The gift given\n1 || The purpose of sending"},
    {{"article"},
     SermonArticleGenerator::fallbackCaption,
     SermonArticleGenerator::generatedCaption,
     "Love gives first. It is broad and deep, and it was given before anyone asked."},
    {{"series"},
     SeriesIdeaSuggester::fallbackCaption,
     SeriesIdeaSuggester::generatedCaption,
     "0 || Beginnings: Every story this church tells starts here."},
    {{"tags"}, SermonTagSuggester::fallbackCaption, SermonTagSuggester::generatedCaption, "self-giving love\ngrace"},
    {{"highlights"},
     HighlightSuggester::fallbackCaption,
     HighlightSuggester::generatedCaption,
     "0 || The whole sermon in one line"},
    {{"titles"}, SermonTitleAndSummary::fallbackCaption, SermonTitleAndSummary::generatedCaption, titlesReply},
    {{"media"}, SermonTitleAndSummary::fallbackCaption, SermonTitleAndSummary::generatedCaption, titlesReply},
    // The generated caption and the good reply of a rewrite depend on the section's own text; see below.
    {{"rewrite", "--room", "smallGroup", "--section", "1"}, RewriteForTheRoom::unverified, "", ""},
};

std::string joined(const std::vector<std::string>& arguments) {
    std::string text;
    for (const auto& argument : arguments)
        text += argument + " ";
    return text;
}

class SuggestCommandTest : public testing::LibraryRun {
protected:
    SuggestCommandTest() { put(sermon); }
    void usePreference(const std::string& key, nlohmann::json value) {
        platform::Preferences(folder / "config" / "Quillon" / "preferences.json").set(key, std::move(value));
    }
    Result suggest(const Kind& kind, bool json = false) {
        std::vector<std::string> arguments{"suggest", kind.arguments[0], sermon.id.text()};
        arguments.insert(arguments.end(), kind.arguments.begin() + 1, kind.arguments.end());
        if (json)
            arguments.insert(arguments.begin(), "--json");
        return run(arguments);
    }

    model::SermonNote sermon = testing::makeSermon("Love that gives");
};

TEST_F(SuggestCommandTest, everyKindWithoutAModelGivesItsFallbackCaptionAndTheReason) {
    struct Off {
        std::string name;
        nlohmann::json disabled;
        std::string reason;
    };
    for (const Off& off : {Off{"no server", false,
                               "Quillon could not reach the local model server at "
                               "http://127.0.0.1:1/v1."},
                           Off{"switched off", true, "Intelligence features are switched off in Settings."}}) {
        usePreference("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        usePreference("Quillon.intelligenceDisabled", off.disabled);
        for (const Kind& kind : kinds) {
            const auto suggested = suggest(kind);
            const std::string header = (kind.fallbackCaption.empty() ? "" : kind.fallbackCaption + "\n") + off.reason;
            EXPECT_EQ(suggested.status, 0) << joined(kind.arguments) << suggested.err;
            EXPECT_TRUE(suggested.out.starts_with(header + "\n\n"))
                << off.name << ", " << joined(kind.arguments) << ":\n"
                << suggested.out;
            EXPECT_EQ(suggested.out.find("[Generated]"), std::string::npos) << joined(kind.arguments);

            const auto json = nlohmann::json::parse(suggest(kind, true).out);
            EXPECT_EQ(json["path"], "fallback") << joined(kind.arguments);
            EXPECT_EQ(json["generated"], false) << joined(kind.arguments);
            EXPECT_EQ(json["reason"], off.reason) << joined(kind.arguments);
            EXPECT_FALSE(json["lines"].empty()) << joined(kind.arguments);
        }
    }
}

TEST_F(SuggestCommandTest, aGoodReplyIsShownWithTheGeneratedLabelAndCaption) {
    StubModelServer server;
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    for (const Kind& kind : kinds) {
        if (kind.goodReply.empty())
            continue;
        server.queueChat(Behaviour::reply(kind.goodReply));
        const auto suggested = suggest(kind);
        EXPECT_EQ(suggested.status, 0) << joined(kind.arguments) << suggested.err;
        const std::string header =
            std::string("[Generated]") + (kind.generatedCaption.empty() ? "" : " " + kind.generatedCaption);
        EXPECT_TRUE(suggested.out.starts_with(header + "\n\n")) << joined(kind.arguments) << ":\n" << suggested.out;
    }
    // What the model wrote is what is shown.
    server.queueChat(Behaviour::reply(kinds[0].goodReply));
    EXPECT_NE(suggest(kinds[0]).out.find("Where could you give first this week?"), std::string::npos);
    server.queueChat(Behaviour::reply(kinds[4].goodReply));
    const auto series = suggest(kinds[4]).out;
    EXPECT_NE(series.find("Genesis — Beginnings: Every story this church tells starts here."), std::string::npos)
        << series;
    // The caption promises the full list of never-preached books below the proposals.
    EXPECT_NE(series.find("\nRevelation\n"), std::string::npos) << series;

    // An unusable reply falls back, with no reason to give: the model's error is never shown.
    server.queueChat(Behaviour::reply("I would rather not."));
    const auto refused = suggest(kinds[0]);
    EXPECT_TRUE(refused.out.starts_with(kinds[0].fallbackCaption + "\n\n")) << refused.out;
}

TEST_F(SuggestCommandTest, aRewriteIsShownOnlyWhenItKeepsToTheSection) {
    StubModelServer server;
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    const Kind& rewrite = kinds.back();
    // The fallback shows the section unchanged; a faithful rewrite may say the same in other order.
    server.queueChat(Behaviour::reply(""));
    const auto original = nlohmann::json::parse(suggest(rewrite, true).out)["lines"][0].get<std::string>();
    ASSERT_FALSE(original.empty());

    server.queueChat(Behaviour::reply(original));
    const auto kept = suggest(rewrite);
    EXPECT_TRUE(kept.out.starts_with("[Generated] Rewritten by a model for Small Group. Reading grade")) << kept.out;

    for (const std::string& unfaithful :
         {original + " Read Romans 8:28 as well.", original + " In 1999 Calvin said so.", std::string("Love.")}) {
        server.queueChat(Behaviour::reply(unfaithful));
        const auto discarded = suggest(rewrite);
        EXPECT_TRUE(discarded.out.starts_with(std::string(RewriteForTheRoom::unverified) + "\n\n" + original + "\n"))
            << unfaithful << ":\n"
            << discarded.out;
    }
}

TEST_F(SuggestCommandTest, nothingToWorkFromShowsTheEmptyStateAndAsksNothing) {
    StubModelServer server;
    server.setDefaultChat(Behaviour::reply("0 || Would anyone ask this?"));
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    const model::SermonNote titleOnly = seed("Only a title");
    struct Empty {
        std::string kind;
        std::string text;
    };
    for (const Empty& empty : {Empty{"questions", SectionQuestions::nothingToAskAbout},
                               Empty{"listener", SectionQuestions::nothingToAskAbout},
                               Empty{"article", SermonArticleGenerator::nothingToWriteFrom},
                               Empty{"highlights", HighlightSuggester::noManuscript}}) {
        EXPECT_EQ(run({"suggest", empty.kind, titleOnly.id.text()}).out, empty.text + "\n") << empty.kind;
        const auto json = nlohmann::json::parse(run({"--json", "suggest", empty.kind, titleOnly.id.text()}).out);
        EXPECT_EQ(json["path"], "fallback") << empty.kind;
        EXPECT_EQ(json["generated"], false) << empty.kind;
        EXPECT_EQ(json["empty"], empty.text) << empty.kind;
    }
    EXPECT_TRUE(server.chatMessages().empty());
}

TEST_F(SuggestCommandTest, sectionNumbersAreTheOnesShowPrints) {
    // Stored order and sortOrder disagree, and the first topic is empty: `show` still numbers
    // every topic in stored order, and so does --section.
    model::SermonScripture psalm;
    psalm.bookName = "Psalms";
    psalm.chapter = 23;
    psalm.startVerse = 2;
    psalm.endVerse = 3;
    model::SermonSubTopic pastures;
    pastures.title = "Pastures";
    pastures.scriptures = {psalm};
    model::SermonTopic empty;
    empty.sortOrder = 1;
    model::SermonTopic rest;
    rest.title = "Rest given";
    rest.details = "The shepherd gives rest before he asks for anything.";
    rest.subTopics = {pastures};
    rest.sortOrder = 0;
    sermon.topics = {empty, rest};
    put(sermon);
    usePreference("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");

    EXPECT_NE(run({"show", sermon.id.text()}).out.find("\n2. Rest given\n"), std::string::npos);
    const auto rewrite = nlohmann::json::parse(
        run({"--json", "suggest", "rewrite", sermon.id.text(), "--section", "2", "--room", "smallGroup"}).out);
    EXPECT_EQ(rewrite["lines"][0], "Rest given\nThe shepherd gives rest before he asks for anything.\nPastures");
    EXPECT_EQ(run({"suggest", "rewrite", sermon.id.text(), "--section", "1"}).out,
              std::string(RewriteForTheRoom::nothingToRewrite) + "\n");
    EXPECT_EQ(run({"suggest", "rewrite", sermon.id.text(), "--section", "3"}).err, "This sermon has no section 3.\n");

    // The outline of section 2 is numbered once, by verse.
    const auto outline =
        nlohmann::json::parse(run({"--json", "suggest", "outline", sermon.id.text(), "--section", "2"}).out);
    ASSERT_EQ(outline["lines"].size(), 3u);
    EXPECT_EQ(outline["lines"][0], "Verse by verse");
    EXPECT_TRUE(outline["lines"][1].get<std::string>().starts_with("2. He maketh me to lie down")) << outline;
    EXPECT_TRUE(outline["lines"][2].get<std::string>().starts_with("3. He restoreth my soul")) << outline;
}

TEST_F(SuggestCommandTest, noLineIsLeftBareOrDangling) {
    StubModelServer server;
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    // A model that answers NONE said something: its caption is followed by what it said.
    server.queueChat(Behaviour::reply("NONE"));
    EXPECT_EQ(suggest(kinds[0]).out, "[Generated] " + std::string(GenerateDiscussionQuestions::generatedCaption) +
                                         "\n\n" + GenerateDiscussionQuestions().noneAnswer() + "\n");
    // Titles without a summary print no empty line.
    server.queueChat(Behaviour::reply("TITLE: Love Goes First"));
    const auto titles = nlohmann::json::parse(suggest({{"titles"}, "", "", ""}, true).out);
    EXPECT_EQ(titles["lines"], nlohmann::json::array({"Love Goes First"}));
    // A proposal without a reason ends with its title, not a colon.
    server.queueChat(Behaviour::reply("0 || Beginnings"));
    const auto series = nlohmann::json::parse(suggest(kinds[4], true).out);
    EXPECT_EQ(series["lines"][0], "Genesis — Beginnings");
}

} // namespace
} // namespace quillon::cli
