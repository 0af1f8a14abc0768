#include "orvane/SystemAvailabilityProbe.h"

namespace orvane {

IntelligenceAvailability SystemAvailabilityProbe::currentAvailability() const {
    if (intelligenceEnabledByOperator && !intelligenceEnabledByOperator()) {
        // The operator's switch covers the external kind too, without asking whether it is set up.
        IntelligenceReadiness off =
            IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::disabledByOperator());
        return {off, off, off};
    }
    IntelligenceReadiness external =
        externalModelConfigured && externalModelConfigured()
            ? IntelligenceReadiness::ready()
            : IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::notConfigured());
    IntelligenceReadiness onDevice =
        onDeviceReadiness ? onDeviceReadiness()
                          : IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::notConfigured());
    // The private-cloud path stands or falls with the on-device model; it has no probe of its own.
    return {onDevice, onDevice, external};
}

} // namespace orvane
