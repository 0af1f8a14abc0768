#pragma once

#include "orvane/IntelligencePolicy.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// One model-backed feature of the application: its type name, fixed identifier and policy.
struct IntelligenceFeatureEntry {
    std::string name;
    std::string identifier;
    IntelligencePolicy policy;

    bool operator==(const IntelligenceFeatureEntry&) const = default;
};

/// Every model-backed feature, in catalogue order. Features take their identifier and policy from
/// here, so the table is the one place where they are written down.
const std::vector<IntelligenceFeatureEntry>& intelligenceFeatureCatalogue();

/// The entry for the feature type `name` ("PassageCommentary"); else nothing.
std::optional<IntelligenceFeatureEntry> intelligenceFeatureEntry(std::string_view name);

} // namespace orvane
