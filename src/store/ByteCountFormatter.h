#pragma once

#include <cstdint>
#include <string>

namespace quillon::store {

/// A byte count as a person reads it, in decimal units as file managers show them:
/// "Zero KB", "512 bytes", "340 KB", "12.5 MB", "1.2 GB".
std::string formatByteCount(std::uint64_t bytes);

} // namespace quillon::store
