#pragma once

#include "orvane/IntelligenceBackendKind.h"
#include "orvane/IntelligenceUnavailableReason.h"

#include <optional>

namespace orvane {

/// Whether one backend kind can be used now: `ready`, or unavailable with a reason.
class IntelligenceReadiness {
public:
    static IntelligenceReadiness ready() { return IntelligenceReadiness(std::nullopt); }
    static IntelligenceReadiness unavailable(IntelligenceUnavailableReason reason) {
        return IntelligenceReadiness(std::move(reason));
    }

    bool isReady() const { return !m_reason.has_value(); }
    /// The reason, absent when ready.
    const std::optional<IntelligenceUnavailableReason>& reason() const { return m_reason; }

    bool operator==(const IntelligenceReadiness&) const = default;

private:
    explicit IntelligenceReadiness(std::optional<IntelligenceUnavailableReason> reason) : m_reason(std::move(reason)) {}

    std::optional<IntelligenceUnavailableReason> m_reason;
};

/// The readiness of each of the three backend kinds.
struct IntelligenceAvailability {
    IntelligenceReadiness onDevice;
    IntelligenceReadiness privateCloud;
    IntelligenceReadiness external;

    /// The field named after `kind`.
    const IntelligenceReadiness& readiness(IntelligenceBackendKind kind) const {
        switch (kind) {
        case IntelligenceBackendKind::onDevice:
            return onDevice;
        case IntelligenceBackendKind::privateCloud:
            return privateCloud;
        case IntelligenceBackendKind::external:
            return external;
        } // no default case, so the compiler can warn about missing cases
        return external;
    }

    bool operator==(const IntelligenceAvailability&) const = default;
};

} // namespace orvane
