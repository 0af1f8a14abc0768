#pragma once

#include <vector>

#include "orvane/QueryCorrection.h"
#include "orvane/SearchHit.h"

namespace orvane {

/// The answer of a search that may have corrected the query; `corrections` is empty when it ran as typed.
struct CorrectedSearch {
    std::vector<SearchHit> hits;
    std::vector<QueryCorrection> corrections;

    bool operator==(const CorrectedSearch&) const = default;
};

} // namespace orvane
