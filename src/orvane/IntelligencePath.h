#pragma once

#include "orvane/IntelligenceBackendKind.h"
#include "orvane/IntelligenceUnavailableReason.h"

#include <optional>

namespace orvane {

/// Which path produced a feature's value: the model-free fallback (with the reason no backend
/// could be chosen, absent when the model was asked and failed) or a backend of some kind.
class IntelligencePath {
public:
    static IntelligencePath fallback(std::optional<IntelligenceUnavailableReason> reason = std::nullopt) {
        return IntelligencePath(false, IntelligenceBackendKind::onDevice, std::move(reason));
    }
    static IntelligencePath generated(IntelligenceBackendKind kind) {
        return IntelligencePath(true, kind, std::nullopt);
    }

    bool isGenerated() const { return m_generated; }
    bool isFallback() const { return !m_generated; }
    /// The backend kind of a generated value; absent for the fallback.
    std::optional<IntelligenceBackendKind> backend() const {
        return m_generated ? std::optional(m_kind) : std::nullopt;
    }
    /// The fallback's reason, when there is one.
    const std::optional<IntelligenceUnavailableReason>& reason() const { return m_reason; }

    bool operator==(const IntelligencePath&) const = default;

private:
    IntelligencePath(bool generated, IntelligenceBackendKind kind, std::optional<IntelligenceUnavailableReason> reason)
        : m_generated(generated), m_kind(kind), m_reason(std::move(reason)) {}

    bool m_generated;
    IntelligenceBackendKind m_kind;
    std::optional<IntelligenceUnavailableReason> m_reason;
};

/// A feature's value, the path that produced it and whether it must be shown as generated.
template <class Output>
struct IntelligenceOutcome {
    Output value;
    IntelligencePath path;
    bool needsGeneratedLabel = false;
};

} // namespace orvane
