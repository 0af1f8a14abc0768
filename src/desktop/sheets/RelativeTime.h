#pragma once

#include "model/DateTime.h"

#include <QString>

namespace quillon::desktop {

/// `when` as a preacher says it, seen from `now`: "Just now", "5 minutes ago", "Yesterday",
/// "3 days ago"; a time in the future reads "Just now".
QString relativeTime(model::DateTime when, model::DateTime now);

/// `when` in the local time zone as the system writes a short date and time.
QString localDateTime(model::DateTime when);

} // namespace quillon::desktop
