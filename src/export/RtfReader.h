#pragma once

#include "export/RichText.h"

#include <string_view>

namespace quillon::exports {

/// Reads RTF into rich text: paragraphs, bold, italic, underline, colour, font size, bullets and
/// hyperlinks (HYPERLINK fields). Everything else a word processor writes (style sheets, list
/// tables, pictures, document information) is skipped. Malformed input gives whatever text could
/// be read, never an error.
class RtfReader {
public:
    static RichText read(std::string_view rtf);
};

} // namespace quillon::exports
