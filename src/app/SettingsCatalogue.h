#pragma once

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::platform {
class Preferences;
}

namespace quillon::app {

/// How a setting's value is typed and checked.
enum class SettingKind { number, wholeNumber, boolean, text, folder, address, hostAndPort, host, port, choice, list };

/// One preference the desk reads, as the settings window shows it.
struct SettingDescription {
    const char* key;
    /// The area it belongs to ("Storage", "Preach Preview", …), in the order the window shows them.
    const char* group;
    const char* label;
    /// One line saying what it changes.
    const char* explanation;
    SettingKind kind;
    /// For numbers: the accepted range, inclusive.
    double minimum = 0;
    double maximum = 0;
    /// What applies while the setting is left empty, shown as the field's placeholder.
    const char* defaultText = "";
    /// For choices: the stored values, separated by '|'.
    const char* choices = "";
};

/// Every preference key the desk reads that a preacher may change, grouped by area, and the checks a
/// typed value must pass. Preferences the desk keeps for itself (selection, window geometry, pinned and
/// hidden sermons, recorded paces, speaker profiles, pairing secrets) are not listed here.
class SettingsCatalogue {
public:
    static std::span<const SettingDescription> all();
    /// The groups in the order the window shows them.
    static std::vector<std::string> groups();
    static const SettingDescription* find(std::string_view key);

    /// The sentence that refuses `text` for `setting`, or nothing when it is acceptable (empty text is
    /// always acceptable: it returns the setting to its default).
    static std::optional<std::string> problem(const SettingDescription& setting, std::string_view text);
    /// Stores `text` (or removes the key for empty text) when it is acceptable; else returns the sentence
    /// and leaves the preferences as they were.
    static std::optional<std::string> apply(platform::Preferences& preferences, const SettingDescription& setting,
                                            std::string_view text);
    /// The stored value as the field shows it; empty when the key is absent.
    static std::string displayed(const platform::Preferences& preferences, const SettingDescription& setting);

    /// The choices of a `choice` setting.
    static std::vector<std::string> choices(const SettingDescription& setting);
};

} // namespace quillon::app
