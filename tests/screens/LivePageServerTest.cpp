#include "screens/LivePageServer.h"
#include "LoopbackHttp.h"
#include "platform/Preferences.h"
#include "screens/OutletHub.h"
#include "screens/OutletWording.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <thread>
#include <vector>

using namespace std::string_literals;

namespace quillon::screens {
namespace {

using testing::EventStreamClient;
using testing::httpRequest;

const mesh::LiveScripture john{"John 3:16", "John", "KJV", "For God so loved the world"};

LivePageOptions loopbackOptions() {
    LivePageOptions options;
    options.enabled = true;
    options.port = 0;
    return options;
}

nlohmann::json parsed(const std::optional<std::string>& data) {
    return data ? nlohmann::json::parse(*data, nullptr, false) : nlohmann::json();
}

TEST(LivePageServerTest, AnswersEachPathWithItsPageOrAnError) {
    LivePageServer server(loopbackOptions());
    ASSERT_TRUE(server.start());
    server.show(john);
    struct Case {
        std::string method;
        std::string target;
        int status;
        std::string bodyHas;
    };
    const std::vector<Case> cases = {
        {"GET", "/", 200, "Quillon live passage"},
        {"GET", "/lower-third", 200, "For God so loved the world"},
        {"GET", "/confidence", 200, "Quillon confidence monitor"},
        {"GET", "/live.json", 200, R"("reference":"John 3:16")"},
        {"GET", "/?unrelated=1", 200, "John 3:16"},
        {"GET", "/nowhere", 404, "Not found"},
        {"GET", "/../../etc/passwd", 404, "Not found"},
        {"POST", "/", 405, "Only GET"},
        {"DELETE", "/events", 405, "Only GET"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.method + " " + c.target);
        auto reply = httpRequest(server.port(), c.method, c.target);
        EXPECT_EQ(reply.status, c.status);
        EXPECT_NE(reply.body.find(c.bodyHas), std::string::npos) << reply.body;
    }
}

TEST(LivePageServerTest, WritesThePassageIntoThePageAsTextNeverAsMarkup) {
    LivePageServer server(loopbackOptions());
    ASSERT_TRUE(server.start());
    server.show({"Psalm 23:1", "Psalms", "KJV<script>", "<script>alert(1)</script> & \"shepherd\""});
    auto body = httpRequest(server.port(), "GET", "/").body;
    EXPECT_EQ(body.find("<script>alert"), std::string::npos);
    EXPECT_NE(body.find("&lt;script&gt;alert(1)&lt;/script&gt; &amp; &quot;shepherd&quot;"), std::string::npos);
    EXPECT_NE(body.find("KJV&lt;script&gt;"), std::string::npos);
    EXPECT_NE(body.find(R"(data-state="live")"), std::string::npos);
    server.clear();
    EXPECT_NE(httpRequest(server.port(), "GET", "/").body.find(R"(data-state="clear")"), std::string::npos);
}

TEST(LivePageServerTest, StreamStartsWithTheLivePassageAndFollowsEachAnnouncementAndClear) {
    LivePageServer server(loopbackOptions());
    ASSERT_TRUE(server.start());
    server.show(john);
    EventStreamClient stream(server.port(), "/events");
    ASSERT_EQ(stream.status(), 200);
    EXPECT_EQ(parsed(stream.nextPassage())["reference"], "John 3:16");

    server.show({"Romans 8:28", "Romans", "ESV", "And we know\nthat all things"});
    auto next = parsed(stream.nextPassage());
    EXPECT_EQ(next["reference"], "Romans 8:28");
    EXPECT_EQ(next["version"], "ESV");
    EXPECT_EQ(next["text"], "And we know\nthat all things");

    server.clear();
    EXPECT_EQ(parsed(stream.nextPassage()), nlohmann::json::object());
}

TEST(LivePageServerTest, StreamSurvivesTextThatIsNotUtf8) {
    LivePageServer server(loopbackOptions());
    ASSERT_TRUE(server.start());
    EventStreamClient stream(server.port(), "/events");
    ASSERT_TRUE(stream.nextPassage());
    server.show({"John 1:1", "John", "KJV", std::string("In the \xff\xfe beginning")});
    auto next = parsed(stream.nextPassage());
    ASSERT_TRUE(next.is_object());
    EXPECT_EQ(next["reference"], "John 1:1");
}

TEST(LivePageServerTest, TokenGuardsEveryPathWhenSet) {
    auto options = loopbackOptions();
    options.token = "0123456789abcdef";
    LivePageServer server(options);
    ASSERT_TRUE(server.start());
    EXPECT_NE(server.url().find("?token=0123456789abcdef"), std::string::npos);
    struct Case {
        std::string target;
        int status;
    };
    const std::vector<Case> cases = {
        {"/", 403},
        {"/?token=", 403},
        {"/?token=0123456789abcdeX", 403},
        {"/?token=0123456789abcdef0", 403},
        {"/?tokens=0123456789abcdef", 403},
        {"/?token=0123456789abcdef", 200},
        {"/confidence?x=1&token=0123456789abcdef", 200},
        {"/live.json?token=0123456789abcdef", 200},
        {"/events", 403},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.target);
        EXPECT_EQ(httpRequest(server.port(), "GET", c.target).status, c.status);
    }
    EventStreamClient stream(server.port(), "/events?token=0123456789abcdef");
    EXPECT_EQ(stream.status(), 200);
}

TEST(LivePageServerTest, MalformedRequestsCloseTheirConnectionAndTheServerKeepsServing) {
    LivePageServer server(loopbackOptions());
    ASSERT_TRUE(server.start());
    const std::vector<std::string> inputs = {
        "NOT HTTP AT ALL\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: x\r\nX-Long: " + std::string(20'000, 'a') + "\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: x\r\nContent-Length: 999999\r\n\r\nabc",
        "\0\0\0\0GET"s,
    };
    for (const auto& input : inputs) {
        auto answer = testing::rawExchange(server.port(), input);
        EXPECT_EQ(answer.find("200 OK"), std::string::npos);
    }
    EXPECT_EQ(httpRequest(server.port(), "GET", "/").status, 200);
}

TEST(LivePageServerTest, RefusesConnectionsBeyondItsCapAndKeepsUpdatingOpenStreams) {
    auto options = loopbackOptions();
    options.maximumConnections = 200;
    LivePageServer server(options);
    ASSERT_TRUE(server.start());
    std::vector<std::unique_ptr<EventStreamClient>> tabs;
    for (int i = 0; i < 200; ++i) {
        tabs.push_back(std::make_unique<EventStreamClient>(server.port(), "/events"));
        ASSERT_EQ(tabs.back()->status(), 200) << "tab " << i;
    }
    EXPECT_EQ(httpRequest(server.port(), "GET", "/").status, 503);

    server.show(john);
    for (std::size_t i : {std::size_t{0}, std::size_t{99}, std::size_t{199}}) {
        ASSERT_TRUE(tabs[i]->nextPassage()); // the passage live when the tab opened (none)
        EXPECT_EQ(parsed(tabs[i]->nextPassage())["reference"], "John 3:16");
    }

    tabs.pop_back();
    for (int attempt = 0; attempt < 100 && server.connectionCount() >= 200; ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(httpRequest(server.port(), "GET", "/").status, 200);
}

TEST(LivePageServerTest, StopEndsOpenStreamsAndAnotherServerCanTakeThePort) {
    auto server = std::make_unique<LivePageServer>(loopbackOptions());
    ASSERT_TRUE(server->start());
    const auto port = server->port();
    EventStreamClient stream(port, "/events");
    ASSERT_EQ(stream.status(), 200);
    server->stop();
    EXPECT_TRUE(stream.closedByServer());
    server.reset();

    auto options = loopbackOptions();
    options.port = port;
    LivePageServer again(options);
    EXPECT_TRUE(again.start());
}

TEST(LivePageServerTest, AnAddressItCannotListenOnIsReportedNotThrown) {
    for (const std::string address : {"not an address", "192.0.2.254"}) {
        SCOPED_TRACE(address);
        auto options = loopbackOptions();
        options.address = address;
        LivePageServer server(options);
        EXPECT_FALSE(server.start());
        EXPECT_NE(outletStateSentence(server.state()).find("could not listen"), std::string::npos);
        server.show(john); // still accepted, nowhere to send it
    }
}

TEST(LivePageServerTest, HubTellsEveryOutletAndKeepsGoingPastOneThatThrows) {
    struct Recorder : ScreenOutlet {
        std::vector<std::string> seen;
        bool throws = false;
        void show(const mesh::LiveScripture& scripture) override {
            if (throws)
                throw std::runtime_error("unplugged");
            seen.push_back(scripture.reference);
        }
        void clear() override {
            if (throws)
                throw std::runtime_error("unplugged");
            seen.push_back("clear");
        }
        std::string name() const override { return "recorder"; }
        OutletState state() const override { return {throws ? "broken" : "fine", {}, throws, {}, {}}; }
    };
    auto broken = std::make_shared<Recorder>();
    broken->throws = true;
    auto working = std::make_shared<Recorder>();
    OutletHub hub;
    hub.add(broken);
    hub.add(working);
    hub.show(john);
    hub.clear();
    EXPECT_EQ(working->seen, (std::vector<std::string>{"John 3:16", "clear"}));
    auto statuses = hub.statuses();
    ASSERT_EQ(statuses.size(), 2u);
    EXPECT_EQ(statuses[0].state.headline, "broken");
}

TEST(LivePageOptionsTest, LoopbackNeedsNoTokenAndALanAddressGetsAKeptOne) {
    struct Case {
        std::string address;
        bool loopback;
    };
    for (const auto& c : std::vector<Case>{{"127.0.0.1", true},
                                           {"127.8.9.10", true},
                                           {"::1", true},
                                           {"localhost", true},
                                           {"0.0.0.0", false},
                                           {"192.168.1.20", false},
                                           {"nonsense", false}})
        EXPECT_EQ(isLoopbackAddress(c.address), c.loopback) << c.address;

    auto preferences = platform::Preferences::inMemory();
    preferences.set("Quillon.screens.livePage", true);
    preferences.set("Quillon.screens.livePage.address", "0.0.0.0");
    preferences.set("Quillon.screens.livePage.port", 99999);
    auto first = LivePageOptions::fromPreferences(preferences);
    EXPECT_EQ(first.port, 7316);
    first.ensureLanToken(preferences);
    EXPECT_EQ(first.token.size(), 32u);
    auto second = LivePageOptions::fromPreferences(preferences);
    second.ensureLanToken(preferences);
    EXPECT_EQ(second.token, first.token);

    preferences.set("Quillon.screens.livePage.address", "127.0.0.1");
    preferences.remove("Quillon.screens.livePage.token");
    auto local = LivePageOptions::fromPreferences(preferences);
    local.ensureLanToken(preferences);
    EXPECT_EQ(local.token, "");
}

} // namespace
} // namespace quillon::screens
