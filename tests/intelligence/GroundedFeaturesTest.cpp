#include "intelligence/AskYourLibrary.h"
#include "intelligence/FeatureText.h"
#include "intelligence/PassageCommentary.h"
#include "intelligence/ScriptureQuoteChecker.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"
#include "scripture/ReferenceParser.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

namespace quillon::intelligence {
namespace {

using orvane::IntelligencePath;
using orvane::IntelligenceUnavailableReason;
using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

class FixedTool final : public orvane::IntelligenceTool {
public:
    explicit FixedTool(std::vector<orvane::Passage> passages) : m_passages(std::move(passages)) {}
    std::string name() const override { return "commentaries"; }
    std::string purpose() const override { return "Fixed."; }
    orvane::ToolResult lookup(const std::string& query) const override {
        lookups.push_back(query);
        return {m_passages};
    }
    mutable std::vector<std::string> lookups;

private:
    std::vector<orvane::Passage> m_passages;
};

const orvane::Passage henry{"Matthew Henry's Concise Commentary — Romans 8:28-31", "That is good for the saints."};
const orvane::Passage scofield{"Scofield Reference Notes — Romans 8:28", "All things work together."};

/// A router to a stub server with a short reply timeout, as the application builds it.
struct StubRouter {
    StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    std::shared_ptr<orvane::ModelRouter> router;

    StubRouter() {
        LocalModelSettings settings;
        settings.endpoint = server.endpoint();
        settings.replyTimeout = std::chrono::milliseconds(300);
        router = makeSharedRouter(preferences, std::make_shared<LocalModelBackend>(settings));
    }
};

TEST(PassageCommentary, everyServerBehaviourEndsInAnAnswerOrTheExtracts) {
    struct Case {
        const char* name;
        Behaviour models;
        Behaviour chat;
        bool disabled;
        GroundedAnswer value;
        IntelligencePath path;
        bool label;
    };
    GroundedAnswer extractsOnly{"", {henry, scofield}, false};
    const Case cases[] = {
        {"a good grounded reply", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"),
         Behaviour::reply("  MATTHEW HENRY'S CONCISE COMMENTARY says providence serves the saints.\n"), false,
         GroundedAnswer{"MATTHEW HENRY'S CONCISE COMMENTARY says providence serves the saints.", {henry}, true},
         IntelligencePath::generated(orvane::IntelligenceBackendKind::onDevice), true},
        {"citing both by full label", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"),
         Behaviour::reply("Scofield Reference Notes — Romans 8:28 and Matthew Henry's Concise Commentary agree."),
         false,
         GroundedAnswer{"Scofield Reference Notes — Romans 8:28 and Matthew Henry's Concise Commentary agree.",
                        {henry, scofield},
                        true},
         IntelligencePath::generated(orvane::IntelligenceBackendKind::onDevice), true},
        {"a curly apostrophe in the commentator's name", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"),
         Behaviour::reply("Matthew Henry’s Concise Commentary calls it good."), false,
         GroundedAnswer{"Matthew Henry’s Concise Commentary calls it good.", {henry}, true},
         IntelligencePath::generated(orvane::IntelligenceBackendKind::onDevice), true},
        {"a reply citing nothing", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"),
         Behaviour::reply("God works all things for good."), false, extractsOnly, IntelligencePath::fallback(), false},
        {"an empty reply", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"), Behaviour::reply("  \n"), false,
         extractsOnly, IntelligencePath::fallback(), false},
        {"model still loading", Behaviour::statusCode(503), Behaviour::reply("unused"), false, extractsOnly,
         IntelligencePath::fallback(IntelligenceUnavailableReason::modelNotReady()), false},
        {"loading again when asked", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"), Behaviour::statusCode(503),
         false, extractsOnly, IntelligencePath::fallback(), false},
        {"a reply that never comes", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"), Behaviour::neverReply(),
         false, extractsOnly, IntelligencePath::fallback(), false},
        {"a dropped connection", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"), Behaviour::dropConnection(),
         false, extractsOnly, IntelligencePath::fallback(), false},
        {"switched off by the operator", Behaviour::statusCode(200, R"({"data":[{"id":"m"}]})"),
         Behaviour::reply("unused"), true, extractsOnly,
         IntelligencePath::fallback(IntelligenceUnavailableReason::disabledByOperator()), false},
    };
    for (const Case& test : cases) {
        StubRouter stub;
        stub.server.setModelsBehaviour(test.models);
        stub.server.queueChat(test.chat);
        stub.preferences.set("Quillon.intelligenceDisabled", test.disabled);
        PassageCommentary feature(std::make_shared<FixedTool>(std::vector<orvane::Passage>{henry, scofield}));
        auto outcome = orvane::run(feature, PassageCommentary::Input{"Romans 8:28", ""}, *stub.router);
        EXPECT_EQ(outcome.value, test.value) << test.name;
        EXPECT_EQ(outcome.path, test.path) << test.name;
        EXPECT_EQ(outcome.needsGeneratedLabel, test.label) << test.name;
    }
}

TEST(PassageCommentary, asksWithTheFixedInstructionsAndTheDefaultQuestion) {
    StubRouter stub;
    stub.server.queueChat(Behaviour::reply("Scofield Reference Notes says so."));
    auto tool = std::make_shared<FixedTool>(std::vector<orvane::Passage>{henry, scofield});
    orvane::run(PassageCommentary(tool), PassageCommentary::Input{"Romans 8:28", "  "}, *stub.router);
    auto messages = stub.server.chatMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].first, PassageCommentary::instructions);
    EXPECT_EQ(messages[0].second, "Passage: Romans 8:28\nQuestion: What do these commentators say about this "
                                  "passage?\n\nMatthew Henry's Concise Commentary — Romans 8:28-31\nThat is good for "
                                  "the saints.\n\nScofield Reference Notes — Romans 8:28\nAll things work together.");
    EXPECT_EQ(tool->lookups.front(), "Romans 8:28");

