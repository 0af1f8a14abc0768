#include "orvane/IntelligenceFeature.h"
#include "orvane/SystemAvailabilityProbe.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

namespace orvane {
namespace {

using Kind = IntelligenceBackendKind;
using Reason = IntelligenceUnavailableReason;

IntelligenceReadiness ready() {
    return IntelligenceReadiness::ready();
}
IntelligenceReadiness off(Reason reason) {
    return IntelligenceReadiness::unavailable(std::move(reason));
}

class RecordingBackend final : public IntelligenceBackendProviding {
public:
    RecordingBackend(Kind kind, std::string reply, bool fails = false)
        : m_kind(kind), m_reply(std::move(reply)), m_fails(fails) {}
    Kind kind() const override { return m_kind; }
    IntelligenceResponse respond(const IntelligenceRequest& request) override {
        requests.push_back(request);
        if (m_fails)
            throw IntelligenceError::backendFailed("connection reset");
        return {m_reply, m_kind};
    }
    std::vector<IntelligenceRequest> requests;

private:
    Kind m_kind;
    std::string m_reply;
    bool m_fails;
};

std::shared_ptr<StaticAvailabilityProbe> probeOf(IntelligenceReadiness onDevice, IntelligenceReadiness privateCloud,
                                                 IntelligenceReadiness external) {
    return std::make_shared<StaticAvailabilityProbe>(IntelligenceAvailability{onDevice, privateCloud, external});
}

std::string reasonOf(const BackendSelection& selection) {
    if (auto* reason = std::get_if<Reason>(&selection))
        return reason->message();
    return "chose " + std::string(rawValue(std::get<0>(selection)->kind()));
}

TEST(IntelligenceBackendKind, rawValuesRoundTripThroughJsonAndRejectOthers) {
    for (Kind kind : allIntelligenceBackendKinds)
        EXPECT_EQ(nlohmann::json(kind).get<Kind>(), kind);
    EXPECT_EQ(nlohmann::json(Kind::privateCloud).dump(), "\"privateCloud\"");
    for (const char* bad : {"\"OnDevice\"", "\"cloud\"", "\"\"", "3", "null"})
        EXPECT_THROW(nlohmann::json::parse(bad).get<Kind>(), nlohmann::json::exception) << bad;
}

TEST(IntelligenceUnavailableReason, messagesAndEquality) {
    EXPECT_EQ(Reason::modelNotReady().message(), "The on-device model is still downloading.");
    EXPECT_EQ(Reason::disabledByOperator().message(), "Intelligence features are switched off in Settings.");
    EXPECT_EQ(Reason::notConfigured().message(), "No external model has been set up.");
    EXPECT_EQ(Reason::other("The server is asleep.").message(), "The server is asleep.");
    std::set<std::string> distinct;
    for (const Reason& reason : {Reason::osTooOld(), Reason::deviceNotEligible(), Reason::notEnabled()}) {
        EXPECT_FALSE(reason.message().empty());
        EXPECT_EQ(reason.message().find("Mac"), std::string::npos);
        distinct.insert(reason.message());
    }
    EXPECT_EQ(distinct.size(), 3u);
    EXPECT_EQ(Reason::other("a"), Reason::other("a"));
    EXPECT_NE(Reason::other("a"), Reason::other("b"));
    EXPECT_NE(Reason::other(""), Reason::notConfigured());
}

TEST(SystemAvailabilityProbe, operatorSwitchCoversEveryKindAndPrivateCloudFollowsOnDevice) {
    int externalAsked = 0;
    SystemAvailabilityProbe probe;
    probe.intelligenceEnabledByOperator = [] { return false; };
    probe.externalModelConfigured = [&] {
        ++externalAsked;
        return true;
    };
    probe.onDeviceReadiness = [] { return IntelligenceReadiness::ready(); };
    IntelligenceAvailability disabled = probe.currentAvailability();
    for (Kind kind : allIntelligenceBackendKinds)
        EXPECT_EQ(disabled.readiness(kind), off(Reason::disabledByOperator()));
    EXPECT_EQ(externalAsked, 0);

    probe.intelligenceEnabledByOperator = [] { return true; };
    probe.onDeviceReadiness = [] { return off(Reason::modelNotReady()); };
    IntelligenceAvailability loading = probe.currentAvailability();
    EXPECT_EQ(loading.onDevice, off(Reason::modelNotReady()));
    EXPECT_EQ(loading.privateCloud, off(Reason::modelNotReady()));
    EXPECT_EQ(loading.external, ready());

    probe.externalModelConfigured = [] { return false; };
    probe.onDeviceReadiness = nullptr;
    IntelligenceAvailability bare = probe.currentAvailability();
    EXPECT_EQ(bare.onDevice, off(Reason::notConfigured()));
    EXPECT_EQ(bare.external, off(Reason::notConfigured()));
}

TEST(ModelRouter, selectionWalkReportsTheLastReasonTried) {
    struct Case {
        const char* name;
        IntelligenceAvailability availability;
        std::vector<Kind> registered;
        std::vector<Kind> kinds;
        std::string expected;
    };
    const Case cases[] = {
        {"empty kinds never consult readiness",
         {ready(), ready(), ready()},
         {Kind::onDevice},
         {},
         Reason::notConfigured().message()},
        {"ready and registered is chosen",
         {ready(), ready(), ready()},
         {Kind::onDevice},
         {Kind::onDevice},
         "chose onDevice"},
        {"ready but unregistered says notConfigured",
         {ready(), ready(), ready()},
         {},
         {Kind::onDevice},
         Reason::notConfigured().message()},
        {"loading in both kinds",
         {off(Reason::modelNotReady()), off(Reason::modelNotReady()), ready()},
         {Kind::onDevice},
         {Kind::onDevice, Kind::privateCloud},
         Reason::modelNotReady().message()},
        {"the later kind's reason wins",
         {off(Reason::modelNotReady()), off(Reason::other("cloud down")), ready()},
         {Kind::onDevice},
         {Kind::onDevice, Kind::privateCloud},
         "cloud down"},
        {"unregistered later kind resets to notConfigured",
         {off(Reason::notEnabled()), ready(), ready()},
         {Kind::onDevice},
         {Kind::onDevice, Kind::privateCloud},
         Reason::notConfigured().message()},
        {"falls through to a later registered kind",
         {off(Reason::notEnabled()), ready(), ready()},
         {Kind::onDevice, Kind::external},
         {Kind::onDevice, Kind::privateCloud, Kind::external},
         "chose external"},
        {"order of preference decides",
         {ready(), ready(), ready()},
         {Kind::onDevice, Kind::external},
         {Kind::external, Kind::onDevice},
         "chose external"},
    };
    for (const Case& test : cases) {
        std::vector<std::shared_ptr<IntelligenceBackendProviding>> backends;
        for (Kind kind : test.registered)
            backends.push_back(std::make_shared<RecordingBackend>(kind, "reply"));
        ModelRouter router(std::make_shared<StaticAvailabilityProbe>(test.availability), backends);
        EXPECT_EQ(reasonOf(router.selectBackend(test.kinds)), test.expected) << test.name;
    }
}

TEST(ModelRouter, registeringAKindAgainReplacesTheBackend) {
    auto first = std::make_shared<RecordingBackend>(Kind::onDevice, "first");
    auto second = std::make_shared<RecordingBackend>(Kind::onDevice, "second");
    ModelRouter router(probeOf(ready(), ready(), ready()), {first});
    router.registerBackend(second);
    EXPECT_EQ(router.respond({"i", "p", {}}, IntelligencePolicy::onDeviceOnly()).text, "second");
    EXPECT_TRUE(first->requests.empty());
}

TEST(ModelRouterDeathTest, twoBackendsOfOneKindStopTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto build = [] {
        ModelRouter router(probeOf(ready(), ready(), ready()),
                           {std::make_shared<RecordingBackend>(Kind::external, "a"),
                            std::make_shared<RecordingBackend>(Kind::external, "b")});
    };
    EXPECT_DEATH(build(), "Duplicate values for key");
}

TEST(ModelRouter, respondFailsWithTheReasonOrPassesTheBackendThrough) {
    auto failing = std::make_shared<RecordingBackend>(Kind::onDevice, "", true);
    ModelRouter router(probeOf(ready(), off(Reason::modelNotReady()), ready()), {failing});
    try {
        router.respond({}, {{Kind::privateCloud}, true});
        FAIL() << "expected noPermittedBackend";
    } catch (const IntelligenceError& error) {
        EXPECT_EQ(error, IntelligenceError::noPermittedBackend(Reason::modelNotReady()));
    }
    try {
        router.respond({"rules", "question", {"commentaries"}}, IntelligencePolicy::onDeviceOnly());
        FAIL() << "expected backendFailed";
    } catch (const IntelligenceError& error) {
        EXPECT_EQ(error, IntelligenceError::backendFailed("connection reset"));
    }
    ASSERT_EQ(failing->requests.size(), 1u);
    EXPECT_EQ(failing->requests[0], (IntelligenceRequest{"rules", "question", {"commentaries"}}));
}

/// A feature that shouts its input when generated and echoes it as the fallback.
class EchoFeature final : public IntelligenceFeature<std::string, std::string> {
public:
    explicit EchoFeature(IntelligencePolicy policy, bool rejects = false, bool fallbackThrows = false)
        : m_policy(std::move(policy)), m_rejects(rejects), m_fallbackThrows(fallbackThrows) {}
    std::string identifier() const override { return "AI-999"; }
    IntelligencePolicy policy() const override { return m_policy; }
    std::string fallback(const std::string& input) const override {
        if (m_fallbackThrows)
            throw std::invalid_argument("bad input");
        return "fallback:" + input;
    }
    std::string generate(const std::string& input, IntelligenceBackendProviding& backend) const override {
        std::string reply = backend.respond({"echo", input, {}}).text;
        if (m_rejects)
            throw IntelligenceError::malformedResponse("Nothing was written.");
        return "generated:" + reply;
    }

private:
    IntelligencePolicy m_policy;
    bool m_rejects;
    bool m_fallbackThrows;
};

TEST(IntelligenceFeatureRun, everyPathEndsInAValueWithTheRightPathAndLabel) {
    struct Case {
        const char* name;
        IntelligenceAvailability availability;
        bool registered;
        bool backendFails;
        bool rejects;
        IntelligencePolicy policy;
        std::string value;
        IntelligencePath path;
        bool label;
    };
    const IntelligencePolicy device = IntelligencePolicy::onDeviceOnly();
    IntelligencePolicy unlabelled = device;
    unlabelled.requiresGeneratedLabel = false;
    const IntelligenceAvailability up{ready(), ready(), ready()};
    const IntelligenceReadiness down = off(Reason::disabledByOperator());
    const IntelligenceAvailability switchedOff{down, down, down};
    const IntelligencePath generated = IntelligencePath::generated(Kind::onDevice);
    const Case cases[] = {
        {"generated", up, true, false, false, device, "generated:x", generated, true},
        {"generated without label", up, true, false, false, unlabelled, "generated:x", generated, false},
        {"operator switched off", switchedOff, true, false, false, device, "fallback:in",
         IntelligencePath::fallback(Reason::disabledByOperator()), false},
        {"nothing registered", up, false, false, false, device, "fallback:in",
         IntelligencePath::fallback(Reason::notConfigured()), false},
        {"backend fails", up, true, true, false, device, "fallback:in", IntelligencePath::fallback(), false},
        {"reply rejected", up, true, false, true, device, "fallback:in", IntelligencePath::fallback(), false},
    };
    for (const Case& test : cases) {
        std::vector<std::shared_ptr<IntelligenceBackendProviding>> backends;
        if (test.registered)
            backends.push_back(std::make_shared<RecordingBackend>(Kind::onDevice, "x", test.backendFails));
        ModelRouter router(std::make_shared<StaticAvailabilityProbe>(test.availability), backends);
        IntelligenceOutcome<std::string> outcome =
            run(EchoFeature(test.policy, test.rejects), std::string("in"), router);
        EXPECT_EQ(outcome.value, test.value) << test.name;
        EXPECT_EQ(outcome.path, test.path) << test.name;
        EXPECT_EQ(outcome.needsGeneratedLabel, test.label) << test.name;
    }
}

TEST(IntelligenceFeatureRun, aFailingFallbackIsTheOnlyFailure) {
    ModelRouter router(probeOf(ready(), ready(), ready()),
                       {std::make_shared<RecordingBackend>(Kind::onDevice, "x", true)});
    EXPECT_THROW(run(EchoFeature(IntelligencePolicy::onDeviceOnly(), false, true), std::string("in"), router),
                 std::invalid_argument);
}

TEST(IntelligenceFeatureCatalogue, identifiersAreUniqueAndPoliciesAsListed) {
    std::set<std::string> identifiers;
    for (const IntelligenceFeatureEntry& entry : intelligenceFeatureCatalogue()) {
        EXPECT_TRUE(identifiers.insert(entry.identifier).second) << entry.identifier;
        ASSERT_EQ(entry.identifier.size(), 6u);
        EXPECT_EQ(entry.identifier.substr(0, 3), "AI-");
        EXPECT_TRUE(entry.policy.requiresGeneratedLabel || entry.name == "PreachTimeCategoriser") << entry.name;
    }
    EXPECT_EQ(intelligenceFeatureCatalogue().size(), 16u);
    EXPECT_EQ(intelligenceFeatureEntry("PreachTimeCategoriser")->policy.permittedBackends,
              std::vector<Kind>{Kind::onDevice});
    EXPECT_EQ(intelligenceFeatureEntry("ExplainPermissionPrompt")->policy,
              IntelligencePolicy::onDeviceOrPrivateCloud());
    EXPECT_EQ(intelligenceFeatureEntry("AskYourLibrary")->identifier, "AI-086");
    EXPECT_FALSE(intelligenceFeatureEntry("Nonexistent"));
}

} // namespace
} // namespace orvane
