#include "screens/OpenLpOutlet.h"
#include "StubOpenLp.h"
#include "screens/OpenLpBibleChoice.h"
#include "screens/OpenLpOptions.h"
#include "screens/OutletWording.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace quillon::screens {
namespace {

using testing::StubOpenLp;
using Fault = StubOpenLp::Fault;

const mesh::LiveScripture john{"John 3:16", "John", "KJV", "For God so loved the world"};
const mesh::LiveScripture psalm{"Psalms 23:1-3", "Psalms", "KJV", "The Lord is my shepherd"};

/// Polls `condition` for up to five seconds; the outlet works on its own thread.
bool eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 250; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return condition();
}

OpenLpOptions optionsFor(const StubOpenLp& stub) {
    OpenLpOptions options;
    options.enabled = true;
    EXPECT_TRUE(options.setAddress(stub.address()));
    options.timeout = std::chrono::milliseconds(300);
    return options;
}

int linesWith(const testing::LogCapture& log, const std::string& text) {
    int count = 0;
    for (const auto& line : log.lines())
        count += line.find(text) != std::string::npos;
    return count;
}

TEST(OpenLpBibleChoice, PicksTheSameVersionThenItsNearestKinThenLeavesOpenLpsChoice) {
    struct Case {
        std::string announced;
        std::vector<std::string> bibles;
        std::optional<std::string> chosen;
    };
    const std::vector<Case> cases = {
        {"KJV", {"ESV", "KJV"}, "KJV"},
        {"kjv", {"English Standard Version", "King James Version"}, "King James Version"},
        {"KJV", {"New King James Version", "King James Version 1769"}, "King James Version 1769"},
        {"KJV", {"NKJV", "English (KJV)"}, "English (KJV)"},
        {"NKJV", {"King James Version", "New King James Version"}, "New King James Version"},
        {"KJV", {"New King James Version", "American Standard Version"}, "New King James Version"},
        {"NKJV", {"American Standard Version", "King James Version"}, "King James Version"},
        {"LSV", {"King James Version", "Young's Literal Translation"}, "Young's Literal Translation"},
        {"YLT", {"Literal Standard Version"}, "Literal Standard Version"},
        {"NLT", {"The Amplified Bible", "KJV"}, "The Amplified Bible"},
        {"AMP", {"Amplified Bible Classic"}, "Amplified Bible Classic"},
        {"KJV", {"English Standard Version", "Luther 1912"}, std::nullopt},
        {"ESV", {"KJV", "ESV 2016"}, "ESV 2016"},
        {"ESV", {"KJV"}, std::nullopt},
        {"", {"KJV"}, std::nullopt},
        {"KJV", {}, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.announced);
        EXPECT_EQ(closestOpenLpBible(c.announced, c.bibles), c.chosen);
    }
}

TEST(OpenLpOptions, ReadsHostAndPortOrRefusesTheAddress) {
    struct Case {
        std::string text;
        bool accepted;
        std::string address;
    };
    const std::vector<Case> cases = {
        {"127.0.0.1:4316", true, "127.0.0.1:4316"},
        {"projector.local", true, "projector.local:4316"},
        {"10.0.0.5:80", true, "10.0.0.5:80"},
        {"[::1]:4316", true, "[::1]:4316"},
        {"[fe80::1]", true, "[fe80::1]:4316"},
        {"::1", false, ""},
        {"host:0", false, ""},
        {"host:65536", false, ""},
        {"host:http", false, ""},
        {":4316", false, ""},
        {"", false, ""},
        {"http://host:4316/", false, ""},
        {"[::1", false, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        OpenLpOptions options;
        EXPECT_EQ(options.setAddress(c.text), c.accepted);
        EXPECT_EQ(options.address(), c.accepted ? c.address : "127.0.0.1:4316");
    }
}

TEST(OpenLpOutlet, SelectsTheClosestBibleFindsThePassageAndSendsItLive) {
    StubOpenLp stub;
    stub.setBibles({"English Standard Version", "King James Version"}, "English Standard Version");
    OpenLpOutlet outlet(optionsFor(stub));
    outlet.start();
    outlet.show(john);
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 1; }));
    EXPECT_EQ(stub.lives()[0], "King James Version|John 3:16");
    EXPECT_EQ(stub.selected(), "King James Version");
    const auto requests = stub.requests();
    ASSERT_EQ(requests.size(), 4u);
    EXPECT_EQ(requests[0].target, "/api/v2/plugins/bibles/search-options");
    EXPECT_EQ(requests[1].method, "POST");
    EXPECT_EQ(requests[2].target, "/api/v2/plugins/bibles/search?text=John%203%3A16");
    EXPECT_EQ(requests[3].target, "/api/v2/plugins/bibles/live");
    EXPECT_TRUE(eventually([&] {
        return outletStateSentence(outlet.state()) == "showing John 3:16 from King James Version";
    })) << outletStateSentence(outlet.state());

    // The Bible already selected is not chosen again.
    outlet.show(psalm);
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 2; }));
    EXPECT_EQ(stub.lives()[1], "King James Version|Psalms 23:1-3");
    EXPECT_EQ(stub.requests().size(), 7u);
}

TEST(OpenLpOutlet, ClearShowsTheThemeAndTheNextPassageBringsTheTextBack) {
    StubOpenLp stub;
    OpenLpOutlet outlet(optionsFor(stub));
    outlet.start();
    outlet.show(john);
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 1; }));
    outlet.clear();
    ASSERT_TRUE(eventually([&] { return stub.displays().size() == 1; }));
    EXPECT_EQ(stub.displays()[0], "theme");
    outlet.show(psalm);
    ASSERT_TRUE(eventually([&] { return stub.displays().size() == 2; }));
    EXPECT_EQ(stub.displays()[1], "show");
    EXPECT_EQ(stub.lives().size(), 2u);
}

