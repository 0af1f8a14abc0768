#pragma once

#include <span>

namespace orvane::VectorMath {

/// Cosine of the angle between two vectors over their common length; 0 when either has no length.
double cosine(std::span<const double> a, std::span<const double> b);

/// Maps a cosine into a score in [0, 1]: −1 (or less) gives 0, 1 (or more) gives exactly 1.
double score(double cosine);

} // namespace orvane::VectorMath
