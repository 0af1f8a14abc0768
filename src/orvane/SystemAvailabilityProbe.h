#pragma once

#include "orvane/IntelligenceAvailabilityProbing.h"

#include <functional>

namespace orvane {

/// The application's probe: the operator's switch, whether an external model is set up, and the
/// on-device model's own readiness (on this platform, that of the local model server).
struct SystemAvailabilityProbe final : IntelligenceAvailabilityProbing {
    std::function<bool()> intelligenceEnabledByOperator;
    std::function<bool()> externalModelConfigured;
    /// Asked only when the operator allows intelligence. Absent means no on-device model exists
    /// in this build, reported as `notConfigured`.
    std::function<IntelligenceReadiness()> onDeviceReadiness;

    IntelligenceAvailability currentAvailability() const override;
};

} // namespace orvane
