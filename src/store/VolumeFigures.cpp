#include "store/VolumeFigures.h"

#include <sys/statvfs.h>

namespace quillon::store {

std::optional<VolumeFigures> readVolumeFigures(const std::filesystem::path& location) {
    std::filesystem::path probe = location.empty() ? std::filesystem::path(".") : location;
    struct statvfs info {};
    while (::statvfs(probe.c_str(), &info) != 0) {
        if (!probe.has_parent_path() || probe.parent_path() == probe)
            return std::nullopt;
        probe = probe.parent_path();
    }
    const std::uint64_t unit = info.f_frsize ? info.f_frsize : info.f_bsize;
    return VolumeFigures{static_cast<std::uint64_t>(info.f_blocks) * unit,
                         static_cast<std::uint64_t>(info.f_bavail) * unit};
}

} // namespace quillon::store
