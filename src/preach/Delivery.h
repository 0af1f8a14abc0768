#pragma once

#include <optional>
#include <string_view>

namespace quillon::preach {

/// How a section is spoken: plain prose, Scripture read aloud, or a list read point by point.
enum class Delivery { prose, scripture, list };

/// "prose", "scripture", "list".
std::string_view rawValue(Delivery delivery);
std::optional<Delivery> deliveryFromRawValue(std::string_view text);

} // namespace quillon::preach
