#include "preach/PreachPaceLearner.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace quillon::preach {
namespace {

using Observation = PreachPaceLearner::Observation;

Observation observed(int prose, double minutes, int scripture = 0, int list = 0) {
    Observation observation;
    observation.sermonId = model::Uuid::random();
    observation.proseWords = prose;
    observation.scriptureWords = scripture;
    observation.listWords = list;
    observation.actualMinutes = minutes;
    observation.recordedAt = model::DateTime(std::chrono::seconds(1741530600));
    return observation;
}

TEST(PreachPaceLearner, learnedPaceFollowsTheRule) {
    struct Case {
        const char* name;
        std::vector<Observation> observations;
        std::optional<double> pace;
    };
    std::vector<Observation> eleven = {observed(100, 1)}; // 100 a minute, the oldest, ignored
    for (int i = 0; i < 10; ++i)
        eleven.push_back(observed(200, 1));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {"none", {}, std::nullopt},
        {"plain prose", {observed(1300, 10)}, 130},
        {"too fast is clamped to 260", {observed(1000, 2)}, 260},
        {"too slow is clamped to 60", {observed(100, 10)}, 60},
        {"scripture and lists count as prose-equivalent words", {observed(0, 10, 750, 800)}, 200},
        {"mean of the clamped rates", {observed(1000, 2), observed(1000, 10)}, 180},
        {"zero and negative durations are skipped", {observed(1300, 0), observed(1300, -1), observed(1400, 10)}, 140},
        {"a rate of zero is skipped", {observed(0, 5)}, std::nullopt},
        {"a duration that is not a number is skipped", {observed(100, nan)}, std::nullopt},
        {"eleven observations: the oldest is ignored", eleven, 200},
    };
    for (const Case& test : cases) {
        std::optional<double> pace = PreachPaceLearner::learnedPace(test.observations, 0.75, 0.8);
        ASSERT_EQ(pace.has_value(), test.pace.has_value()) << test.name;
        if (pace) {
            EXPECT_NEAR(*pace, *test.pace, 1e-9) << test.name;
        }
    }
    // Factors of 0 are floored at 0.01 rather than dividing by zero.
    EXPECT_EQ(PreachPaceLearner::learnedPace({observed(0, 100, 1)}, 0, 0.8), 60);
}

TEST(PreachPaceLearner, observationsAreKeptInPreferencesAsJson) {
    platform::Preferences preferences = platform::Preferences::inMemory();
    PreachPaceLearner learner(preferences);
    Observation first = observed(1000, 8, 100, 50);
    learner.record(first);
    learner.record(observed(1500, 10));
    nlohmann::json stored = *preferences.value("Quillon.pace.observations");
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored[0]["sermonId"], first.sermonId.text());
    EXPECT_EQ(stored[0]["proseWords"], 1000);
    EXPECT_EQ(stored[0]["scriptureWords"], 100);
    EXPECT_EQ(stored[0]["listWords"], 50);
    EXPECT_EQ(stored[0]["actualMinutes"], 8.0);
    EXPECT_EQ(stored[0]["recordedAt"], "2025-03-09T14:30:00Z");
    EXPECT_EQ(learner.observations().front(), first);

    // Entries that cannot be read are ignored, not fatal.
    stored.push_back({{"sermonId", "nope"}});
    stored.push_back(42);
    preferences.set("Quillon.pace.observations", stored);
    EXPECT_EQ(learner.observations().size(), 2u);

    EXPECT_EQ(PreachPace::fromPreferences(preferences).wordsPerMinute, 130);
    preferences.set("Quillon.pace.measuredFromRecording", true);

    // Switched on before anything was recorded: measured already, at the starting pace.
    platform::Preferences fresh = platform::Preferences::inMemory();
    fresh.set("Quillon.pace.measuredFromRecording", true);
    PreachPace unrecorded = PreachPace::fromPreferences(fresh);
    EXPECT_TRUE(unrecorded.measured);
    EXPECT_EQ(unrecorded.wordsPerMinute, 130);
    EXPECT_EQ(unrecorded.explanation(), "Preach Preview will treat its estimate as based on how you actually speak.");

    PreachPace measured = PreachPace::fromPreferences(preferences);
    EXPECT_TRUE(measured.measured);
    double expected = ((1000 + 100 / 0.75 + 50 / 0.8) / 8 + 150) / 2;
    EXPECT_NEAR(measured.wordsPerMinute, expected, 1e-9);
    EXPECT_EQ(measured.explanation(), "Preach Preview will treat its estimate as based on how you actually speak.");
}

} // namespace
} // namespace quillon::preach
