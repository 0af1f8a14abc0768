#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace quillon::store {

/// The size of the volume holding a location and what of it an ordinary user may still fill.
struct VolumeFigures {
    std::uint64_t totalBytes = 0;
    std::uint64_t availableBytes = 0;
};

/// Reads the figures for a location; nothing when they cannot be had. Tests inject their own.
using VolumeFiguresReader = std::function<std::optional<VolumeFigures>(const std::filesystem::path&)>;

/// statvfs of the location, or of its nearest existing parent (a backup destination may not exist
/// yet). Available bytes are those open to unprivileged users, so the root reserve is not counted.
std::optional<VolumeFigures> readVolumeFigures(const std::filesystem::path& location);

} // namespace quillon::store
