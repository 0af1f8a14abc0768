#pragma once

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <optional>
#include <string_view>

namespace orvane {

/// Where a language model runs. Encoded in JSON as its raw value.
enum class IntelligenceBackendKind { onDevice, privateCloud, external };

/// Every kind, in the order used whenever kinds are listed.
inline constexpr std::array<IntelligenceBackendKind, 3> allIntelligenceBackendKinds = {
    IntelligenceBackendKind::onDevice, IntelligenceBackendKind::privateCloud, IntelligenceBackendKind::external};

/// "onDevice", "privateCloud", "external".
std::string_view rawValue(IntelligenceBackendKind kind);
/// The kind whose raw value is exactly `text`; else nothing.
std::optional<IntelligenceBackendKind> intelligenceBackendKindFromRawValue(std::string_view text);

void to_json(nlohmann::json& json, IntelligenceBackendKind kind);
/// Throws nlohmann::json::exception for anything but one of the three raw values.
void from_json(const nlohmann::json& json, IntelligenceBackendKind& kind);

} // namespace orvane
