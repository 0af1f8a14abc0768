#pragma once

#include "platform/AtomicFile.h"

#include <string>
#include <string_view>

namespace quillon::exports {

/// The file name every export is written under: the sermon title made safe for a file name,
/// "Untitled Sermon" when nothing usable is left, at most 200 characters, then "." + extension.
/// The whole name also stays within `maximumBytes` of UTF-8 so that the temporary name of an
/// atomic write still fits the file system's 255 bytes; a character is never split.
struct ExportFilename {
    static constexpr std::string_view fallback = "Untitled Sermon";
    static constexpr std::size_t characterLimit = 200;
    static constexpr std::size_t maximumBytes = 255 - platform::temporaryNameExtraBytes;

    static std::string make(std::string_view title, std::string_view extension);
};

} // namespace quillon::exports
