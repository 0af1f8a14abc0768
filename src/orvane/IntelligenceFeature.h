#pragma once

#include "orvane/IntelligenceFeatureCatalogue.h"
#include "orvane/IntelligencePath.h"
#include "orvane/ModelRouter.h"

#include <string>

namespace orvane {

/// A model-backed feature: a deterministic `fallback` that never needs a model, and `generate`,
/// which asks the chosen backend and parses and checks its reply.
template <class Input, class Output>
class IntelligenceFeature {
public:
    using InputType = Input;
    using OutputType = Output;

    virtual ~IntelligenceFeature() = default;
    /// The catalogue identifier, "AI-" and three digits.
    virtual std::string identifier() const = 0;
    virtual IntelligencePolicy policy() const = 0;
    /// The model-free result; may throw only for faults of the input itself.
    virtual Output fallback(const Input& input) const = 0;
    /// Throws IntelligenceError (malformedResponse, backendFailed) when the model's answer is unusable.
    virtual Output generate(const Input& input, IntelligenceBackendProviding& backend) const = 0;
};

/// Runs `feature` through the router: the chosen backend's generated value, or the fallback when no
/// backend is usable (with the selection's reason) or when the model fails (with no reason; the
/// model's error is dropped, never shown). Throws only what the fallback throws.
template <class Input, class Output>
IntelligenceOutcome<Output> run(const IntelligenceFeature<Input, Output>& feature, const Input& input,
                                const ModelRouter& router) {
    IntelligencePolicy policy = feature.policy();
    BackendSelection selection = router.selectBackend(policy.permittedBackends);
    if (auto* reason = std::get_if<IntelligenceUnavailableReason>(&selection))
        return {feature.fallback(input), IntelligencePath::fallback(*reason), false};
    auto& backend = std::get<std::shared_ptr<IntelligenceBackendProviding>>(selection);
    try {
        Output value = feature.generate(input, *backend);
        return {std::move(value), IntelligencePath::generated(backend->kind()), policy.requiresGeneratedLabel};
    } catch (const std::exception&) {
        // Deliberately silent: a feature never retries, never tries a second backend and never
        // shows a model error; the preacher gets the model-free answer instead.
    }
    return {feature.fallback(input), IntelligencePath::fallback(), false};
}

} // namespace orvane
