#pragma once

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

namespace quillon::platform {
class Preferences;
}

namespace quillon::preach {

/// A named speaker; a words-a-minute override, when present, replaces the pace for their sermons.
struct SpeakerProfile {
    /// The profiles are kept as a JSON array in the preferences under this key.
    static constexpr const char* preferencesKey = "Quillon.profiles.speakers";

    std::string name;
    std::optional<double> wordsPerMinuteOverride;

    bool operator==(const SpeakerProfile&) const = default;

    /// Every stored profile that can be read; unreadable entries are skipped.
    static std::vector<SpeakerProfile> all(const platform::Preferences& preferences);
    /// The profile whose name matches `speaker` (ignoring case and surrounding blanks); else nothing.
    static std::optional<SpeakerProfile> named(const platform::Preferences& preferences, const std::string& speaker);
    /// Adds `profile`, or updates the name and override of the one of the same name, keeping any
    /// other members that profile carries.
    static void save(platform::Preferences& preferences, const SpeakerProfile& profile);
};

void to_json(nlohmann::json& json, const SpeakerProfile& profile);
/// Throws nlohmann::json::exception when "name" is missing or not text.
void from_json(const nlohmann::json& json, SpeakerProfile& profile);

} // namespace quillon::preach
