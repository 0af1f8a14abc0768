#pragma once

#include "model/Uuid.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::scripture {

/// The link the manuscript editor stores on text that shows an attached scripture:
/// "quillscripture://" and the scripture's identifier in upper-case canonical form.
inline constexpr std::string_view scriptureLinkScheme = "quillscripture://";

std::string scriptureLink(const model::Uuid& scripture);
/// The scripture a link addresses; nothing for any other text.
std::optional<model::Uuid> scriptureFromLink(std::string_view link);

} // namespace quillon::scripture
