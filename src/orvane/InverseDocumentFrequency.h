#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

namespace orvane {

/// Term weights of a document collection: rare terms weigh more than common ones.
struct InverseDocumentFrequency {
    std::unordered_map<std::string, double> weights;
    /// The weight of a term that no document holds.
    double unseen = 0.0;

    /// `frequencies` gives, for each term, the number of documents that hold it.
    static InverseDocumentFrequency make(std::size_t documentCount,
                                         const std::unordered_map<std::string, int>& frequencies);

    /// The term's weight, or `fallback` when the collection does not know it.
    double weight(const std::string& term, double fallback) const;
};

} // namespace orvane
