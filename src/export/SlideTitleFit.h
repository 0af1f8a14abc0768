#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::exports {

/// How a slide title is written so that it stays inside the title box whatever its length: the
/// largest size up to 36 pt at which the wrapped title fits the box's height, and below 14 pt
/// the title shortened with "…" instead. Text is measured in DejaVu Sans Bold, wider than the
/// faces slide programs use, so a title that fits here fits there.
struct SlideTitleFit {
    /// PowerPoint's unit: hundredths of a point.
    int size = 3600;
    std::string text;

    static constexpr int largestSize = 3600;
    static constexpr int smallestSize = 1400;
    /// Three lines at 14 pt hold well under this many of the narrowest characters.
    static constexpr std::size_t maximumMeasuredCharacters = 1000;

    /// `widthEmu` and `heightEmu` are the text box's; its default insets are taken off.
    static SlideTitleFit fit(std::string_view title, long widthEmu, long heightEmu);
};

} // namespace quillon::exports
