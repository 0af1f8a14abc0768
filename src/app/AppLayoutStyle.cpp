#include "app/AppLayoutStyle.h"

namespace quillon::app {

std::string_view rawValue(AppLayoutStyle style) {
    switch (style) {
    case AppLayoutStyle::classic:
        return "classic";
    case AppLayoutStyle::modernOutline:
        return "modernOutline";
    } // no default case, so the compiler can warn about missing cases
    return "classic";
}

std::optional<AppLayoutStyle> appLayoutStyleFromRawValue(std::string_view text) {
    for (auto style : {AppLayoutStyle::classic, AppLayoutStyle::modernOutline})
        if (rawValue(style) == text)
            return style;
    return std::nullopt;
}

} // namespace quillon::app
