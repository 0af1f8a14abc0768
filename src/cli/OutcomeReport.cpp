#include "cli/OutcomeReport.h"

#include <ostream>

namespace quillon::cli {

void writeOutcomeHeader(std::ostream& out, const orvane::IntelligencePath& path, bool needsGeneratedLabel,
                        const std::string& generatedCaption, const std::string& fallbackCaption) {
    if (path.isGenerated()) {
        if (needsGeneratedLabel)
            out << generatedLabel << (generatedCaption.empty() ? "" : " ") << generatedCaption << "\n";
        else if (!generatedCaption.empty())
            out << generatedCaption << "\n";
        return;
    }
    if (!fallbackCaption.empty())
        out << fallbackCaption << "\n";
    if (path.reason())
        out << path.reason()->message() << "\n";
}

std::string pathName(const orvane::IntelligencePath& path) {
    return path.isGenerated() ? "generated" : "fallback";
}

} // namespace quillon::cli
