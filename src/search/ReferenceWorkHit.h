#pragma once

#include <string>

namespace quillon::search {

/// A hit in one of the reference works: a commentary's note, a dictionary's article or a
/// historical reference. The works live above this module; their searches hand hits in this form.
struct ReferenceWorkHit {
    /// Unique among all hits of the unified search ("commentary-MHCC-Rom 8:28").
    std::string id;
    /// The work, as it is cited ("Matthew Henry's Concise Commentary").
    std::string work;
    /// What the entry is about ("Romans 8:28-31", "Grace").
    std::string heading;
    /// The start of the entry's text, for the list.
    std::string snippet;

    bool operator==(const ReferenceWorkHit&) const = default;
};

} // namespace quillon::search
