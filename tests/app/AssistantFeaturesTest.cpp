#include "app/AssistantFeatures.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"
#include "support/SermonFixtures.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

using Behaviour = testing::StubModelServer::Behaviour;

AssistantRequest requestFor(AssistantFeatureId id, const model::SermonNote& sermon) {
    AssistantRequest request{sermon, {sermon}, 1, "smallGroup", ""};
    if (id == AssistantFeatureId::askYourLibrary)
        request.text = "love";
    if (id == AssistantFeatureId::passageCommentary)
        request.text = "John 3:16";
    if (id == AssistantFeatureId::illustrationFinder)
        request.text = "love gives first";
    return request;
}

// Every sheet ends in an answer, never an error: without a model each gives its model-free answer (or
// the sentence for nothing to work from), and a model that fails never shows through.
TEST(AssistantFeatures, EverySheetEndsInAnAnswerWhateverTheServerDoes) {
    const model::SermonNote sermon = testing::makeSermon("Love that gives");
    testing::StubModelServer server;
    struct Case {
        const char* name;
        std::optional<Behaviour> behaviour;
    };
    for (const Case& c : {Case{"no server", std::nullopt}, Case{"503", Behaviour::statusCode(503)},
                          Case{"reply citing nothing", Behaviour::reply("Something with no sources at all.")}}) {
        platform::Preferences preferences = platform::Preferences::inMemory();
        preferences.set("Quillon.intelligence.endpoint", c.behaviour ? server.endpoint() : "http://127.0.0.1:1/v1");
        if (c.behaviour)
            server.setDefaultChat(*c.behaviour);
        auto router = intelligence::makeSharedRouter(preferences);
        for (const AssistantFeatureDescription& feature : assistantFeatures()) {
            const AssistantAnswer answer =
                runAssistant(feature.id, requestFor(feature.id, sermon), *router, {&preferences, nullptr, nullptr});
            EXPECT_TRUE(!answer.items.empty() || !answer.emptyState.empty() || !answer.caption.caption.empty())
                << c.name << ": " << feature.title;
            EXPECT_EQ(answer.emptyState.find("could not prepare"), std::string::npos)
                << c.name << ": " << feature.title;
            // Free text (an article, a rewrite) may stand on its own; only failures must fall back.
            if (!feature.asksModel || (c.behaviour && c.behaviour->kind == Behaviour::Kind::reply))
                continue;
            EXPECT_TRUE(answer.caption.label.empty()) << c.name << ": " << feature.title;
            if (!c.behaviour && answer.emptyState.empty()) {
                EXPECT_EQ(answer.caption.reason,
                          "Quillon could not reach the local model server at http://127.0.0.1:1/v1.")
                    << feature.title;
            }
        }
    }
}

TEST(AssistantFeatures, AGroundedReplyIsLabelledAndATitleIsOfferedAsAProposal) {
    const model::SermonNote sermon = testing::makeSermon("Love that gives");
    testing::StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    preferences.set("Quillon.intelligence.endpoint", server.endpoint());
    auto router = intelligence::makeSharedRouter(preferences);
    server.setDefaultChat(Behaviour::reply("TITLE: Love That Gives First\nSUMMARY: Love gives before it is asked."));
    const AssistantAnswer titles = runAssistant(AssistantFeatureId::titlesAndSummary,
                                                requestFor(AssistantFeatureId::titlesAndSummary, sermon), *router, {});
    EXPECT_EQ(titles.caption.label, "[Generated]");
    EXPECT_EQ(titles.proposal, AssistantProposal::setTitle);
    ASSERT_FALSE(titles.items.empty());
    EXPECT_EQ(titles.items[0].text, "Love That Gives First");
    EXPECT_TRUE(titles.items[0].proposable);
    EXPECT_FALSE(titles.items.back().proposable);

    // The model-free check and search never ask a model, so never carry its label.
    const AssistantAnswer rewrite =
        runAssistant(AssistantFeatureId::rewriteForTheRoom, {sermon, {}, 4, "smallGroup", ""}, *router, {});
    EXPECT_EQ(rewrite.emptyState, "This sermon has no section 4.");
    const AssistantAnswer room =
        runAssistant(AssistantFeatureId::rewriteForTheRoom, {sermon, {}, 1, "garden", ""}, *router, {});
    EXPECT_NE(room.emptyState.find("There is no room called “garden”"), std::string::npos);
}

} // namespace
} // namespace quillon::app
