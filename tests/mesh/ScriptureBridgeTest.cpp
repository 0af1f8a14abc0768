#include "BridgeHarness.h"
#include "mesh/VantalinkPsk.h"
#include "orvane/SuiteMeshBootstrapSession.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <future>

#include <thread>

namespace quillon::mesh {
namespace {

using namespace std::chrono_literals;
using testing::BridgeHarness;
using testing::eventually;
using testing::LogCapture;
using testing::VantalinkTestPeer;
using Type = SermonStudioMessageType;
using Kind = MeshEvent::Kind;

const LiveScripture john316{"John 3:16", "John", "KJV", "For God so loved the world..."};

TEST(ScriptureBridge, broadcastPeerPairsProvesItselfAndDrivesTheDesk) {
    LogCapture log;
    BridgeHarness harness;
    auto& bridge = *harness.bridge;

    // First pairing over a plain link: hello, the preacher makes a code, the peer answers with it.
    auto secret = harness.pair("Brenmoor");
    ASSERT_EQ(secret.size(), 32u);
    EXPECT_TRUE(log.contains("Brenmoor paired successfully."));
    EXPECT_EQ(harness.preferences.stringList("Quillon.suiteMesh.pairedPeerNames"),
              std::vector<std::string>{"Brenmoor"});
    ASSERT_TRUE(harness.waitForEvent(Kind::pairingSucceeded));

    // A new secure connection proves the pairing through the derived pre-shared key.
    auto peer = harness.connectPaired(secret);
    ASSERT_TRUE(peer);
    peer->hello("Brenmoor");
    ASSERT_TRUE(peer->waitFor(Type::pairAccepted));
    ASSERT_TRUE(eventually([&] { return bridge.isBrenmoorConnected(); }));

    bridge.announce(john316);
    auto announced = peer->waitFor(Type::scriptureAnnouncement);
    ASSERT_TRUE(announced);
    EXPECT_EQ(announced->payload, (std::map<std::string, std::string>{{"reference", "John 3:16"},
                                                                      {"version", "KJV"},
                                                                      {"text", "For God so loved the world..."},
                                                                      {"book", "John"},
                                                                      {"source", "Quillon"}}));
    EXPECT_EQ(bridge.liveReference(), john316);

    peer->send(Type::nextVerse);
    peer->send(Type::previousVerse);
    peer->send(Type::nextVerse);
    peer->send(Type::scriptureAnnouncement, {{"book", "Romans"}, {"chapter", "8"}, {"startVerse", "28"}});
    ASSERT_TRUE(harness.waitForEvent(Kind::incomingScripture));
    ASSERT_TRUE(eventually([&] {
        std::lock_guard lock(harness.mutex);
        return harness.nextVerses == 2 && harness.previousVerses == 1;
    }));
    EXPECT_EQ(bridge.incomingReference(), (MeshScriptureReference{"Romans", 8, 28, std::nullopt}));

    peer->send(Type::requestScripture);
    auto answer = peer->waitFor(Type::scriptureAnnouncement);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->field("reference"), "John 3:16");

    bridge.clear();
    auto cleared = peer->waitFor(Type::scriptureCleared);
    ASSERT_TRUE(cleared);
    EXPECT_EQ(cleared->field("source"), "Quillon");
    EXPECT_EQ(cleared->field("reference"), "");

