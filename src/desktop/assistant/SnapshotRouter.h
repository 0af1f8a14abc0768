#pragma once

#include <memory>

namespace orvane {
class ModelRouter;
}

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// The application's model router over a copy of the model settings it reads, owned with it, so
/// work left running in the background never reaches back into preferences a closed window's
/// services owned. Make a new one when those settings change.
std::shared_ptr<orvane::ModelRouter> snapshotRouter(const platform::Preferences& preferences);

} // namespace quillon::desktop
