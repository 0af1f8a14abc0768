#pragma once

namespace quillon::platform {

/// The maker's reverse-DNS identifier (13 characters): written into archives as "appIdentifier",
/// and the stem of the names under which the program keeps secrets and services.
inline constexpr const char* applicationIdentifier = "io.veltra.qln";
inline constexpr const char* applicationName = "Quillon";

} // namespace quillon::platform
