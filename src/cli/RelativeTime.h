#pragma once

#include "model/DateTime.h"

#include <string>

namespace quillon::cli {

/// How long ago `then` was, as a person says it: "just now", "5 minutes ago", "1 day ago",
/// "in 2 hours" for a time still to come.
std::string relativeTime(model::DateTime then, model::DateTime now);

} // namespace quillon::cli
