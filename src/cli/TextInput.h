#pragma once

#include "model/DateTime.h"

#include <string>
#include <string_view>

namespace quillon::cli {

/// Throws UserError naming `what` when `text` is not valid UTF-8 (every stored text must be).
void requireText(std::string_view text, std::string_view what);
/// `text` without white space at either end.
std::string_view trimmed(std::string_view text);
/// A calendar day given as YYYY-MM-DD, as midnight UTC; throws UserError for anything else.
model::DateTime parseDay(std::string_view text);

} // namespace quillon::cli
