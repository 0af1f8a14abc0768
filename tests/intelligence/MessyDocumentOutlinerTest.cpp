#include "intelligence/MessyDocumentOutliner.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

namespace quillon::intelligence {
namespace {

using orvane::IntelligenceError;
using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

/// `words` filler words, enough substance for a topic to be closed after it.
std::string filler(int words) {
    std::string text;
    for (int i = 0; i < words; ++i)
        text += (i == 0 ? "" : " ") + std::string("grace");
    return text;
}

std::vector<std::size_t> starts(const std::vector<OutlineSection>& sections) {
    std::vector<std::size_t> result;
    for (const OutlineSection& section : sections)
        result.push_back(section.firstPassage);
    return result;
}

TEST(MessyDocumentOutliner, ruleStartsTopicsWhereTheSpeakerMovesOn) {
    struct Case {
        const char* name;
        std::vector<SpokenPassage> passages;
        std::vector<std::size_t> expected;
    };
    const Case cases[] = {
        {"long pause", {{filler(30), 0}, {"after the break " + filler(5), 2.0}}, {0, 1}},
        {"short pause", {{filler(30), 0}, {"after a breath", 0.8}}, {0}},
        {"spoken heading", {{filler(30), 0}, {"secondly we must pray", 0.2}}, {0, 1}},
        {"reference", {{filler(30), 0}, {"turn to romans eight twenty eight", 0.1}}, {0, 1}},
        {"too little said yet", {{filler(10), 0}, {"secondly we must pray", 3.0}}, {0}},
        {"substance gathers over passages", {{filler(15), 0}, {filler(15), 0.2}, {"finally brothers", 0.2}}, {0, 2}},
        {"nothing", {}, {}},
    };
    const MessyDocumentOutliner outliner;
    for (const Case& c : cases)
        EXPECT_EQ(starts(outliner.fallback(c.passages)), c.expected) << c.name;

    std::vector<SpokenPassage> many;
    for (int i = 0; i < 40; ++i)
        many.push_back({filler(30), 3.0});
    EXPECT_EQ(outliner.fallback(many).size(), MessyDocumentOutliner::maximumTopics);
}

TEST(MessyDocumentOutliner, ruleNamesTopicsByReferenceOrFirstWords) {
    const auto sections = MessyDocumentOutliner().fallback({
        {"good morning church it is good to be together this morning " + filler(20), 0},
        {"turn with me to john chapter three verse sixteen", 2.0},
        {filler(30), 0.1},
        {"first corinthians thirteen four love is patient", 0.1},
    });
    EXPECT_EQ(sections,
              (std::vector<OutlineSection>{
                  {"Good morning church it is good to be…", 0}, {"John 3:16", 1}, {"1 Corinthians 13:4", 3}}));
}

TEST(MessyDocumentOutliner, readsTheModelsTopicLines) {
    EXPECT_EQ(MessyDocumentOutliner::sectionsFrom("TOPIC 1: Welcome\nTOPIC 3: \"Love Is Patient\"\nTOPIC 9: Far\n"
                                                  "TOPIC 2: Backwards\nnoise\n**Topic 4 - Sending**",
                                                  5),
              (std::vector<OutlineSection>{{"Welcome", 0}, {"Love Is Patient", 2}, {"Sending", 3}}));
    // One line after the opening topic, in each of the shapes models write it or get wrong.
    struct Case {
        std::string line;
        std::vector<OutlineSection> expected;
    };
    const std::vector<Case> cases{
        {"topic 2. Sent out", {{"Opening", 0}, {"Sent out", 1}}},
        {"** TOPIC\t2 :  “Sent”  **", {{"Opening", 0}, {"“Sent”", 1}}},
        {"TOPIC 00002 - Padded", {{"Opening", 0}, {"Padded", 1}}},
        {"TOPIC 000002: Six digits", {{"Opening", 0}}},
        {"TOPIC2: Glued", {{"Opening", 0}}},
        {"TOPICS 2: Plural", {{"Opening", 0}}},
        {"TOPIC 2 Sent", {{"Opening", 0}}},
        {"TOPIC 2: \"  \" **", {{"Opening", 0}}},
        {"Our TOPIC 2: Later", {{"Opening", 0}}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MessyDocumentOutliner::sectionsFrom("TOPIC 1: Opening\n" + c.line, 5), c.expected) << c.line;
    // A model that skips the opening still covers it: the first topic starts at the first passage.
    EXPECT_EQ(starts(MessyDocumentOutliner::sectionsFrom("TOPIC 2: Later", 3)), std::vector<std::size_t>{0});
    EXPECT_THROW(MessyDocumentOutliner::sectionsFrom("I could not find topics.", 3), IntelligenceError);
    EXPECT_THROW(MessyDocumentOutliner::sectionsFrom("TOPIC 0: Nothing", 3), IntelligenceError);
    EXPECT_EQ(MessyDocumentOutliner::prompt({{"hello there", 0}, {"next part", 1.25}}),
              "1. (pause 0.0 s) hello there\n2. (pause 1.2 s) next part\n");
}

TEST(MessyDocumentOutliner, readsAMegabyteLineInOnePass) {
    const std::string title(1 << 20, 'a');
    const auto sections = MessyDocumentOutliner::sectionsFrom("TOPIC 1: " + title + "\nTOPIC 2: " + title + "!", 3);
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].firstPassage, 1u);
    EXPECT_LE(sections[1].title.size(), 80u + 3u);
    EXPECT_THROW(MessyDocumentOutliner::sectionsFrom("TOPIC 1" + std::string(1 << 20, ' ') + "x", 3),
                 IntelligenceError);
}

TEST(MessyDocumentOutliner, asksTheModelAndFallsBackWhenItFails) {
    StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    LocalModelSettings settings;
    settings.endpoint = server.endpoint();
    settings.replyTimeout = std::chrono::milliseconds(300);
    auto router = makeSharedRouter(preferences, std::make_shared<LocalModelBackend>(settings));
    const std::vector<SpokenPassage> passages = {{filler(30), 0}, {"secondly we pray", 2.0}, {"amen", 0.5}};
    const MessyDocumentOutliner outliner;

    server.queueChat(Behaviour::reply("TOPIC 1: Grace\nTOPIC 3: Amen"));
    auto generated = orvane::run(outliner, passages, *router);
    EXPECT_EQ(generated.value, (std::vector<OutlineSection>{{"Grace", 0}, {"Amen", 2}}));
    EXPECT_TRUE(generated.needsGeneratedLabel);
    EXPECT_EQ(server.chatMessages().back().first, MessyDocumentOutliner::instructions());

    server.queueChat(Behaviour::reply("Sorry, no."));
    auto unusable = orvane::run(outliner, passages, *router);
    EXPECT_EQ(unusable.value, outliner.fallback(passages));
    EXPECT_FALSE(unusable.needsGeneratedLabel);

    server.queueChat(Behaviour::neverReply());
    EXPECT_EQ(orvane::run(outliner, passages, *router).value, outliner.fallback(passages));
}

} // namespace
} // namespace quillon::intelligence
