#pragma once

#include "model/DateTime.h"
#include "model/Uuid.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <vector>

namespace quillon::platform {
class Preferences;
}

namespace quillon::preach {

/// Learns the preacher's own pace from how long recorded sermons really took.
class PreachPaceLearner {
public:
    static constexpr const char* observationsKey = "Quillon.pace.observations";
    /// Only the most recent observations count, so the pace follows the preacher as they change.
    static constexpr std::size_t countedObservations = 10;
    static constexpr double slowestPace = 60;
    static constexpr double fastestPace = 260;

    /// One measured sermon: its word counts by delivery and how long it really took.
    struct Observation {
        model::Uuid sermonId;
        int proseWords = 0;
        int scriptureWords = 0;
        int listWords = 0;
        double actualMinutes = 0;
        model::DateTime recordedAt{};

        bool operator==(const Observation&) const = default;
    };

    explicit PreachPaceLearner(platform::Preferences& preferences) : m_preferences(preferences) {}

    /// Appends `observation` to the stored list.
    void record(const Observation& observation);
    /// Every stored observation that can be read, oldest first.
    std::vector<Observation> observations() const { return storedObservations(m_preferences); }
    static std::vector<Observation> storedObservations(const platform::Preferences& preferences);
    /// The learned words a minute, or nothing when no usable observation exists.
    std::optional<double> learnedPace(double scriptureFactor, double listFactor) const;

    /// The rule itself: of the last ten observations, skip those whose duration is not positive or
    /// whose prose-equivalent rate is not a positive finite number; clamp each rate to 60–260 words a
    /// minute and take the plain mean.
    static std::optional<double> learnedPace(const std::vector<Observation>& observations, double scriptureFactor,
                                             double listFactor);

private:
    platform::Preferences& m_preferences;
};

void to_json(nlohmann::json& json, const PreachPaceLearner::Observation& observation);
/// Throws nlohmann::json::exception for a missing member, std::invalid_argument for an unreadable
/// identifier or date.
void from_json(const nlohmann::json& json, PreachPaceLearner::Observation& observation);

} // namespace quillon::preach
