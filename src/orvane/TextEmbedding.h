#pragma once

#include "orvane/SearchHit.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// What a semantic index needs from an embedding: the kind of match its vectors produce and a vector for a text.
/// Implementations must be safe to call from any thread.
class TextEmbedding {
public:
    virtual ~TextEmbedding() = default;
    virtual SearchHit::Match match() const = 0;
    /// The text's vector, or nothing when the embedding has none for it.
    virtual std::optional<std::vector<double>> vector(std::string_view text) const = 0;
    /// One vector (or nothing) per text, in order. An embedding that pays per call (a server round trip) answers a
    /// whole batch at once; the default asks for each text in turn.
    virtual std::vector<std::optional<std::vector<double>>> vectors(const std::vector<std::string>& texts) const {
        std::vector<std::optional<std::vector<double>>> result;
        result.reserve(texts.size());
        for (const auto& text : texts)
            result.push_back(vector(text));
        return result;
    }
};

} // namespace orvane
