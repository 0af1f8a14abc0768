#pragma once

#include <filesystem>

namespace quillon::platform {

/// Sends spdlog's default logger to the rotating diagnostics log (platform::logFile()) and,
/// when `alsoToStandardError`, to stderr. Call once at program start; without it logging goes
/// to stderr only. A log file that cannot be opened leaves stderr logging in place.
void setUpLogging(bool alsoToStandardError);

/// Same, with an explicit log file (tests).
void setUpLogging(const std::filesystem::path& file, bool alsoToStandardError);

} // namespace quillon::platform
