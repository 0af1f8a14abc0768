#include "intelligence/LocalModelBackend.h"
#include "intelligence/LocalModelEmbedding.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillon::intelligence {
namespace {

using orvane::IntelligenceError;
using orvane::IntelligenceReadiness;
using orvane::IntelligenceUnavailableReason;
using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

LocalModelSettings settingsFor(const StubModelServer& server, std::string model = {}) {
    LocalModelSettings settings;
    settings.endpoint = server.endpoint();
    settings.model = std::move(model);
    settings.replyTimeout = std::chrono::milliseconds(400);
    return settings;
}

/// An endpoint on loopback where nothing listens: a server that was started and stopped again.
std::string deadEndpoint() {
    StubModelServer server;
    return server.endpoint();
}

TEST(LocalModelEndpoint, parsesHttpAddressesAndRejectsOthers) {
    struct Case {
        const char* text;
        std::optional<LocalModelEndpoint> expected;
    };
    const Case cases[] = {
        {"http://127.0.0.1:8080/v1", LocalModelEndpoint{"127.0.0.1", "8080", "/v1"}},
        {"HTTP://localhost:11434/v1/", LocalModelEndpoint{"localhost", "11434", "/v1"}},
        {" http://[::1]:8080/v1 ", LocalModelEndpoint{"::1", "8080", "/v1"}},
        {"http://model-box", LocalModelEndpoint{"model-box", "80", ""}},
        {"https://127.0.0.1:8080/v1", std::nullopt},
        {"127.0.0.1:8080", std::nullopt},
        {"http://:8080/v1", std::nullopt},
        {"http://host:99999/v1", std::nullopt},
        {"http://host:80a/v1", std::nullopt},
        {"http://[::1/v1", std::nullopt},
        {"http://user@host/v1", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case& test : cases)
        EXPECT_EQ(LocalModelEndpoint::parse(test.text), test.expected) << test.text;
}

TEST(LocalModelSettings, readsPreferencesWithDefaults) {
    platform::Preferences preferences = platform::Preferences::inMemory();
    LocalModelSettings defaults = LocalModelSettings::fromPreferences(preferences);
    EXPECT_EQ(defaults.endpoint, "http://127.0.0.1:8080/v1");
    EXPECT_EQ(defaults.model, "");
    EXPECT_EQ(defaults.replyTimeout, std::chrono::seconds(120));
    EXPECT_EQ(defaults.connectTimeout, std::chrono::seconds(2));
    EXPECT_FALSE(defaults.embeddings);

    preferences.set("Quillon.intelligence.endpoint", "http://localhost:11434/v1");
    preferences.set("Quillon.intelligence.model", "llama3.2");
    preferences.set("Quillon.intelligence.timeoutSeconds", 0.5);
    preferences.set("Quillon.intelligence.embeddings", true);
    LocalModelSettings chosen = LocalModelSettings::fromPreferences(preferences);
    EXPECT_EQ(chosen.endpoint, "http://localhost:11434/v1");
    EXPECT_EQ(chosen.model, "llama3.2");
    EXPECT_EQ(chosen.replyTimeout, std::chrono::milliseconds(500));
    EXPECT_TRUE(chosen.embeddings);

    preferences.set("Quillon.intelligence.timeoutSeconds", -3);
    EXPECT_EQ(LocalModelSettings::fromPreferences(preferences).replyTimeout, std::chrono::seconds(120));
}

TEST(LocalModelBackend, readinessFollowsTheServer) {
    StubModelServer server;
    LocalModelBackend backend(settingsFor(server));
    EXPECT_TRUE(backend.readiness().isReady());

    server.setModelsBehaviour(Behaviour::statusCode(503));
    EXPECT_EQ(backend.readiness(), IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::modelNotReady()));

    server.setModelsBehaviour(Behaviour::statusCode(500, "{}"));
    EXPECT_NE(backend.readiness().reason()->message().find("HTTP status 500"), std::string::npos);

    server.setModelsBehaviour(Behaviour::statusCode(200, R"({"data":[]})"));
    EXPECT_NE(backend.readiness().reason()->message().find("lists no model"), std::string::npos);
    // A model named in the preferences is used without being listed.
    EXPECT_TRUE(LocalModelBackend(settingsFor(server, "named")).readiness().isReady());

    server.setModelsBehaviour(Behaviour::neverReply());
    LocalModelSettings impatient = settingsFor(server);
    EXPECT_EQ(LocalModelBackend(impatient).readiness().reason()->kind(), IntelligenceUnavailableReason::Case::other);

    std::string dead = deadEndpoint();
    LocalModelSettings unreachable;
    unreachable.endpoint = dead;
    EXPECT_EQ(LocalModelBackend(unreachable).readiness(),
              IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::other(
                  "Quillon could not reach the local model server at " + dead + ".")));