    // With no extracts the model is not asked and the fallback is empty.
    StubRouter quiet;
    auto outcome = orvane::run(PassageCommentary(std::make_shared<FixedTool>(std::vector<orvane::Passage>{})),
                               PassageCommentary::Input{"Obadiah 1:1", "Why?"}, *quiet.router);
    EXPECT_EQ(outcome.value, GroundedAnswer{});
    EXPECT_TRUE(quiet.server.chatMessages().empty());
}

LibrarySource sermonSource(const std::string& title, const std::string& reference) {
    return {LibrarySource::Sermon{title, "excerpt of " + title, {*scripture::parse(reference)}}};
}

LibrarySource verseSource(const std::string& book, int chapter, int verse) {
    return {LibrarySource::Verse{book, chapter, verse, model::BibleVersion::kjv, "verse text"}};
}

TEST(AskYourLibrary, keepsOnlyPointsTracedToTheirSource) {
    std::vector<LibrarySource> sources = {sermonSource("Held by Grace", "Romans 8:28-39"), verseSource("John", 3, 16)};
    EXPECT_EQ(sources[1].label(), "John 3:16 (KJV)");
    EXPECT_EQ(AskYourLibrary::prompt({"What about love?", sources}),
              "Question: What about love?\n\nSources:\n0. Sermon \"Held by Grace\": excerpt of Held by Grace\n1. John "
              "3:16 (KJV): verse text");
    struct Case {
        const char* name;
        const char* reply;
        std::vector<std::string> points;
    };
    const Case cases[] = {
        {"good",
         "0 || God works for good.\n1 || God loved the world.",
         {"God works for good.", "God loved the world."}},
        {"none in odd case", "  nOnE \n", {}},
        {"out-of-range numbers", "2 || invented\n12 || far off\n1 || kept", {"kept"}},
        {"lines without a separator or note", "0\n1 ||   \nno number || x", {}},
        {"repeats allowed", "0 || one\n0 || two", {"one", "two"}},
        {"references the source supports",
         "0 || As Romans 8:28 says\n1 || John 3:16 again",
         {"As Romans 8:28 says", "John 3:16 again"}},
        {"references not in the input",
         "0 || Compare John 3:16\n1 || See John 3:17\n1 || Romans 8:28\n1 || John 3:16\u201317\n1 || John 3:16, 17",
         {}},
    };
    for (const Case& test : cases) {
        std::vector<std::string> texts;
        for (const LibraryAnswerPoint& point : AskYourLibrary::pointsFrom(test.reply, sources))
            texts.push_back(point.text);
        EXPECT_EQ(texts, test.points) << test.name;
    }
    EXPECT_EQ(AskYourLibrary::pointsFrom("1 || x", sources)[0].source, sources[1]);
}

