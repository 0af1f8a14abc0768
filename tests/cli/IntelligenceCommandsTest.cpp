#include "cli/Cli.h"
#include "support/StubModelServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <sstream>

namespace quillon::cli {
namespace {

using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

/// A private configuration folder whose preferences point at `endpoint`, for the life of the test.
class IsolatedPreferences {
public:
    explicit IsolatedPreferences(nlohmann::json preferences) {
        m_previous = std::getenv("XDG_CONFIG_HOME") ? std::getenv("XDG_CONFIG_HOME") : "";
        m_folder.write("Quillon/preferences.json", preferences.dump());
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
    }
    ~IsolatedPreferences() {
        if (m_previous.empty())
            unsetenv("XDG_CONFIG_HOME");
        else
            setenv("XDG_CONFIG_HOME", m_previous.c_str(), 1);
    }

private:
    testing::TemporaryFolder m_folder;
    std::string m_previous;
};

struct CliRun {
    int status;
    std::string out;
    std::string err;
};

CliRun quillon(const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    int status = runCli(arguments, out, err);
    return {status, out.str(), err.str()};
}

TEST(ModelStatusCommand, reportsEachKindAndTheReason) {
    StubModelServer server;
    IsolatedPreferences preferences(nlohmann::json{{"Quillon.intelligence.endpoint", server.endpoint()}});
    CliRun ready = quillon({"model", "status"});
    EXPECT_EQ(ready.status, 0);
    EXPECT_EQ(ready.out, "onDevice: ready\nprivateCloud: ready\nexternal: unavailable — No external model has been set "
                         "up.\nModel server: " +
                             server.endpoint() + " (model: the first the server lists)\n");

    server.setModelsBehaviour(Behaviour::statusCode(503));
    CliRun loading = quillon({"--json", "model", "status"});
    nlohmann::json json = nlohmann::json::parse(loading.out);
    EXPECT_EQ(json["backends"]["onDevice"]["ready"], false);
    EXPECT_EQ(json["backends"]["onDevice"]["message"], "The on-device model is still downloading.");
}

TEST(CommentaryCommand, showsTheGeneratedAnswerOrTheExtracts) {
    StubModelServer server;
    server.queueChat(Behaviour::reply("Matthew Henry's Concise Commentary says providence works for the saints."));
    {
        IsolatedPreferences preferences(nlohmann::json{{"Quillon.intelligence.endpoint", server.endpoint()}});
        CliRun generated = quillon({"commentary", "rom 8:28", "--question", "What is the good?"});
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
        CliRun fallback = quillon({"commentary", "Romans 8:28"});
        EXPECT_TRUE(fallback.out.starts_with("Intelligence features are switched off in Settings.\n")) << fallback.out;
        EXPECT_EQ(fallback.out.find("[Generated]"), std::string::npos);
    }
    CliRun bad = quillon({"commentary", "not a verse"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "Quillon could not read “not a verse” as a scripture reference.\n");
}

} // namespace
} // namespace quillon::cli
