#include "preach/PreachPaceLearner.h"

#include "platform/Preferences.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace quillon::preach {

void to_json(nlohmann::json& json, const PreachPaceLearner::Observation& observation) {
    json = {
        {"sermonId", observation.sermonId.text()},      {"proseWords", observation.proseWords},
        {"scriptureWords", observation.scriptureWords}, {"listWords", observation.listWords},
        {"actualMinutes", observation.actualMinutes},   {"recordedAt", model::formatDateTime(observation.recordedAt)}};
}

void from_json(const nlohmann::json& json, PreachPaceLearner::Observation& observation) {
    std::optional<model::Uuid> id = model::Uuid::parse(json.at("sermonId").get<std::string>());
    std::optional<model::DateTime> recordedAt = model::parseDateTime(json.at("recordedAt").get<std::string>());
    if (!id || !recordedAt)
        throw std::invalid_argument("an observation has an unreadable sermon identifier or date");
    observation.sermonId = *id;
    observation.proseWords = json.at("proseWords").get<int>();
    observation.scriptureWords = json.at("scriptureWords").get<int>();
    observation.listWords = json.at("listWords").get<int>();
    observation.actualMinutes = json.at("actualMinutes").get<double>();
    observation.recordedAt = *recordedAt;
}

void PreachPaceLearner::record(const Observation& observation) {
    nlohmann::json stored = m_preferences.value(observationsKey).value_or(nlohmann::json::array());
    if (!stored.is_array())
        stored = nlohmann::json::array();
    stored.push_back(observation);
    m_preferences.set(observationsKey, std::move(stored));
}

std::vector<PreachPaceLearner::Observation>
PreachPaceLearner::storedObservations(const platform::Preferences& preferences) {
    std::vector<Observation> result;
    std::optional<nlohmann::json> stored = preferences.value(observationsKey);
    if (!stored || !stored->is_array())
        return result;
    for (const nlohmann::json& entry : *stored) {
        try {
            result.push_back(entry.get<Observation>());
        } catch (const std::exception&) {
            // An entry edited by hand or by a newer version is ignored rather than spoiling the pace.
        }
    }
    return result;
}

std::optional<double> PreachPaceLearner::learnedPace(double scriptureFactor, double listFactor) const {
    return learnedPace(observations(), scriptureFactor, listFactor);
}

std::optional<double> PreachPaceLearner::learnedPace(const std::vector<Observation>& observations,
                                                     double scriptureFactor, double listFactor) {
    std::size_t first = observations.size() > countedObservations ? observations.size() - countedObservations : 0;
    double sum = 0;
    int counted = 0;
    for (std::size_t position = first; position < observations.size(); ++position) {
        const Observation& observation = observations[position];
        if (!(observation.actualMinutes > 0))
            continue;
        double words = observation.proseWords + observation.scriptureWords / std::max(scriptureFactor, 0.01) +
                       observation.listWords / std::max(listFactor, 0.01);
        double rate = words / observation.actualMinutes;
        if (!std::isfinite(rate) || rate <= 0)
            continue;
        sum += std::clamp(rate, slowestPace, fastestPace);
        ++counted;
    }
    if (counted == 0)
        return std::nullopt;
    return sum / counted;
}

} // namespace quillon::preach
