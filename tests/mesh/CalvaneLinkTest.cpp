#include "BridgeHarness.h"
#include "support/LogCapture.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket.hpp>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

namespace quillon::mesh {
namespace {

using namespace std::chrono_literals;
using testing::BridgeHarness;
using testing::eventually;
using testing::LogCapture;
namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;

/// A stand-in for Calvane's WebSocket bridge on loopback, accepting one link at a time.
class FakeCalvane {
public:
    FakeCalvane() : m_acceptor(m_io, {asio::ip::make_address("127.0.0.1"), 0}) {}
    std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    /// Accepts the next link and returns its hello frame.
    nlohmann::json accept() {
        m_socket = std::make_unique<websocket::stream<asio::ip::tcp::socket>>(m_acceptor.accept());
        m_socket->accept();
        return read();
    }
    /// Accepts the next connection at the TCP level and answers nothing.
    asio::ip::tcp::socket acceptSilently() { return m_acceptor.accept(); }
    nlohmann::json read() {
        boost::beast::flat_buffer buffer;
        m_socket->read(buffer);
        return nlohmann::json::parse(boost::beast::buffers_to_string(buffer.data()));
    }
    void write(const nlohmann::json& frame) {
        m_socket->text(true);
        m_socket->write(asio::buffer(frame.dump()));
    }
    void drop() {
        boost::system::error_code ignored;
        m_socket->next_layer().close(ignored);
    }

private:
    asio::io_context m_io;
    asio::ip::tcp::acceptor m_acceptor;
    std::unique_ptr<websocket::stream<asio::ip::tcp::socket>> m_socket;
};

/// Quiet settings that dial `calvane`.
MeshSettings dialling(const FakeCalvane& calvane) {
    auto settings = BridgeHarness::quietSettings();
    settings.calvaneAddress = "127.0.0.1:" + std::to_string(calvane.port());
    return settings;
}

TEST(CalvaneLink, linksShowsScriptureSurvivesADropAndReportsRejections) {
    LogCapture log;
    FakeCalvane calvane;
    auto settings = dialling(calvane);
    settings.calvaneFirstRetry = 50ms;
    settings.calvaneRetryCeiling = 200ms;
    auto harness = std::make_unique<BridgeHarness>(settings);
    auto hello = calvane.accept();
    EXPECT_EQ(hello["kind"], "hello");
    EXPECT_EQ(hello["appName"], "Quillon");
    EXPECT_TRUE(hello.contains("appVersion"));
    EXPECT_FALSE(hello.contains("pairingCode"));
    harness->secrets.write("Calvane.code", "482913");

    calvane.write({{"kind", "linked"}});
    ASSERT_TRUE(eventually([&] { return harness->bridge->isCalvaneConnected(); }));
    harness->bridge->announce(LiveScripture{"John 3:16", "John", "KJV", "For God so loved the world"});
    auto shown = calvane.read();
    EXPECT_EQ(shown["kind"], "scripture");
    EXPECT_EQ(shown["reference"], "John 3:16");
    EXPECT_EQ(shown["version"], "KJV");
    EXPECT_EQ(shown["formatted"], false);
    EXPECT_EQ(shown["source"], "Quillon");
    harness->bridge->clear();
    EXPECT_EQ(calvane.read(), (nlohmann::json{{"kind", "clear"}, {"source", "Quillon"}}));

    calvane.write({{"kind", "scripture"}, {"reference", "Romans 8:28"}});
    ASSERT_TRUE(eventually([&] { return harness->bridge->incomingReference().has_value(); }));
    EXPECT_EQ(harness->bridge->incomingReference()->description(), "Romans 8:28");

    // A dropped link comes back by itself, now with the stored code.
    calvane.drop();
    auto again = calvane.accept();
    EXPECT_EQ(again["pairingCode"], "482913");
    EXPECT_TRUE(harness->waitForEvent(MeshEvent::Kind::calvaneLost));

    calvane.write({{"kind", "rejected"}, {"reason", "the code is wrong"}});
    ASSERT_TRUE(harness->waitForEvent(MeshEvent::Kind::calvaneRejected));
    EXPECT_TRUE(eventually([&] { return log.contains("Calvane rejected Quillon: the code is wrong"); }));
    EXPECT_FALSE(harness->bridge->isCalvaneConnected());

    calvane.accept(); // retried after the back-off
    calvane.write({{"kind", "rejected"}});
    EXPECT_TRUE(eventually([&] { return log.contains("Calvane rejected the connection."); }));
    harness.reset();
}

TEST(CalvaneLink, retriesDoubleUpToTheCeilingAndStartOverOnceLinked) {
    FakeCalvane calvane;
    auto settings = dialling(calvane);
    settings.calvaneFirstRetry = 100ms;
    settings.calvaneRetryCeiling = 1000ms;
    auto harness = std::make_unique<BridgeHarness>(settings);
    calvane.accept();
    auto dropAndTimeTheReturn = [&] {
        auto dropped = std::chrono::steady_clock::now();
        calvane.drop();
        calvane.accept();
        return std::chrono::steady_clock::now() - dropped;
    };
    // Timers never fire early, so each wait is at least its step; the ceiling stops the doubling.
    for (auto step : {100ms, 200ms, 400ms, 800ms, 1000ms}) {
        auto waited = dropAndTimeTheReturn();
        EXPECT_GE(waited, step);
        EXPECT_LT(waited, step + 600ms);
    }
    calvane.write({{"kind", "linked"}});
    ASSERT_TRUE(eventually([&] { return harness->bridge->isCalvaneConnected(); }));
    auto afterLink = dropAndTimeTheReturn();
    EXPECT_GE(afterLink, 100ms);
    EXPECT_LT(afterLink, 700ms); // 1 s had the link not reset the back-off
    harness.reset();
}

TEST(CalvaneLink, aCalvaneThatNeverLinksIsDroppedAndDialledAgain) {
    for (bool upgrades : {false, true}) {
        LogCapture log;
        FakeCalvane calvane;
        auto settings = dialling(calvane);
        settings.calvaneFirstRetry = 50ms;
        settings.calvaneHandshakeTimeout = 300ms;
        auto harness = std::make_unique<BridgeHarness>(settings);
        std::optional<asio::ip::tcp::socket> silent;
        if (upgrades)
            calvane.accept(); // upgraded and greeted, but Calvane never says "linked"
        else
            silent.emplace(calvane.acceptSilently()); // the upgrade is never answered
        auto started = std::chrono::steady_clock::now();
        EXPECT_EQ(calvane.accept()["kind"], "hello") << upgrades;
        EXPECT_GE(std::chrono::steady_clock::now() - started, 250ms) << upgrades;
        EXPECT_TRUE(log.contains("Calvane did not link within 0.3 seconds")) << upgrades;
        EXPECT_FALSE(harness->bridge->isCalvaneConnected());
        harness.reset();
    }
}

TEST(CalvaneLink, framesWaitForLinkedAndARepeatedLinkedSendsNothingAgain) {
    FakeCalvane calvane;
    auto settings = dialling(calvane);
    auto harness = std::make_unique<BridgeHarness>(settings);
    calvane.accept();
    // Announced before "linked": not sent, but shown once the link is accepted.
    harness->bridge->announce(LiveScripture{"John 3:16", "John", "KJV", "For God so loved the world"});
    std::this_thread::sleep_for(100ms);
    calvane.write({{"kind", "linked"}});
    auto shown = calvane.read();
    EXPECT_EQ(shown["kind"], "scripture");
    EXPECT_EQ(shown["reference"], "John 3:16");
    // A Calvane repeating "linked" gets nothing more for it; the next frame is the clear below.
    for (int i = 0; i < 1000; ++i)
        calvane.write({{"kind", "linked"}});
    harness->bridge->clear();
    EXPECT_EQ(calvane.read()["kind"], "clear");
    harness.reset();
}

TEST(CalvaneLink, aCalvaneThatStopsReadingIsDroppedNotQueuedForEver) {
    LogCapture log;
    FakeCalvane calvane;
    auto settings = dialling(calvane);
    settings.calvaneFirstRetry = 50ms;
    auto harness = std::make_unique<BridgeHarness>(settings);
    calvane.accept();
    calvane.write({{"kind", "linked"}});
    ASSERT_TRUE(eventually([&] { return harness->bridge->isCalvaneConnected(); }));
    // Keep announcing until the desk gives up on the link rather than a fixed count: a slow build
    // (ThreadSanitizer) drains more between announces, so a count that fills the queue here may not
    // there. Each passage differs, as an unchanged one is never sent again.
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    for (int i = 1; std::chrono::steady_clock::now() < giveUp && !log.contains("Calvane stopped reading"); ++i) {
        const std::string reference = "Psalms 119:" + std::to_string(i);
        harness->bridge->announce(LiveScripture{reference, "Psalms", "KJV", std::string(1'000'000, 'a')});
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_TRUE(harness->waitForEvent(MeshEvent::Kind::calvaneLost));
    EXPECT_TRUE(log.contains("The link to Calvane was lost: Calvane stopped reading"));
    EXPECT_EQ(calvane.accept()["kind"], "hello"); // and dialled again
    harness.reset();
}

TEST(CalvaneLink, aLinkedCalvaneThatFallsSilentIsDroppedAndDialledAgain) {
    LogCapture log;
    FakeCalvane calvane;
    auto settings = dialling(calvane);
    settings.calvaneFirstRetry = 50ms;
    settings.calvaneIdleTimeout = 400ms;
    auto harness = std::make_unique<BridgeHarness>(settings);
    calvane.accept();
    calvane.write({{"kind", "linked"}});
    // The fake no longer reads, so the desk's pings go unanswered.
    EXPECT_TRUE(harness->waitForEvent(MeshEvent::Kind::calvaneLost));
    EXPECT_TRUE(log.contains("Calvane was silent for 0.4 seconds"));
    EXPECT_EQ(calvane.accept()["kind"], "hello");
    harness.reset();
}

} // namespace
} // namespace quillon::mesh
