#include "orvane/QueryCorrection.h"

namespace orvane {

std::optional<std::string> QueryCorrection::bannerText(const std::vector<QueryCorrection>& corrections) {
    std::string words;
    for (const QueryCorrection& correction : corrections) {
        if (correction.kind != Kind::spelling)
            continue;
        if (!words.empty())
            words += ", ";
        words += correction.used;
    }
    if (words.empty())
        return std::nullopt;
    return "Showing results for " + words;
}

} // namespace orvane
