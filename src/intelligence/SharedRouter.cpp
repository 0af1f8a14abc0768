#include "intelligence/SharedRouter.h"

#include "orvane/SystemAvailabilityProbe.h"
#include "platform/Preferences.h"

namespace quillon::intelligence {

std::shared_ptr<orvane::ModelRouter> makeSharedRouter(const platform::Preferences& preferences) {
    return makeSharedRouter(preferences,
                            std::make_shared<LocalModelBackend>(LocalModelSettings::fromPreferences(preferences)));
}

std::shared_ptr<orvane::ModelRouter> makeSharedRouter(const platform::Preferences& preferences,
                                                      std::shared_ptr<LocalModelBackend> backend) {
    auto probe = std::make_shared<orvane::SystemAvailabilityProbe>();
    probe->intelligenceEnabledByOperator = [&preferences] {
        return !preferences.boolean(LocalModelSettings::disabledKey, false);
    };
    probe->externalModelConfigured = [] { return false; };
    probe->onDeviceReadiness = [backend] { return backend->readiness(); };
    return std::make_shared<orvane::ModelRouter>(
        probe, std::vector<std::shared_ptr<orvane::IntelligenceBackendProviding>>{backend});
}

} // namespace quillon::intelligence
