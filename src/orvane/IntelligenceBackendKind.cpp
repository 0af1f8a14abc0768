#include "orvane/IntelligenceBackendKind.h"

#include <nlohmann/json.hpp>

namespace orvane {

std::string_view rawValue(IntelligenceBackendKind kind) {
    switch (kind) {
    case IntelligenceBackendKind::onDevice:
        return "onDevice";
    case IntelligenceBackendKind::privateCloud:
        return "privateCloud";
    case IntelligenceBackendKind::external:
        return "external";
    } // no default case, so the compiler can warn about missing cases
    return "onDevice";
}

std::optional<IntelligenceBackendKind> intelligenceBackendKindFromRawValue(std::string_view text) {
    for (IntelligenceBackendKind kind : allIntelligenceBackendKinds)
        if (rawValue(kind) == text)
            return kind;
    return std::nullopt;
}

void to_json(nlohmann::json& json, IntelligenceBackendKind kind) {
    json = std::string(rawValue(kind));
}

void from_json(const nlohmann::json& json, IntelligenceBackendKind& kind) {
    if (!json.is_string())
        throw nlohmann::json::type_error::create(302, "an intelligence backend kind must be a string", &json);
    std::optional<IntelligenceBackendKind> decoded = intelligenceBackendKindFromRawValue(json.get<std::string>());
    if (!decoded)
        throw nlohmann::json::other_error::create(501, "unknown intelligence backend kind", &json);
    kind = *decoded;
}

} // namespace orvane