TEST(AskYourLibrary, searchesForTheSubjectOfTheQuestion) {
    const std::pair<const char*, const char*> cases[] = {
        {"What have I taught about rest?", "rest"},
        {"What have we preached on forgiving our enemies?", "forgiving enemies"},
        {"Have I ever said anything about the prodigal son?", "prodigal son"},
        {"What did I say about John 3:16?", "John 3:16"},
        {"Romans 8:28", "Romans 8:28"},
        {"What have I taught?", ""},
        {"grace", "grace"},
    };
    for (const auto& [question, subject] : cases)
        EXPECT_EQ(AskYourLibrary::subjectOf(question), subject) << question;
}

TEST(AskYourLibrary, noSourcesNeverAsksTheModel) {
    StubRouter stub;
    auto outcome = orvane::run(AskYourLibrary(), AskYourLibrary::Input{"Anything?", {}}, *stub.router);
    EXPECT_TRUE(outcome.value.empty());
    // No model wrote the empty answer, so it is not passed off as generated.
    EXPECT_TRUE(outcome.path.isFallback());
    EXPECT_FALSE(outcome.needsGeneratedLabel);
    EXPECT_TRUE(stub.server.chatMessages().empty());
}

model::SermonNote sermonWithQuotes(model::BibleVersion version, const std::string& details, std::string title) {
    model::SermonScripture verse;
    verse.bookName = "John";
    verse.chapter = 3;
    verse.startVerse = 16;
    verse.endVerse = 16;
    verse.version = version;
    model::SermonSubTopic sub;
    sub.id = *model::Uuid::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    sub.title = std::move(title);
    sub.details = details;
    sub.scriptures = {verse};
    model::SermonTopic topic;
    topic.subTopics = {sub};
    model::SermonNote sermon;
    sermon.topics = {topic};
    return sermon;
}

TEST(ScriptureQuoteChecker, comparesQuotationsWordByWordWithTheAttachedVerses) {
    ScriptureQuoteChecker checker([](const model::SermonScripture& scripture) -> std::optional<std::string> {
        if (scripture.version == model::BibleVersion::nkjv)
            return std::nullopt;
        return "For God so loved the world, that he gave his only begotten Son, that whosoever believeth in him "
               "should not perish, but have everlasting life.";
    });
    struct Case {
        const char* name;
        std::string details;
        std::vector<std::string> flagged;
    };
    std::string tooLong(401, 'a');
    const Case cases[] = {
        {"exact words", "He said \"For God so loved the world\" plainly.", {}},
        {"case, punctuation and curly quotes folded", "“for GOD so loved the world, that”", {}},
        {"a wrong word", "\"For God so loved the earth\"", {"For God so loved the earth"}},
        {"words out of order", "“God for so loved”", {"God for so loved"}},
        {"two characters are not a quotation", "He said \"Go\" twice.", {}},
        {"more than 400 characters is not a quotation", "\"" + tooLong + "\"", {}},
        {"a double quote inside ends it", "“he gave \"his\" only”", {}},
        {"several quotations", "\"have everlasting life\" and \"eternal life\"", {"eternal life"}},
    };
    for (const Case& test : cases) {
        std::vector<std::string> flagged;
        for (const auto& finding : checker.check(sermonWithQuotes(model::BibleVersion::kjv, test.details, "Love")))
            flagged.push_back(finding.quotation);
        EXPECT_EQ(flagged, test.flagged) << test.name;
    }
    auto mismatch = checker.check(sermonWithQuotes(model::BibleVersion::kjv, "\"eternal life\"", "Love"));
    ASSERT_EQ(mismatch.size(), 1u);
    EXPECT_EQ(mismatch[0].message(), "“eternal life” does not appear in the verses attached to “Love”.");

    auto unchecked = checker.check(sermonWithQuotes(model::BibleVersion::nkjv, "“For God so loved”", ""));
    ASSERT_EQ(unchecked.size(), 1u);
    EXPECT_EQ(unchecked[0].kind, ScriptureQuoteChecker::Finding::Kind::translationNotInThisBuild);
    EXPECT_EQ(unchecked[0].message(), "“this subtopic” quotes NKJV, which is not included in this edition, so the "
                                      "wording could not be checked.");
}

} // namespace
} // namespace quillon::intelligence
