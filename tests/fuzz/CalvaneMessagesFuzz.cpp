// Calvane's bridge sends text frames of one JSON object each, "kind" deciding: "linked",
// "rejected" with a reason, and "scripture" or "clear" pushed from its screens. A pushed scripture
// reaches the desk as a payload of its text and whole-number members, read like a peer's.
#include "FuzzInput.h"

#include "mesh/MeshScriptureReference.h"

#include <nlohmann/json.hpp>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillon::mesh::MeshScriptureReference;
    const auto frame = nlohmann::json::parse(quillon::fuzz::text(data, size), nullptr, false);
    if (frame.is_discarded() || !frame.is_object() || !frame.contains("kind") || !frame["kind"].is_string())
        return 0;
    if (frame.value("kind", "") != "scripture")
        return 0;
    std::map<std::string, std::string> payload;
    for (const auto& [key, value] : frame.items())
        if (value.is_string())
            payload[key] = value.get<std::string>();
        else if (value.is_number_integer())
            payload[key] = std::to_string(value.get<long long>());
    if (const auto reference = MeshScriptureReference::fromPayload(payload)) {
        quillon::fuzz::require(reference->chapter > 0);
        reference->description();
    }
    return 0;
}
