#pragma once

#include <optional>
#include <string_view>

namespace quillon::app {

/// How the outline is laid out: three selector columns, or one outline pane.
enum class AppLayoutStyle { classic, modernOutline };

/// "classic", "modernOutline".
std::string_view rawValue(AppLayoutStyle style);
/// The style whose raw value is exactly `text`; else nothing.
std::optional<AppLayoutStyle> appLayoutStyleFromRawValue(std::string_view text);

} // namespace quillon::app
