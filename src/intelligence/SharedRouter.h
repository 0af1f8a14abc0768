#pragma once

#include "intelligence/LocalModelBackend.h"
#include "orvane/ModelRouter.h"

#include <memory>

namespace quillon::platform {
class Preferences;
}

namespace quillon::intelligence {

/// The application's router: the operator's switch "Quillon.intelligenceDisabled" (absent means
/// on), no external model, and the local model server registered under `onDevice`, whose own
/// readiness is the on-device readiness. `preferences` must outlive the router; the switch is read
/// afresh at every selection.
std::shared_ptr<orvane::ModelRouter> makeSharedRouter(const platform::Preferences& preferences);

/// The same, with the backend supplied (tests, or a backend already built for embeddings).
std::shared_ptr<orvane::ModelRouter> makeSharedRouter(const platform::Preferences& preferences,
                                                      std::shared_ptr<LocalModelBackend> backend);

} // namespace quillon::intelligence
