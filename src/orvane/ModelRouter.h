#pragma once

#include "orvane/IntelligenceAvailabilityProbing.h"
#include "orvane/IntelligenceBackendProviding.h"
#include "orvane/IntelligencePolicy.h"

#include <map>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace orvane {

/// The outcome of a selection: the chosen backend, or the reason none could be chosen.
using BackendSelection = std::variant<std::shared_ptr<IntelligenceBackendProviding>, IntelligenceUnavailableReason>;

/// Holds at most one backend per kind and picks one for an ordered list of permitted kinds.
/// Operations are serialised; a model call runs outside the lock so it never holds the router.
class ModelRouter {
public:
    /// Two backends of one kind are a programming error: the process stops.
    ModelRouter(std::shared_ptr<const IntelligenceAvailabilityProbing> probe,
                std::vector<std::shared_ptr<IntelligenceBackendProviding>> backends = {});

    /// Stores `backend` under its kind, replacing any backend of that kind.
    void registerBackend(std::shared_ptr<IntelligenceBackendProviding> backend);

    IntelligenceAvailability currentAvailability() const;

    /// Walks `kinds` in order; the reason reported is that of the last kind tried.
    BackendSelection selectBackend(const std::vector<IntelligenceBackendKind>& kinds) const;

    /// Throws IntelligenceError::noPermittedBackend when nothing can be chosen; a backend's own
    /// failure passes through unchanged.
    IntelligenceResponse respond(const IntelligenceRequest& request, const IntelligencePolicy& policy) const;

private:
    std::shared_ptr<const IntelligenceAvailabilityProbing> m_probe;
    mutable std::mutex m_mutex;
    std::map<IntelligenceBackendKind, std::shared_ptr<IntelligenceBackendProviding>> m_backends;
};

} // namespace orvane
