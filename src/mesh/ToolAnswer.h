#pragma once

#include "orvane/ToolResult.h"

#include <optional>
#include <string>

namespace quillon::mesh {

/// The answer of a tool asked for by a peer: a result, or an error sentence.
///
/// Every tool answers like the desk's own retrieval tools: the result is the JSON text
/// {"passages": [{"source": ..., "text": ...}, ...]}, best first. A lookup that finds nothing
/// (no sermon open, no match, nothing live) is a result with no passages, not an error; an error
/// means the tool does not exist or could not run.
struct ToolAnswer {
    std::optional<std::string> result;
    std::optional<std::string> error;

    static ToolAnswer found(const orvane::ToolResult& result);
    static ToolAnswer failed(std::string sentence) { return {std::nullopt, std::move(sentence)}; }

    /// The passages of a result written by `found`; nothing when `text` is not one.
    static std::optional<orvane::ToolResult> decode(const std::string& text);
};

} // namespace quillon::mesh
