#pragma once

#include "orvane/IntelligenceReadiness.h"

namespace orvane {

/// Says, for each backend kind, whether it can be used now. Asked afresh at every selection.
class IntelligenceAvailabilityProbing {
public:
    virtual ~IntelligenceAvailabilityProbing() = default;
    virtual IntelligenceAvailability currentAvailability() const = 0;
};

/// A probe that always gives the same answer (tests, previews, a build without any model).
struct StaticAvailabilityProbe final : IntelligenceAvailabilityProbing {
    IntelligenceAvailability availability;

    explicit StaticAvailabilityProbe(IntelligenceAvailability value) : availability(std::move(value)) {}
    IntelligenceAvailability currentAvailability() const override { return availability; }
};

} // namespace orvane