    auto listed = bridge.peers();
    ASSERT_FALSE(listed.empty());
    EXPECT_TRUE(std::any_of(listed.begin(), listed.end(), [](const PeerSummary& p) {
        return p.claim == "Brenmoor" && p.verified && p.secure && p.trusted;
    }));
}

TEST(ScriptureBridge, pairingCodeFailures) {
    struct Case {
        const char* name;
        bool wrongCode;
        std::chrono::seconds delay;
        const char* logLine;
    };
    for (const Case& c : {Case{"wrong code", true, 0s, "Brenmoor answered with the wrong code."},
                          Case{"answer after 31 s", false, 31s, "did not answer the pairing challenge"},
                          Case{"code used after 121 s", false, 121s, "the code expired"}}) {
        LogCapture log;
        BridgeHarness harness(BridgeHarness::quietSettings(), /*useFakeClock=*/true);
        auto peer = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
        peer->hello("Brenmoor");
        auto code = harness.bridge->startBootstrap("Brenmoor");
        EXPECT_EQ(code.code.size(), 6u);
        auto challenge = peer->waitFor(Type::pairChallenge);
        ASSERT_TRUE(challenge) << c.name;
        harness.fakeClock.advance(c.delay);
        std::string answered = c.wrongCode ? (code.code == "000000" ? "000001" : "000000") : code.code;
        peer->answerBootstrap(*challenge, answered, "Brenmoor");
        EXPECT_TRUE(peer->waitFor(Type::pairRejected)) << c.name;
        EXPECT_TRUE(harness.waitForEvent(Kind::pairingFailed)) << c.name;
        EXPECT_TRUE(log.contains(c.logLine)) << c.name;
        EXPECT_FALSE(harness.pairings.pairing("Brenmoor")) << c.name;
        // A failed proof ends the connection: there is no second answer on the same link.
        EXPECT_TRUE(peer->waitForClose()) << c.name;

        // The same nonce replayed from a new connection answers no challenge sent to that one.
        auto replay = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
        replay->answerBootstrap(*challenge, code.code, "Brenmoor");
        EXPECT_FALSE(replay->waitFor(Type::pairAccepted, 300ms)) << c.name;
        EXPECT_TRUE(log.contains("it answers no challenge sent to it")) << c.name;
    }
}

TEST(ScriptureBridge, aPairingCodeCannotBeSearched) {
    LogCapture log;
    BridgeHarness harness;
    auto code = harness.bridge->startBootstrap("Brenmoor");
    std::string wrong = code.code == "000000" ? "000001" : "000000";
    // Each guess needs a fresh connection, and the code is withdrawn after the third wrong one.
    for (int guess = 0; guess < orvane::SuiteMeshBootstrapSession::allowedFailedAnswers; ++guess) {
        auto guesser = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
        guesser->hello("Brenmoor");
        auto challenge = guesser->waitFor(Type::pairChallenge);
        ASSERT_TRUE(challenge) << guess;
        guesser->answerBootstrap(*challenge, wrong, "Brenmoor");
        EXPECT_TRUE(guesser->waitFor(Type::pairRejected)) << guess;
        EXPECT_TRUE(guesser->waitForClose()) << guess;
    }
    EXPECT_TRUE(log.contains("The pairing code for Brenmoor was withdrawn after 3 failed answers"));

    // Even the right code is refused now: the peer is not challenged with the withdrawn code at all.
    auto late = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    late->hello("Brenmoor");
    EXPECT_FALSE(late->waitFor(Type::pairChallenge, 300ms));
    EXPECT_FALSE(harness.pairings.pairing("Brenmoor"));

    // A fresh code from the preacher works.
    auto fresh = harness.bridge->startBootstrap("Brenmoor");
    auto challenge = late->waitFor(Type::pairChallenge);
    ASSERT_TRUE(challenge);
    late->answerBootstrap(*challenge, fresh.code, "Brenmoor");
    EXPECT_TRUE(late->waitFor(Type::pairAccepted));
}

TEST(ScriptureBridge, challengesOutstandingWhenTheCodeIsWithdrawnFail) {
    LogCapture log;
    BridgeHarness harness;
    auto code = harness.bridge->startBootstrap("Brenmoor");
    std::string wrong = code.code == "000000" ? "000001" : "000000";
    // Guessers who fetched their challenges before the code ran out cannot use them afterwards.
    std::vector<std::unique_ptr<VantalinkTestPeer>> guessers;
    std::vector<SermonStudioMessage> challenges;
    for (int i = 0; i < 5; ++i) {
        guessers.push_back(VantalinkTestPeer::connectPlain(harness.bridge->plainPort()));
        guessers.back()->hello("Brenmoor");
        auto challenge = guessers.back()->waitFor(Type::pairChallenge);
        ASSERT_TRUE(challenge);
        challenges.push_back(*challenge);
    }
    for (int i = 0; i < 3; ++i)
        guessers[i]->answerBootstrap(challenges[i], wrong, "Brenmoor");
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(guessers[i]->waitForClose());
    for (int i = 3; i < 5; ++i) {
        guessers[i]->answerBootstrap(challenges[i], code.code, "Brenmoor");
        EXPECT_TRUE(guessers[i]->waitFor(Type::pairRejected)) << i;
    }
    EXPECT_FALSE(harness.pairings.pairing("Brenmoor"));
}

TEST(ScriptureBridge, aPairedNameMustProveItselfOrIsDisconnected) {
    LogCapture log;
    auto settings = BridgeHarness::quietSettings();
    settings.requirePairing = true;
    BridgeHarness harness(settings);
    auto secret = harness.pair("Brenmoor");

    // Right secret on a plain link: verified by answering the challenge.
    auto honest = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    honest->hello("Brenmoor");
    auto challenge = honest->waitFor(Type::pairChallenge);
    ASSERT_TRUE(challenge);
    EXPECT_TRUE(challenge->field("salt").empty());
    honest->answerWithSecret(*challenge, secret, "Brenmoor");
    ASSERT_TRUE(honest->waitFor(Type::pairAccepted));

    // Someone else claiming the name with a guessed secret is cut off.
    auto impostor = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    impostor->hello("Brenmoor");
    auto second = impostor->waitFor(Type::pairChallenge);
    ASSERT_TRUE(second);
    impostor->answerWithSecret(*second, orvane::randomBytes(32), "Brenmoor");
    EXPECT_TRUE(impostor->waitForClose());
    EXPECT_TRUE(log.contains("Brenmoor: it did not answer the pairing challenge for that name"));

    harness.bridge->announce(john316);
    EXPECT_TRUE(honest->waitFor(Type::scriptureAnnouncement));
}

TEST(ScriptureBridge, requirePairingIgnoresAnUnpairedClaim) {
    LogCapture log;
    auto settings = BridgeHarness::quietSettings();
    settings.requirePairing = true;
    BridgeHarness harness(settings);
    auto stranger = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    stranger->hello("Stranger");
    auto rejected = stranger->waitFor(Type::pairRejected);
    ASSERT_TRUE(rejected);
    EXPECT_EQ(rejected->field("reason"), "it claimed a name with no pairing here");
    EXPECT_TRUE(log.contains("Stranger tried to connect with no pairing on file."));

    stranger->send(Type::nextVerse);
    stranger->send(Type::toolRequest, {{"tool", "liveScripture"}, {"requestId", "r1"}});
    harness.bridge->announce(john316);
    EXPECT_FALSE(stranger->next(400ms));
    EXPECT_TRUE(log.contains("Ignored nextVerse from Stranger: it claimed a name with no pairing here"));
    EXPECT_FALSE(log.contains("Ignored toolRequest from Stranger")); // once per connection
    std::lock_guard lock(harness.mutex);
    EXPECT_EQ(harness.nextVerses, 0);
}

TEST(ScriptureBridge, requireEncryptedKeepsContentOffPlainLinks) {
    LogCapture log;
    auto settings = BridgeHarness::quietSettings();
    settings.requireEncrypted = true;
    BridgeHarness harness(settings);
    auto secret = harness.pair("Brenmoor"); // pairing itself may use a plain link

    auto plain = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    plain->hello("Observer");
    auto secure = harness.connectPaired(secret);
    ASSERT_TRUE(secure);
    secure->hello("Brenmoor");
    ASSERT_TRUE(secure->waitFor(Type::pairAccepted));

    harness.bridge->announce(john316);
    EXPECT_TRUE(secure->waitFor(Type::scriptureAnnouncement));
    plain->send(Type::toolRequest, {{"tool", "liveScripture"}, {"requestId", "r1"}});
    EXPECT_FALSE(plain->next(400ms));
    EXPECT_TRUE(log.contains("Observer on a plain link: encrypted Vantalink applies"));
}

TEST(ScriptureBridge, framesOfForbiddenLengthCloseAndOddBodiesAreDropped) {
    struct Case {
        const char* name;
        std::string bytes;
        bool closes;
        const char* logLine;
    };
    std::string largest(10'000'000, 'x');
    std::string unknownType = SermonStudioMessage{Type::hello, {}, {}}.encode();
    unknownType.replace(unknownType.find("\"hello\""), 7, "\"sing\"");
    for (const Case& c : {
             Case{"empty frame", frameHeader(0), true, nullptr},
             Case{"10,000,001 bytes", frameHeader(10'000'001), true, nullptr},
             Case{"10,000,000 bytes are read", frameHeader(10'000'000) + largest, false, "Dropped Unknown from"},
             Case{"garbage JSON", frameHeader(9) + "{not json", false, "Dropped Unknown from"},
             Case{"unknown type", frameHeader(static_cast<std::uint32_t>(unknownType.size())) + unknownType, false,
                  "Dropped Unknown from"},
         }) {
        LogCapture log;
        BridgeHarness harness;
        auto peer = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
        peer->sendRaw(c.bytes);
        if (c.closes) {
            EXPECT_TRUE(peer->waitForClose()) << c.name;
            continue;
        }
        // Still open: a request after the odd body is answered.
        peer->send(Type::requestScripture);
        EXPECT_TRUE(peer->waitFor(Type::scriptureCleared)) << c.name;
        EXPECT_TRUE(log.contains(c.logLine)) << c.name;
    }
}

TEST(ScriptureBridge, heartbeatsFlowAndKeepAChattyPeer) {
    auto settings = BridgeHarness::quietSettings();
    settings.heartbeatInterval = 50ms;
    settings.silenceLimit = 400ms;
    BridgeHarness harness(settings);
    auto chatty = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    auto until = std::chrono::steady_clock::now() + 800ms;
    int heartbeats = 0;
    while (std::chrono::steady_clock::now() < until) {
        chatty->send(Type::heartbeat);
        if (chatty->waitFor(Type::heartbeat, 100ms))
            ++heartbeats;
    }
    EXPECT_GE(heartbeats, 3);
    chatty->send(Type::requestScripture);
    EXPECT_TRUE(chatty->waitFor(Type::scriptureCleared));
}

TEST(ScriptureBridge, toolRequestsAreAnsweredWithTheSameRequestId) {
    BridgeHarness harness;
    harness.bridge->toolHandler = [](const std::string& tool, const std::string& query) {
        if (query == "fail")
            throw std::runtime_error("the library is gone");
        return ToolAnswer{tool + ":" + query, std::nullopt};
    };
    auto peer = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    peer->hello("Brenmoor");
    struct Case {
        const char* tool;
        const char* query;
        const char* result;
        const char* error;
        bool announceFirst = false;
    };
    int id = 0;
    for (const Case& c :
         {Case{"liveScripture", "", R"({"passages":[]})", nullptr},
          Case{"liveScripture", "",
               R"x({"passages":[{"source":"John 3:16 (KJV)","text":"For God so loved the world..."}]})x", nullptr,
               true},
          Case{"searchSermons", "grace", "searchSermons:grace", nullptr},
          Case{"currentSermon", "", "currentSermon:", nullptr},
          Case{"searchSermons", "fail", nullptr, "Quillon could not run searchSermons: the library is gone"},
          Case{"paintTheWall", "", nullptr, "Quillon has no tool named \"paintTheWall\"."},
          Case{"", "", nullptr, "Quillon has no tool named \"\"."}}) {
        if (c.announceFirst) {
            harness.bridge->announce(john316);
            ASSERT_TRUE(peer->waitFor(Type::scriptureAnnouncement));
        }
        std::string requestId = "r" + std::to_string(++id);
        peer->send(Type::toolRequest, {{"tool", c.tool}, {"requestId", requestId}, {"query", c.query}});
        auto response = peer->waitFor(Type::toolResponse);
        ASSERT_TRUE(response) << c.tool;
        EXPECT_EQ(response->field("requestId"), requestId);
        EXPECT_EQ(response->field("tool"), c.tool);
        EXPECT_EQ(response->field("result"), c.result ? c.result : "") << c.tool;
        EXPECT_EQ(response->field("error"), c.error ? c.error : "") << c.tool;
    }
}

TEST(ScriptureBridge, anAnswerTooLongForOneFrameBecomesAnError) {
    LogCapture log;
    BridgeHarness harness;
    harness.bridge->toolHandler = [](const std::string&, const std::string& query) {
        return ToolAnswer{std::string(std::stoul(query), 'x'), std::nullopt};
    };
    auto peer = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    peer->hello("Brenmoor");
    struct Case {
        const char* length;
        bool fits;
    };
    for (const Case& c : {Case{"10000001", false}, Case{"9000000", true}}) {
        peer->send(Type::toolRequest, {{"tool", "searchSermons"}, {"requestId", c.length}, {"query", c.length}});
        auto response = peer->waitFor(Type::toolResponse);
        ASSERT_TRUE(response) << c.length;
        EXPECT_EQ(response->field("requestId"), c.length);
        EXPECT_EQ(response->field("result").size(), c.fits ? std::stoul(c.length) : 0u);
        EXPECT_EQ(response->field("error"), c.fits ? "" : "Quillon's answer is too large to send.");
    }
    EXPECT_TRUE(log.contains("Did not send toolResponse to Brenmoor"));
}

TEST(ScriptureBridge, aPeerThatStopsReadingIsLetGoRatherThanQueuedForEver) {
    LogCapture log;
    BridgeHarness harness;
    auto stalled = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    stalled->hello("Stalled");
    ASSERT_TRUE(harness.waitForEvent(Kind::peerNamed));
    // About 1 MB an announcement: the socket buffers absorb a few, the queue a few dozen more.
    const LiveScripture psalm{"Psalms 119", "Psalms", "KJV", std::string(1'000'000, 'a')};
    for (int i = 0; i < 80 && !log.contains("the peer stopped reading"); ++i) {
        harness.bridge->announce(psalm);
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_TRUE(eventually([&] { return log.contains("Stalled left: the peer stopped reading"); }));
}

TEST(ScriptureBridge, stopReturnsThoughTheSilenceCheckIsAlreadyDue) {
    // The silence check comes round every millisecond here, so stop() often finds its handler
    // already queued: a check that ran after the timer's cancel must not arm it again, or the
    // network thread never runs out of work and stop() waits for it for ever.
    auto settings = BridgeHarness::quietSettings();
    settings.silenceLimit = 45ms;
    for (int round = 0; round < 40; ++round) {
        auto stopped = std::async(std::launch::async, [&] { BridgeHarness harness(settings); });
        if (stopped.wait_for(10s) != std::future_status::ready) {
            ADD_FAILURE() << "stop() did not return (round " << round << ")";
            std::_Exit(1); // the network thread cannot be joined: end here rather than hang the suite
        }
    }
}

TEST(ScriptureBridge, aSilentPeerIsDroppedSoonAfterTheLimitNotAtTheNextHeartbeat) {
    auto settings = BridgeHarness::quietSettings();
    settings.heartbeatInterval = 3s;
    settings.silenceLimit = 300ms;
    BridgeHarness harness(settings);
    auto silent = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    auto started = std::chrono::steady_clock::now();
    EXPECT_TRUE(silent->waitForClose(2s));
    EXPECT_GE(std::chrono::steady_clock::now() - started, 250ms);
}

TEST(ScriptureBridge, stalledSecureHandshakeIsCancelledAfterTheTimeout) {
    LogCapture log;
    auto settings = BridgeHarness::quietSettings();
    settings.tlsHandshakeTimeout = 300ms;
    BridgeHarness harness(settings);
    auto stalled = VantalinkTestPeer::connectPlain(harness.bridge->securePort()); // never says ClientHello
    auto started = std::chrono::steady_clock::now();
    EXPECT_TRUE(stalled->waitForClose(3s));
    EXPECT_GE(std::chrono::steady_clock::now() - started, 250ms);
    EXPECT_TRUE(log.contains("the secure handshake did not finish within 0.3 seconds"));
}

TEST(ScriptureBridge, secureHandshakeFailuresAreExplained) {
    BridgeHarness harness;
    auto secret = harness.pair("Brenmoor");
    // The right identity with the wrong key fails on the Finished message's MAC.
    EXPECT_FALSE(VantalinkTestPeer::connectSecure(harness.bridge->securePort(), VantalinkPsk::identity(secret),
                                                  orvane::randomBytes(32)));
    auto status = harness.waitForEvent(Kind::tlsStatus);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->detail, "the pairing key does not match (bad MAC)");

    // An identity the desk does not know.
    EXPECT_FALSE(
        VantalinkTestPeer::connectSecure(harness.bridge->securePort(), "0011223344556677", orvane::randomBytes(32)));
    EXPECT_TRUE(eventually([&] {
        return harness.bridge->tlsStatus() == "the other device does not recognize this pairing (unknown PSK identity)";
    }));

    // An unpaired peer may still open an encrypted link, and pair over it.
    auto identity = VantalinkPsk::unpairedIdentity("Calvane");
    auto unpaired =
        VantalinkTestPeer::connectSecure(harness.bridge->securePort(), identity, VantalinkPsk::unpairedKey(identity));
    ASSERT_TRUE(unpaired);
    unpaired->send(Type::requestScripture);
    EXPECT_TRUE(unpaired->waitFor(Type::scriptureCleared));
}

TEST(ScriptureBridge, listenersUseTheConfiguredPortsAndReportABusyPort) {
    LogCapture log;
    BridgeHarness first;
    auto settings = BridgeHarness::quietSettings();
    settings.port = first.bridge->plainPort();
    BridgeHarness second(settings);
    EXPECT_EQ(second.bridge->plainPort(), 0);
    EXPECT_NE(second.bridge->securePort(), 0);
    EXPECT_TRUE(log.contains("Could not start the Brenmoor/Calvane listener: "));
}

} // namespace
} // namespace quillon::mesh
