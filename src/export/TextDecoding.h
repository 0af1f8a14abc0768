#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::exports {

/// A plain-text or Markdown file's bytes as UTF-8 text: a UTF-8 byte-order mark is dropped,
/// UTF-16 with a byte-order mark (either byte order) is decoded, text that is not valid UTF-8 is
/// read as Windows-1252, the legacy encoding of word processors. Nothing when the bytes are not
/// text at all: a NUL byte, or more than one control character in a hundred (programs, pictures,
/// random data). Linear in the input.
std::optional<std::string> decodeText(std::string_view bytes);

} // namespace quillon::exports
