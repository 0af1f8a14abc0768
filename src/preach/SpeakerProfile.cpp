#include "preach/SpeakerProfile.h"

#include "platform/Preferences.h"

#include <nlohmann/json.hpp>
#include <unicode/unistr.h>

namespace quillon::preach {

namespace {

std::string foldedName(const std::string& name) {
    std::size_t first = name.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    std::string trimmed = name.substr(first, name.find_last_not_of(" \t\r\n") - first + 1);
    std::string folded;
    icu::UnicodeString::fromUTF8(trimmed).foldCase().toUTF8String(folded);
    return folded;
}

} // namespace

void to_json(nlohmann::json& json, const SpeakerProfile& profile) {
    json = nlohmann::json::object();
    json["name"] = profile.name;
    if (profile.wordsPerMinuteOverride)
        json["wordsPerMinuteOverride"] = *profile.wordsPerMinuteOverride;
}

void from_json(const nlohmann::json& json, SpeakerProfile& profile) {
    profile.name = json.at("name").get<std::string>();
    profile.wordsPerMinuteOverride.reset();
    auto found = json.find("wordsPerMinuteOverride");
    if (found != json.end() && found->is_number())
        profile.wordsPerMinuteOverride = found->get<double>();
}

std::vector<SpeakerProfile> SpeakerProfile::all(const platform::Preferences& preferences) {
    std::vector<SpeakerProfile> profiles;
    std::optional<nlohmann::json> stored = preferences.value(preferencesKey);
    if (!stored || !stored->is_array())
        return profiles;
    for (const nlohmann::json& entry : *stored) {
        try {
            profiles.push_back(entry.get<SpeakerProfile>());
        } catch (const nlohmann::json::exception&) {
            // A profile written by a newer or broken version: leave it stored, use the rest.
        }
    }
    return profiles;
}

std::optional<SpeakerProfile> SpeakerProfile::named(const platform::Preferences& preferences,
                                                    const std::string& speaker) {
    std::string wanted = foldedName(speaker);
    if (wanted.empty())
        return std::nullopt;
    for (SpeakerProfile& profile : all(preferences))
        if (foldedName(profile.name) == wanted)
            return std::move(profile);
    return std::nullopt;
}

void SpeakerProfile::save(platform::Preferences& preferences, const SpeakerProfile& profile) {
    nlohmann::json stored = preferences.value(preferencesKey).value_or(nlohmann::json::array());
    if (!stored.is_array())
        stored = nlohmann::json::array();
    for (nlohmann::json& entry : stored) {
        if (entry.is_object() && entry.contains("name") && entry["name"].is_string() &&
            foldedName(entry["name"].get<std::string>()) == foldedName(profile.name)) {
            entry["name"] = profile.name;
            if (profile.wordsPerMinuteOverride)
                entry["wordsPerMinuteOverride"] = *profile.wordsPerMinuteOverride;
            else
                entry.erase("wordsPerMinuteOverride");
            preferences.set(preferencesKey, stored);
            return;
        }
    }
    stored.push_back(profile);
    preferences.set(preferencesKey, stored);
}

} // namespace quillon::preach
