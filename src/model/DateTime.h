#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::model {

/// Dates in records have whole seconds, as they are written: ISO 8601 UTC with a trailing Z.
using DateTime = std::chrono::sys_seconds;

/// Truncates a clock reading to the record's precision.
DateTime toDateTime(std::chrono::system_clock::time_point time);

/// "2025-03-09T14:30:00Z".
std::string formatDateTime(DateTime time);
/// Accepts exactly "YYYY-MM-DDTHH:MM:SSZ" (no fractional seconds, no offsets); else nothing.
std::optional<DateTime> parseDateTime(std::string_view text);

} // namespace quillon::model
