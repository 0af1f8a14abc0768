#include "orvane/VectorMath.h"

#include <algorithm>
#include <cmath>

namespace orvane::VectorMath {

double cosine(std::span<const double> a, std::span<const double> b) {
    const auto length = std::min(a.size(), b.size());
    // One pass for the dot product and both squared norms.
    double dot = 0.0;
    double normA = 0.0;
    double normB = 0.0;
    for (std::size_t i = 0; i < length; ++i) {
        dot += a[i] * b[i];
        normA += a[i] * a[i];
        normB += b[i] * b[i];
    }
    if (!(normA > 0.0) || !(normB > 0.0))
        return 0.0;
    return dot / (std::sqrt(normA) * std::sqrt(normB));
}

double score(double cosine) {
    // Rounding can push the cosine of identical vectors a hair above 1; that is still a perfect match.
    if (!(cosine < 1.0))
        return 1.0;
    return (std::max(cosine, -1.0) + 1.0) * 0.5;
}

} // namespace orvane::VectorMath
