#include "cli/MeshServeSession.h"
#include "BridgeHarness.h"
#include "LibraryRun.h"
#include "cli/Library.h"
#include "cli/MeshSermonTools.h"
#include "support/SermonFixtures.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillon::cli {
namespace {

using mesh::SermonStudioMessageType;
using testing::BridgeHarness;
using testing::VantalinkTestPeer;

/// A library of two sermons whose ids share the prefix "5E2A", served on a loopback bridge with
/// the session that `quillon mesh serve` runs.
class MeshServeSessionTest : public testing::LibraryRun {
protected:
    MeshServeSessionTest() {
        grace = store("5E2A0001-0000-4000-8000-000000000001", "Grace upon Grace",
                      "The law came through Moses; grace and truth came through Jesus Christ.");
        shepherd = store("5E2A0002-0000-4000-8000-000000000002", "The Good Shepherd",
                         "The shepherd lays down his life for the sheep.");
        context.library = library();
        loaded = std::make_unique<Library>(context);
        tools = std::make_unique<MeshSermonTools>(*loaded);
        session = std::make_unique<MeshServeSession>(*harness.bridge, out, true, tools.get());
    }

    model::SermonNote store(const char* id, const char* title, const char* notes) {
        auto sermon = testing::makeSermon(title);
        sermon.id = *model::Uuid::parse(id);
        sermon.notes = notes;
        return put(sermon);
    }

    /// The JSON line the session printed for `command`.
    nlohmann::json command(const std::string& line) {
        out.str("");
        session->handle(line);
        return nlohmann::json::parse(out.str(), nullptr, false);
    }

    model::SermonNote grace;
    model::SermonNote shepherd;
    std::ostringstream out, err;
    CommandContext context{out, err, std::nullopt, false};
    std::unique_ptr<Library> loaded;
    std::unique_ptr<MeshSermonTools> tools;
    BridgeHarness harness;
    std::unique_ptr<MeshServeSession> session;
};

TEST_F(MeshServeSessionTest, peersAskForTheOpenSermonAndSearchTheLibrary) {
    auto peer = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    peer->hello("Brenmoor");
    struct Passage {
        std::string source;
        std::string textHolds;
    };
    struct Step {
        std::string command; // run on the desk first, when not empty
        const char* tool;
        const char* query;
        std::vector<Passage> passages;
        const char* error = nullptr;
    };
    const std::string lowerCaseId = "5e2a0001-0000-4000-8000-000000000001";
    const std::vector<Step> steps = {
        {"", "currentSermon", "", {}},
        {"open 5E2A0002", "currentSermon", "", {{"The Good Shepherd", "lays down his life for the sheep"}}},
        {"open ZZZZ", "currentSermon", "", {{"The Good Shepherd", "The love of God"}}},
        {"open " + lowerCaseId, "currentSermon", "ignored", {{"Grace upon Grace", "grace and truth came"}}},
        {"", "searchSermons", "shepherd", {{"The Good Shepherd", "lays down his life"}}},
        {"", "searchSermons", "zebra", {}},
        {"", "searchSermons", "", {}},
        {"", "liveScripture", "", {}},
        {"announce John 3:16", "liveScripture", "", {{"John 3:16 (KJV)", "For God so loved the world, that he gave"}}},
        // Pasted tags read as everywhere else: ours is honoured, another falls back to KJV.
        {"announce ASV: Ps 23:1", "liveScripture", "", {{"Psalms 23:1 (ASV)", "Jehovah is my shepherd"}}},
        {"announce Rom. 8:28 NIV", "liveScripture", "", {{"Romans 8:28 (KJV)", "all things work together for good"}}},
        {"", "sermonOutline", "", {}, "Quillon has no tool named \"sermonOutline\"."},
    };
    int id = 0;
    for (const auto& step : steps) {
        SCOPED_TRACE(step.command + " / " + step.tool + " " + step.query);
        if (!step.command.empty())
            session->handle(step.command);
        const std::string requestId = "request-" + std::to_string(++id);
        peer->send(SermonStudioMessageType::toolRequest,
                   {{"tool", step.tool}, {"requestId", requestId}, {"query", step.query}});
        auto response = peer->waitFor(SermonStudioMessageType::toolResponse);
        ASSERT_TRUE(response);
        EXPECT_EQ(response->field("requestId"), requestId);
        EXPECT_EQ(response->field("tool"), step.tool);
        if (step.error) {
            EXPECT_EQ(response->field("error"), step.error);
            EXPECT_FALSE(response->payload.contains("result"));
            continue;
        }
        EXPECT_FALSE(response->payload.contains("error"));
        auto result = mesh::ToolAnswer::decode(response->field("result"));
        ASSERT_TRUE(result) << response->field("result");
        ASSERT_EQ(result->passages.size(), step.passages.size()) << response->field("result");
        for (std::size_t i = 0; i < step.passages.size(); ++i) {
            EXPECT_EQ(result->passages[i].source, step.passages[i].source);
            EXPECT_NE(result->passages[i].text.find(step.passages[i].textHolds), std::string::npos)
                << result->passages[i].text;
        }
    }
}

TEST_F(MeshServeSessionTest, openPrintsTheSermonOrAnErrorLine) {
    struct Case {
        std::string line;
        std::string event;
        std::string detail; // the id opened, or the error sentence
    };
    for (const Case& c : {
             Case{"open 5e2a0002", "opened", "5E2A0002-0000-4000-8000-000000000002"},
             Case{"open 5E2A", "error", "The id “5E2A” matches more than one sermon."},
             Case{"open 5E2", "error", "No sermon has the id “5E2”."},
             Case{"open 00000000-0000-4000-8000-000000000000", "error",
                  "No sermon has the id “00000000-0000-4000-8000-000000000000”."},
             Case{"open   ", "error", "Name the sermon to open by its id, for example: open 3F2A"},
         }) {
        SCOPED_TRACE(c.line);
        auto line = command(c.line);
        EXPECT_EQ(line.value("event", ""), c.event);
        EXPECT_EQ(line.value(c.event == "opened" ? "id" : "detail", ""), c.detail);
    }
    // A failed open leaves the sermon that was open before.
    auto status = command("status");
    EXPECT_EQ(status.value("currentSermon", ""), shepherd.id.text());
    EXPECT_EQ(command("open 5E2A0002").value("title", ""), "The Good Shepherd");
}

TEST_F(MeshServeSessionTest, openReadsSermonsWrittenSinceTheDeskStarted) {
    auto lighthouse = store("7B000001-0000-4000-8000-000000000001", "The Lighthouse", "A light on the rocks.");
    auto search = [&] { return mesh::ToolAnswer::decode(*tools->answer("searchSermons", "lighthouse").result); };
    EXPECT_EQ(search()->passages.size(), 0u); // not read yet
    EXPECT_EQ(command("open 7B000001").value("id", ""), lighthouse.id.text());
    ASSERT_EQ(search()->passages.size(), 1u);
    EXPECT_EQ(search()->passages[0].source, "The Lighthouse");
}

TEST_F(MeshServeSessionTest, serveRefusesAnUnknownSermonBeforeListening) {
    auto result = run({"mesh", "serve", "--no-discovery", "--port", "0", "--tls-port", "0", "--sermon", "ZZZZ"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("No sermon has the id “ZZZZ”."), std::string::npos) << result.err;
    EXPECT_EQ(result.out, "");
}

} // namespace
} // namespace quillon::cli
