#include "orvane/InverseDocumentFrequency.h"

#include <algorithm>
#include <cmath>

namespace orvane {

InverseDocumentFrequency InverseDocumentFrequency::make(std::size_t documentCount,
                                                        const std::unordered_map<std::string, int>& frequencies) {
    const double n = static_cast<double>(std::max<std::size_t>(documentCount, 1));
    InverseDocumentFrequency result;
    result.weights.reserve(frequencies.size());
    // The "+ 1" keeps every weight above zero, so a term held by every document still counts a little.
    for (const auto& [term, count] : frequencies)
        result.weights.emplace(term, std::log(n / static_cast<double>(std::max(count, 1)) + 1.0));
    result.unseen = std::log(n + 1.0);
    return result;
}

double InverseDocumentFrequency::weight(const std::string& term, double fallback) const {
    const auto found = weights.find(term);
    return found == weights.end() ? fallback : found->second;
}

} // namespace orvane
