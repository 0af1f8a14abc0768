#pragma once

#include <string>
#include <string_view>

namespace quillon::exports {

/// The file name every export is written under: the sermon title made safe for a file name,
/// "Untitled Sermon" when nothing usable is left, at most 200 characters, then "." + extension.
struct ExportFilename {
    static constexpr std::string_view fallback = "Untitled Sermon";
    static constexpr std::size_t characterLimit = 200;

    static std::string make(std::string_view title, std::string_view extension);
};

} // namespace quillon::exports