TEST(OpenLpOutlet, LogsInOnA401AndAgainWhenTheTokenChanges) {
    StubOpenLp stub;
    stub.requireLogin("worship", "s3cret");
    auto options = optionsFor(stub);
    options.user = "worship";
    options.password = "s3cret";
    OpenLpOutlet outlet(options);
    outlet.start();
    outlet.show(john);
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 1; })) << outletStateSentence(outlet.state());
    EXPECT_EQ(stub.logins(), 1);
    EXPECT_EQ(stub.requests().back().authorization, "token-1");

    stub.changeToken(); // OpenLP restarted
    outlet.show(psalm);
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 2; })) << outletStateSentence(outlet.state());
    EXPECT_EQ(stub.logins(), 2);
    EXPECT_EQ(stub.requests().back().authorization, "token-2");
}

TEST(OpenLpOutlet, ARefusedLoginOrNoUserIsAFailureSaidOnce) {
    struct Case {
        std::string user;
        std::string password;
        std::string state;
    };
    const std::vector<Case> cases = {
        {"worship", "wrong", "refused the login of \"worship\""},
        {"", "", "it asks for a login"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.state);
        testing::LogCapture log;
        StubOpenLp stub;
        stub.requireLogin("worship", "s3cret");
        auto options = optionsFor(stub);
        options.user = c.user;
        options.password = c.password;
        OpenLpOutlet outlet(options);
        outlet.start();
        for (int i = 0; i < 3; ++i) {
            outlet.show(john);
            const auto before = stub.requests().size();
            ASSERT_TRUE(eventually([&] {
                return outletStateSentence(outlet.state()).find(c.state) != std::string::npos;
            })) << outletStateSentence(outlet.state());
            eventually([&] { return stub.requests().size() > before; });
        }
        EXPECT_TRUE(stub.lives().empty());
        EXPECT_EQ(linesWith(log, "warning: OpenLP at"), 1);
    }
}

TEST(OpenLpOutlet, EachFaultIsAStateLoggedOncePerOutageAndTheNextPassageRecovers) {
    struct Case {
        Fault fault;
        std::string state;
    };
    const std::vector<Case> cases = {
        {Fault::status500, "with HTTP 500"},
        {Fault::html, "not the JSON"},
        {Fault::reset, "no answer to its list of Bibles"},
        {Fault::slow, "no answer in time"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.state);
        testing::LogCapture log;
        StubOpenLp stub;
        OpenLpOutlet outlet(optionsFor(stub));
        outlet.start();
        stub.fail(c.fault, 2);
        for (int i = 0; i < 2; ++i) {
            const auto before = stub.requests().size();
            outlet.show(john);
            ASSERT_TRUE(eventually([&] {
                return stub.requests().size() > before &&
                       outletStateSentence(outlet.state()).find(c.state) != std::string::npos;
            })) << outletStateSentence(outlet.state());
        }
        EXPECT_EQ(linesWith(log, "warning: OpenLP at"), 1);
        outlet.show(psalm);
        ASSERT_TRUE(eventually([&] { return stub.lives().size() == 1; })) << outletStateSentence(outlet.state());
        EXPECT_TRUE(eventually([&] { return log.contains("answers again"); }));
        // Recovered, the outlet still tells a closer look where it sends and what last went wrong.
        ASSERT_TRUE(eventually([&] { return outlet.state().headline == "showing"; }));
        const auto details = outletDetails({outlet.name(), outlet.state()});
        ASSERT_EQ(details.size(), 2u);
        EXPECT_EQ(details[0], "at " + stub.address());
        EXPECT_NE(details[1].find(c.state), std::string::npos) << details[1];
    }
}

TEST(OpenLpOutlet, ServerDownOrPassageMissingIsReportedWithoutGoingLive) {
    std::uint16_t closedPort = 0;
    {
        StubOpenLp gone;
        closedPort = gone.port();
    }
    OpenLpOptions options;
    ASSERT_TRUE(options.setAddress("127.0.0.1:" + std::to_string(closedPort)));
    options.timeout = std::chrono::milliseconds(300);
    OpenLpOutlet down(options);
    down.start();
    down.show(john);
    EXPECT_TRUE(eventually([&] {
        return outletStateSentence(down.state()).find("failing: no answer") != std::string::npos;
    })) << outletStateSentence(down.state());

    StubOpenLp stub;
    stub.setMissing("John 3:16");
    OpenLpOutlet outlet(optionsFor(stub));
    outlet.start();
    outlet.show(john);
    EXPECT_TRUE(eventually([&] {
        return outletStateSentence(outlet.state()) == "failing: its King James Version has no John 3:16";
    })) << outletStateSentence(outlet.state());
    EXPECT_TRUE(stub.lives().empty());
}

TEST(OpenLpOutlet, WhileOpenLpIsSlowNewerPassagesReplaceTheWaitingOne) {
    StubOpenLp stub;
    stub.fail(Fault::slow, 1, std::chrono::milliseconds(200));
    auto options = optionsFor(stub);
    options.timeout = std::chrono::milliseconds(1000);
    OpenLpOutlet outlet(options);
    outlet.start();
    outlet.show(john);
    for (int verse = 1; verse <= 5; ++verse)
        outlet.show({"Psalms 23:" + std::to_string(verse), "Psalms", "KJV", "…"});
    ASSERT_TRUE(eventually([&] { return stub.lives().size() == 2; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(stub.lives(),
              (std::vector<std::string>{"King James Version|John 3:16", "King James Version|Psalms 23:5"}));
}

} // namespace
} // namespace quillon::screens
