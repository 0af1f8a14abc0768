#include "mesh/MeshSettings.h"

#include "platform/Preferences.h"

#include <fmt/format.h>

#include <cmath>

namespace quillon::mesh {

namespace {

std::uint16_t portSetting(const platform::Preferences& preferences, const std::string& key) {
    double value = preferences.positiveNumber(key, 0);
    return value >= 1 && value <= 65535 ? static_cast<std::uint16_t>(value) : 0;
}

std::chrono::milliseconds secondsSetting(const platform::Preferences& preferences, const std::string& key,
                                         double fallback) {
    double seconds = preferences.positiveNumber(key, fallback);
    if (!std::isfinite(seconds) || seconds > 86'400)
        seconds = fallback;
    return std::chrono::milliseconds(static_cast<std::int64_t>(std::llround(seconds * 1000)));
}

} // namespace

MeshSettings MeshSettings::fromPreferences(const platform::Preferences& preferences) {
    MeshSettings settings;
    settings.port = portSetting(preferences, "vantalink.port");
    settings.tlsPort = portSetting(preferences, "vantalink.tlsPort");
    if (auto address = preferences.string("vantalink.calvaneAddress"); !address.empty())
        settings.calvaneAddress = address;
    settings.requireEncrypted = preferences.boolean("vantalink.requireEncrypted", false);
    settings.requirePairing = preferences.boolean("Quillon.suiteMesh.requirePairing", false);
    settings.tlsHandshakeTimeout = secondsSetting(preferences, "vantalink.tlsHandshakeTimeoutSeconds", 10);
    settings.pairingWindow = secondsSetting(preferences, "Quillon.suiteMesh.pairingWindowSeconds", 120);
    return settings;
}

std::string secondsText(std::chrono::milliseconds duration) {
    return fmt::format("{:g}", static_cast<double>(duration.count()) / 1000.0);
}

} // namespace quillon::mesh
