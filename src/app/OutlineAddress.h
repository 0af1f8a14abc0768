#pragma once

#include "app/OutlineEditing.h"
#include "model/SermonNote.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::app {

/// The item an address names in `sermon`: "2" is the second topic, "2.1" its first sub-topic,
/// "2.1.3" that sub-topic's third scripture (the numbers `show` prints); anything else is read
/// as the beginning of an item's id (at least four characters, either case) and must name
/// exactly one item. Nothing when the address names no item or more than one.
std::optional<OutlineLocation> resolveOutlineAddress(const model::SermonNote& sermon, std::string_view address);

/// The number an item has in `show` ("2.1.3"); empty when the sermon does not hold it.
std::string outlineNumber(const model::SermonNote& sermon, const model::Uuid& itemId);

} // namespace quillon::app
