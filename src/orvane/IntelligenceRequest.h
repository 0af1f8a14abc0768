#pragma once

#include "orvane/IntelligenceBackendKind.h"

#include <string>
#include <vector>

namespace orvane {

/// One single-turn model request: a feature's fixed instructions and the prompt built from its input.
struct IntelligenceRequest {
    std::string instructions;
    std::string prompt;
    /// Tools the request may use; carried for backends that read it.
    std::vector<std::string> toolNames;

    bool operator==(const IntelligenceRequest&) const = default;
};

/// The model's reply exactly as given, and the kind of backend that produced it.
struct IntelligenceResponse {
    std::string text;
    IntelligenceBackendKind backend = IntelligenceBackendKind::onDevice;

    bool operator==(const IntelligenceResponse&) const = default;
};

} // namespace orvane
