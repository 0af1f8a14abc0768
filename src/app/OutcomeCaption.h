#pragma once

#include "orvane/IntelligencePath.h"

#include <string>
#include <vector>

namespace quillon::app {

/// The label every generated value carries, on the command line and in the window alike.
inline constexpr const char* generatedLabel = "[Generated]";

/// What is said above a feature's output about where it came from: for a generated value the
/// generated label (when the feature needs one) and its caption; for the model-free answer the
/// fallback caption and, when the router gave one, the reason's sentence. Empty parts are left out.
struct OutcomeCaption {
    bool generated = false;
    /// "[Generated]" when the value must carry it, else empty.
    std::string label;
    std::string caption;
    /// Why no model was asked; empty when one was asked (and failed) or for a generated value.
    std::string reason;

    static OutcomeCaption of(const orvane::IntelligencePath& path, bool needsGeneratedLabel,
                             const std::string& generatedCaption, const std::string& fallbackCaption);

    /// The lines as the command line prints them: label and caption on one line, then the reason.
    std::vector<std::string> lines() const;
};

} // namespace quillon::app