    unreachable.endpoint = "https://example.org/v1";
    EXPECT_NE(LocalModelBackend(unreachable).readiness().reason()->message().find("http://"), std::string::npos);
}

TEST(LocalModelBackend, sendsOneSingleTurnRequestToTheFirstListedModel) {
    StubModelServer server;
    server.setModels({"first-model", "second-model"});
    server.queueChat(Behaviour::reply("  An answer.\n"));
    server.queueChat(Behaviour::reply("Another."));
    LocalModelBackend backend(settingsFor(server));
    orvane::IntelligenceResponse response = backend.respond({"Be brief.", "What is grace?", {"commentaries"}});
    EXPECT_EQ(response.text, "  An answer.\n");
    EXPECT_EQ(response.backend, orvane::IntelligenceBackendKind::onDevice);
    EXPECT_EQ(backend.respond({"Rules", "Again", {}}).text, "Another.");

    std::vector<StubModelServer::RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 3u); // the model list is asked once, then remembered
    EXPECT_EQ(requests[0].target, "/v1/models");
    nlohmann::json body = nlohmann::json::parse(requests[1].body);
    EXPECT_EQ(body["model"], "first-model");
    EXPECT_EQ(body["stream"], false);
    ASSERT_EQ(body["messages"].size(), 2u);
    EXPECT_EQ(body["messages"][0], (nlohmann::json{{"role", "system"}, {"content", "Be brief."}}));
    EXPECT_EQ(body["messages"][1], (nlohmann::json{{"role", "user"}, {"content", "What is grace?"}}));
}

TEST(LocalModelBackend, everyFailedCallIsABackendFailureNamingTheEndpoint) {
    struct Case {
        const char* name;
        Behaviour behaviour;
        std::string expectedText;
    };
    StubModelServer server;
    const Case cases[] = {
        {"loading", Behaviour::statusCode(503), "answered with HTTP status 503: Loading model"},
        {"never replying", Behaviour::neverReply(), "did not answer within 0.4 seconds"},
        {"dropped connection", Behaviour::dropConnection(), "closed the connection without answering"},
        {"not a completion", Behaviour::statusCode(200, R"({"choices":[]})"), "without message text"},
        {"not JSON", Behaviour::statusCode(200, "<html>"), "without message text"},
        {"content null", Behaviour::statusCode(200, R"({"choices":[{"message":{"content":null}}]})"),
         "without message text"},
    };
    LocalModelBackend backend(settingsFor(server, "stub-model"));
    for (const Case& test : cases) {
        server.queueChat(test.behaviour);
        try {
            backend.respond({"i", "p", {}});
            ADD_FAILURE() << test.name << ": expected a failure";
        } catch (const IntelligenceError& error) {
            EXPECT_EQ(error.kind(), IntelligenceError::Case::backendFailed) << test.name;
            EXPECT_NE(error.text().find(server.endpoint()), std::string::npos) << test.name << ": " << error.text();
            EXPECT_NE(error.text().find(test.expectedText), std::string::npos) << test.name << ": " << error.text();
        }
    }
    LocalModelSettings unreachable;
    unreachable.endpoint = deadEndpoint();
    unreachable.model = "m";
    EXPECT_THROW(LocalModelBackend(unreachable).respond({"i", "p", {}}), IntelligenceError);
}

