#pragma once

#include <string>
#include <vector>

namespace orvane {

/// One retrieved extract: where it comes from (shown to the model and the user as its label) and
/// the text itself.
struct Passage {
    std::string source;
    std::string text;

    bool operator==(const Passage&) const = default;
};

/// What a tool found, best first.
struct ToolResult {
    std::vector<Passage> passages;

    bool operator==(const ToolResult&) const = default;

    /// The result of every lookup that finds nothing.
    static const ToolResult& empty() {
        static const ToolResult nothing;
        return nothing;
    }
};

} // namespace orvane
