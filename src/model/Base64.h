#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::model {

/// Standard base64 with padding, as rich-text bytes are written in sermon files.
std::string encodeBase64(std::string_view bytes);
/// Strict decoding: padding required, no white space, no foreign characters; else nothing.
std::optional<std::string> decodeBase64(std::string_view text);

} // namespace quillon::model
