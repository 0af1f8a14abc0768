#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// `text` with every malformed UTF-8 sequence replaced by U+FFFD.
std::string validUtf8(std::string_view text);

/// Text that XML 1.0 can carry: valid UTF-8 without the control characters XML forbids (tabs and
/// line ends stay). Sermon text may hold anything a user pasted.
std::string xmlSafeText(std::string_view text);

/// The five replacements, ampersand first so the others are not doubled:
/// & → &amp;, < → &lt;, > → &gt;, " → &quot;, ' → &apos;. Applied after xmlSafeText.
std::string escapeXml(std::string_view text);

/// Splits at "\n" (a "\r\n" or lone "\r" counts as one line end); an empty text is one empty line.
std::vector<std::string> splitLines(std::string_view text);

/// The non-empty lines of `text` joined by single spaces: a title or heading that must fit one line.
std::string oneLine(std::string_view text);

} // namespace quillon::exports
