#pragma once

#include "orvane/IntelligenceTool.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvane {

/// The tools a feature may call, one per name. Operations are serialised, and a gather runs its
/// lookups one after another, in the order of the names.
class ToolRegistry {
public:
    /// Two tools of one name: the later one is kept, as if registered in turn.
    explicit ToolRegistry(std::vector<std::shared_ptr<const IntelligenceTool>> tools = {});

    /// Stores `tool` under its name, replacing a tool of that name.
    void registerTool(std::shared_ptr<const IntelligenceTool> tool);
    /// The registered tools sorted by name.
    std::vector<std::shared_ptr<const IntelligenceTool>> catalogue() const;
    /// Throws ToolError::notRegistered.
    std::shared_ptr<const IntelligenceTool> tool(const std::string& named) const;
    /// Throws ToolError::notRegistered; a lookup failure passes through.
    ToolResult call(const std::string& name, const std::string& query) const;
    /// Never throws: an unknown name or a failed lookup maps to the empty result; a name given
    /// twice keeps its last result.
    std::map<std::string, ToolResult> gather(const std::vector<std::string>& names, const std::string& query) const;

private:
    mutable std::recursive_mutex m_mutex;
    std::map<std::string, std::shared_ptr<const IntelligenceTool>> m_tools;
};

} // namespace orvane
