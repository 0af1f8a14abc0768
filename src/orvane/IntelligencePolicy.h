#pragma once

#include "orvane/IntelligenceBackendKind.h"

#include <vector>

namespace orvane {

/// Which backend kinds a feature may use, in order of preference, and whether a generated value
/// must carry the "generated" label.
struct IntelligencePolicy {
    std::vector<IntelligenceBackendKind> permittedBackends;
    bool requiresGeneratedLabel = true;

    bool operator==(const IntelligencePolicy&) const = default;

    static IntelligencePolicy onDeviceOnly() { return {{IntelligenceBackendKind::onDevice}, true}; }
    static IntelligencePolicy onDeviceOrPrivateCloud() {
        return {{IntelligenceBackendKind::onDevice, IntelligenceBackendKind::privateCloud}, true};
    }
    static IntelligencePolicy anyBackend() {
        return {{IntelligenceBackendKind::onDevice, IntelligenceBackendKind::privateCloud,
                 IntelligenceBackendKind::external},
                true};
    }
};

} // namespace orvane
