#include "app/OutcomeCaption.h"

namespace quillon::app {

OutcomeCaption OutcomeCaption::of(const orvane::IntelligencePath& path, bool needsGeneratedLabel,
                                  const std::string& generatedCaption, const std::string& fallbackCaption) {
    if (path.isGenerated())
        return {true, needsGeneratedLabel ? generatedLabel : "", generatedCaption, {}};
    return {false, {}, fallbackCaption, path.reason() ? path.reason()->message() : std::string()};
}

std::vector<std::string> OutcomeCaption::lines() const {
    std::vector<std::string> lines;
    std::string first = label;
    if (!caption.empty())
        first += (first.empty() ? "" : " ") + caption;
    if (!first.empty())
        lines.push_back(std::move(first));
    if (!reason.empty())
        lines.push_back(reason);
    return lines;
}

} // namespace quillon::app
