#pragma once

#include "app/OutcomeCaption.h"
#include "orvane/IntelligencePath.h"

#include <iosfwd>
#include <string>

namespace quillon::cli {

/// The label every generated value carries on the command line.
inline constexpr const char* generatedLabel = app::generatedLabel;

/// Writes the line that says where a feature's output came from: the generated label and the
/// feature's caption for a generated value; the fallback caption and, when the router gave one,
/// the reason's sentence for a fallback. Empty captions are left out.
void writeOutcomeHeader(std::ostream& out, const orvane::IntelligencePath& path, bool needsGeneratedLabel,
                        const std::string& generatedCaption, const std::string& fallbackCaption);

/// "generated" or "fallback", and the reason's message, for --json output.
std::string pathName(const orvane::IntelligencePath& path);

} // namespace quillon::cli
