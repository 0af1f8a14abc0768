#include "store/ByteCountFormatter.h"

#include <fmt/format.h>

namespace quillon::store {

std::string formatByteCount(std::uint64_t bytes) {
    if (bytes == 0)
        return "Zero KB";
    if (bytes == 1)
        return "1 byte";
    if (bytes < 1000)
        return fmt::format("{} bytes", bytes);
    if (bytes < 999'500)
        return fmt::format("{:.0f} KB", static_cast<double>(bytes) / 1e3);
    constexpr const char* units[] = {"MB", "GB", "TB", "PB", "EB"};
    double value = static_cast<double>(bytes) / 1e6;
    std::size_t unit = 0;
    // Move up a unit before rounding would print "1000.0".
    while (value >= 999.95 && unit + 1 < std::size(units)) {
        value /= 1e3;
        ++unit;
    }
    std::string text = fmt::format("{:.1f}", value);
    if (text.ends_with(".0"))
        text.resize(text.size() - 2);
    return text + " " + units[unit];
}

} // namespace quillon::store