TEST(LocalModelBackend, embedsTextsInOrder) {
    StubModelServer server;
    LocalModelBackend backend(settingsFor(server, "stub-model"));
    std::vector<std::vector<float>> vectors = backend.embed({"grace", "peace"});
    ASSERT_EQ(vectors.size(), 2u);
    EXPECT_EQ(vectors[0], StubModelServer::stubEmbedding("grace"));
    EXPECT_EQ(vectors[1], StubModelServer::stubEmbedding("peace"));
    EXPECT_TRUE(backend.embed({}).empty());
    server.setEmbeddingsBehaviour(Behaviour::statusCode(200, R"({"data":[{"embedding":["x"]}]})"));
    EXPECT_THROW(backend.embed({"grace"}), IntelligenceError);
}

TEST(LocalModelEmbedding, vectorsComeFromTheServerAndFailuresHaveNone) {
    StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    preferences.set("Quillon.intelligence.endpoint", server.endpoint());
    EXPECT_EQ(LocalModelEmbedding::fromPreferences(preferences), nullptr);
    preferences.set("Quillon.intelligence.embeddings", true);
    auto embedding = LocalModelEmbedding::fromPreferences(preferences);
    ASSERT_NE(embedding, nullptr);
    std::vector<float> expected = StubModelServer::stubEmbedding("grace");
    EXPECT_EQ(embedding->vector("grace"), std::vector<double>(expected.begin(), expected.end()));
    server.setEmbeddingsBehaviour(Behaviour::dropConnection());
    EXPECT_EQ(embedding->vector("grace"), std::nullopt);
    preferences.set("Quillon.intelligenceDisabled", true);
    EXPECT_EQ(LocalModelEmbedding::fromPreferences(preferences), nullptr);
}

TEST(LocalModelEmbedding, manyTextsAreEmbeddedInBatchesAndAFailedBatchHasNoVectors) {
    StubModelServer server;
    LocalModelEmbedding embedding(std::make_shared<LocalModelBackend>(settingsFor(server)));
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < LocalModelEmbedding::batchSize + 6; ++i)
        texts.push_back("text " + std::to_string(i));
    auto vectors = embedding.vectors(texts);
    ASSERT_EQ(vectors.size(), texts.size());
    for (std::size_t i : {std::size_t{0}, LocalModelEmbedding::batchSize - 1, LocalModelEmbedding::batchSize + 5}) {
        std::vector<float> expected = StubModelServer::stubEmbedding(texts[i]);
        EXPECT_EQ(vectors[i], std::vector<double>(expected.begin(), expected.end())) << i;
    }
    std::size_t requests = 0;
    for (const auto& request : server.requests())
        requests += request.target == "/v1/embeddings" ? 1 : 0;
    EXPECT_EQ(requests, 2u);

    server.setEmbeddingsBehaviour(Behaviour::dropConnection());
    for (const auto& vector : embedding.vectors({"grace", "peace"}))
        EXPECT_EQ(vector, std::nullopt);
    EXPECT_TRUE(embedding.vectors({}).empty());
}

TEST(SharedRouter, operatorSwitchIsReadAtEverySelection) {
    StubModelServer server;
    platform::Preferences preferences = platform::Preferences::inMemory();
    auto router = makeSharedRouter(preferences, std::make_shared<LocalModelBackend>(settingsFor(server)));
    EXPECT_TRUE(router->currentAvailability().onDevice.isReady());
    EXPECT_EQ(router->currentAvailability().external.reason(), IntelligenceUnavailableReason::notConfigured());

    preferences.set("Quillon.intelligenceDisabled", true);
    auto selection = router->selectBackend(orvane::IntelligencePolicy::onDeviceOnly().permittedBackends);
    ASSERT_TRUE(std::holds_alternative<IntelligenceUnavailableReason>(selection));
    EXPECT_EQ(std::get<IntelligenceUnavailableReason>(selection).message(),
              "Intelligence features are switched off in Settings.");

    preferences.set("Quillon.intelligenceDisabled", false);
    server.setModelsBehaviour(Behaviour::statusCode(503));
    selection = router->selectBackend({orvane::IntelligenceBackendKind::onDevice});
    EXPECT_EQ(std::get<IntelligenceUnavailableReason>(selection), IntelligenceUnavailableReason::modelNotReady());
}

} // namespace
} // namespace quillon::intelligence
