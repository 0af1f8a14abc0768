#pragma once

#include <string>
#include <string_view>

namespace quillon::app {

/// True when `text` is valid UTF-8, the only text a sermon file can hold.
bool isValidText(std::string_view text);
/// `text` without white space at either end.
std::string_view trimmed(std::string_view text);
/// The text between curly quotation marks: “text”.
std::string curlyQuoted(std::string_view text);

} // namespace quillon::app
