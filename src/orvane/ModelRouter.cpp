#include "orvane/ModelRouter.h"

#include <cstdio>
#include <cstdlib>

namespace orvane {

ModelRouter::ModelRouter(std::shared_ptr<const IntelligenceAvailabilityProbing> probe,
                         std::vector<std::shared_ptr<IntelligenceBackendProviding>> backends)
    : m_probe(std::move(probe)) {
    for (auto& backend : backends) {
        IntelligenceBackendKind kind = backend->kind();
        if (!m_backends.emplace(kind, std::move(backend)).second) {
            std::fprintf(stderr, "Fatal error: Duplicate values for key: '%s'\n", std::string(rawValue(kind)).c_str());
            std::abort();
        }
    }
}

void ModelRouter::registerBackend(std::shared_ptr<IntelligenceBackendProviding> backend) {
    std::lock_guard lock(m_mutex);
    IntelligenceBackendKind kind = backend->kind();
    m_backends[kind] = std::move(backend);
}

IntelligenceAvailability ModelRouter::currentAvailability() const {
    return m_probe->currentAvailability();
}

BackendSelection ModelRouter::selectBackend(const std::vector<IntelligenceBackendKind>& kinds) const {
    if (kinds.empty())
        return IntelligenceUnavailableReason::notConfigured();
    IntelligenceAvailability availability = m_probe->currentAvailability();
    std::lock_guard lock(m_mutex);
    IntelligenceUnavailableReason lastReason = IntelligenceUnavailableReason::notConfigured();
    for (IntelligenceBackendKind kind : kinds) {
        const IntelligenceReadiness& readiness = availability.readiness(kind);
        if (!readiness.isReady()) {
            lastReason = *readiness.reason();
            continue;
        }
        auto found = m_backends.find(kind);
        if (found != m_backends.end())
            return found->second;
        lastReason = IntelligenceUnavailableReason::notConfigured();
    }
    return lastReason;
}

IntelligenceResponse ModelRouter::respond(const IntelligenceRequest& request, const IntelligencePolicy& policy) const {
    BackendSelection selection = selectBackend(policy.permittedBackends);
    if (auto* reason = std::get_if<IntelligenceUnavailableReason>(&selection))
        throw IntelligenceError::noPermittedBackend(*reason);
    return std::get<std::shared_ptr<IntelligenceBackendProviding>>(selection)->respond(request);
}

} // namespace orvane
