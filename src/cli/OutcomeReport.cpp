#include "cli/OutcomeReport.h"

#include "app/OutcomeCaption.h"

#include <ostream>

namespace quillon::cli {

void writeOutcomeHeader(std::ostream& out, const orvane::IntelligencePath& path, bool needsGeneratedLabel,
                        const std::string& generatedCaption, const std::string& fallbackCaption) {
    for (const std::string& line :
         app::OutcomeCaption::of(path, needsGeneratedLabel, generatedCaption, fallbackCaption).lines())
        out << line << "\n";
}

std::string pathName(const orvane::IntelligencePath& path) {
    return path.isGenerated() ? "generated" : "fallback";
}

} // namespace quillon::cli
