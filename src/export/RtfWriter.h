#pragma once

#include "export/RichText.h"

#include <string>

namespace quillon::exports {

/// Writes rich text as RTF 1.x that word processors and RtfReader read back with the same
/// paragraphs, bold, italic, underline, colours, sizes, bullets and hyperlinks.
class RtfWriter {
public:
    static std::string write(const RichText& text);
};

} // namespace quillon::exports
