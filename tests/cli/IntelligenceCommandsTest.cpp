#include "cli/Cli.h"
#include "cli/LibraryRun.h"
#include "model/SermonCoding.h"
#include "platform/Preferences.h"
#include "preach/PreachPaceLearner.h"
#include "support/ScopedEnvironment.h"
#include "support/SermonFixtures.h"
#include "support/StubModelServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <sstream>

namespace quillon::cli {
namespace {

using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

/// A private configuration folder holding `preferences`, for the life of the test.
struct IsolatedPreferences {
    explicit IsolatedPreferences(const nlohmann::json& preferences) {
        folder.write("Quillon/preferences.json", preferences.dump());
    }
    testing::TemporaryFolder folder;
    testing::ScopedEnvironment config{"XDG_CONFIG_HOME", folder.path().string()};
};

struct CommandRun {
    int status;
    std::string out;
    std::string err;
};

CommandRun quillon(const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    int status = runCli(arguments, out, err);
    return {status, out.str(), err.str()};
}

TEST(ModelStatusCommand, reportsEachKindAndTheReason) {
    StubModelServer server;
    IsolatedPreferences preferences(nlohmann::json{{"Quillon.intelligence.endpoint", server.endpoint()}});
    CommandRun ready = quillon({"model", "status"});
    EXPECT_EQ(ready.status, 0);
    EXPECT_EQ(ready.out, "onDevice: ready\nprivateCloud: ready\nexternal: unavailable — No external model has been set "
                         "up.\nModel server: " +
                             server.endpoint() + " (model: the first the server lists)\n");

    server.setModelsBehaviour(Behaviour::statusCode(503));
    CommandRun loading = quillon({"--json", "model", "status"});
    nlohmann::json json = nlohmann::json::parse(loading.out);
    EXPECT_EQ(json["backends"]["onDevice"]["ready"], false);
    EXPECT_EQ(json["backends"]["onDevice"]["message"], "The on-device model is still downloading.");
}

TEST(CommentaryCommand, showsTheGeneratedAnswerOrTheExtracts) {
    StubModelServer server;
    server.queueChat(Behaviour::reply("Matthew Henry's Concise Commentary says providence works for the saints."));
    {
        IsolatedPreferences preferences(nlohmann::json{{"Quillon.intelligence.endpoint", server.endpoint()}});
        CommandRun generated = quillon({"commentary", "rom 8:28", "--question", "What is the good?"});
        EXPECT_EQ(generated.status, 0) << generated.err;
        EXPECT_TRUE(generated.out.starts_with("[Generated] Generated from the sources below\n\nMatthew Henry's Concise "
                                              "Commentary says providence works for the saints.\n"))
            << generated.out;
        ASSERT_FALSE(server.chatMessages().empty());
        EXPECT_NE(server.chatMessages().back().second.find("Passage: Romans 8:28\nQuestion: What is the good?"),
                  std::string::npos);
    }
    {
        IsolatedPreferences preferences(nlohmann::json{{"Quillon.intelligence.endpoint", server.endpoint()},
                                                       {"Quillon.intelligenceDisabled", true}});
        CommandRun fallback = quillon({"commentary", "Romans 8:28"});
        EXPECT_TRUE(fallback.out.starts_with("Intelligence features are switched off in Settings.\n")) << fallback.out;
        EXPECT_EQ(fallback.out.find("[Generated]"), std::string::npos);
        // A verse none of the commentaries reaches (3 John ends at verse 14 in their versification) still says why
        // no model was asked.
        EXPECT_EQ(
            quillon({"commentary", "3 John 1:15"}).out,
            "None of the bundled commentaries has a note on this passage.\nIntelligence features are switched off "
            "in Settings.\n");
    }
    CommandRun bad = quillon({"commentary", "not a verse"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "Quillon could not read “not a verse” as a scripture reference.\n");
}

/// A library of one sermon and preferences pointing at `endpoint`, all inside one temporary folder.
class LibraryIntelligenceTest : public testing::LibraryRun {
protected:
    LibraryIntelligenceTest() : LibraryRun(false) {}
    void useEndpoint(const std::string& endpoint) {
        platform::Preferences(folder / "config" / "Quillon" / "preferences.json")
            .set("Quillon.intelligence.endpoint", endpoint);
    }

    model::SermonNote sermon = put(testing::makeSermon("Love that gives"));
};

TEST_F(LibraryIntelligenceTest, askShowsTracedPoints) {
    StubModelServer server;
    server.queueChat(Behaviour::reply("1 || Love gives before it is asked."));
    useEndpoint(server.endpoint());
    auto generated = run({"ask", "love"});
    EXPECT_EQ(generated.status, 0) << generated.err;
    EXPECT_TRUE(generated.out.starts_with("[Generated] Every point below is answered by the source shown beneath "
                                          "it.\n\nLove gives before it is asked.\n  — "))
        << generated.out;
}

TEST_F(LibraryIntelligenceTest, preachTimeEstimatesAndPaceRecordStoresTheObservation) {
    useEndpoint("http://127.0.0.1:1/v1");
    auto estimate = run({"preach-time", sermon.id.text().substr(0, 8)});
    EXPECT_EQ(estimate.status, 0) << estimate.err;
    EXPECT_NE(estimate.out.find("\nAbout 1 min to preach\n"), std::string::npos) << estimate.out;
    EXPECT_NE(estimate.out.find("  The love of God — 7 words, prose\n"), std::string::npos) << estimate.out;

    auto recorded = run({"pace", "record", sermon.id.text(), "2.5"});
    EXPECT_EQ(recorded.status, 0) << recorded.err;
    auto observations = preach::PreachPaceLearner::storedObservations(
        platform::Preferences(folder / "config" / "Quillon" / "preferences.json"));
    ASSERT_EQ(observations.size(), 1u);
    EXPECT_EQ(observations[0].sermonId, sermon.id);
    EXPECT_EQ(observations[0].actualMinutes, 2.5);
    EXPECT_GT(observations[0].proseWords, 0);

    EXPECT_EQ(run({"pace", "record", sermon.id.text(), "0"}).err,
              "The minutes a sermon took must be a number greater than zero.\n");
    EXPECT_EQ(run({"preach-time", "no-such-sermon"}).status, 1);
}

// Each kind's fallback and generated output is covered in SuggestCommandTest; these are the arguments it refuses.
TEST_F(LibraryIntelligenceTest, suggestRefusesAnUnknownRoomOrSection) {
    useEndpoint("http://127.0.0.1:1/v1");
    EXPECT_EQ(run({"suggest", "rewrite", sermon.id.text(), "--room", "attic"}).status, 1);
    EXPECT_EQ(run({"suggest", "rewrite", sermon.id.text(), "--section", "9"}).err, "This sermon has no section 9.\n");
    EXPECT_EQ(run({"suggest", "outline", sermon.id.text(), "--section", "0"}).err, "This sermon has no section 0.\n");
}

TEST_F(LibraryIntelligenceTest, preachTimeSaysWhoLabelledTheSectionsAndWhyNoModelDid) {
    StubModelServer server;
    const std::string uncategorised = "Every section counted as prose or scripture reading.\n";
    struct Case {
        std::string name;
        std::string endpoint;
        bool disabled;
        std::optional<std::string> reply;
        std::string header;
        bool listed;
    };
    const std::vector<Case> cases = {
        {"no server", "http://127.0.0.1:1/v1", false, std::nullopt,
         uncategorised + "Quillon could not reach the local model server at http://127.0.0.1:1/v1.\n", false},
        {"switched off", server.endpoint(), true, std::nullopt,
         uncategorised + "Intelligence features are switched off in Settings.\n", false},
        // A model that answers nonsense leaves no reason to give: its error is never shown.
        {"unreadable reply", server.endpoint(), false, "Mostly prose, I would say.", uncategorised, false},
        // The labels only change how words are timed, so they carry no generated label.
        {"labelled", server.endpoint(), false, "0: list\n1: list\n2: list",
         "Sections labelled as prose or list by a model.\n", true},
    };
    for (const Case& test : cases) {
        useEndpoint(test.endpoint);
        platform::Preferences(folder / "config" / "Quillon" / "preferences.json")
            .set("Quillon.intelligenceDisabled", test.disabled);
        if (test.reply)
            server.queueChat(Behaviour::reply(*test.reply));
        auto estimate = run({"preach-time", sermon.id.text()});
        EXPECT_EQ(estimate.status, 0) << test.name << estimate.err;
        EXPECT_TRUE(estimate.out.starts_with(test.header + "About ")) << test.name << ":\n" << estimate.out;
        EXPECT_EQ(estimate.out.find(", list\n") != std::string::npos, test.listed) << test.name;

        nlohmann::json json = nlohmann::json::parse(run({"--json", "preach-time", sermon.id.text()}).out);
        EXPECT_EQ(json["generated"], false) << test.name;
        if (test.endpoint != server.endpoint() || test.disabled)
            EXPECT_EQ(json["reason"],
                      test.header.substr(uncategorised.size(), test.header.size() - uncategorised.size() - 1))
                << test.name;
        else
            EXPECT_FALSE(json.contains("reason")) << test.name;
    }
}

} // namespace
} // namespace quillon::cli
