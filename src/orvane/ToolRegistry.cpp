#include "orvane/ToolRegistry.h"

namespace orvane {

ToolRegistry::ToolRegistry(std::vector<std::shared_ptr<const IntelligenceTool>> tools) {
    for (auto& tool : tools)
        registerTool(std::move(tool));
}

void ToolRegistry::registerTool(std::shared_ptr<const IntelligenceTool> tool) {
    std::lock_guard lock(m_mutex);
    std::string name = tool->name();
    m_tools[name] = std::move(tool);
}

std::vector<std::shared_ptr<const IntelligenceTool>> ToolRegistry::catalogue() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<const IntelligenceTool>> tools;
    for (const auto& [name, tool] : m_tools) // a std::map is already in ascending name order
        tools.push_back(tool);
    return tools;
}

std::shared_ptr<const IntelligenceTool> ToolRegistry::tool(const std::string& named) const {
    std::lock_guard lock(m_mutex);
    auto found = m_tools.find(named);
    if (found == m_tools.end())
        throw ToolError::notRegistered(named);
    return found->second;
}

ToolResult ToolRegistry::call(const std::string& name, const std::string& query) const {
    std::lock_guard lock(m_mutex);
    return tool(name)->lookup(query);
}

std::map<std::string, ToolResult> ToolRegistry::gather(const std::vector<std::string>& names,
                                                       const std::string& query) const {
    std::lock_guard lock(m_mutex);
    std::map<std::string, ToolResult> results;
    for (const std::string& name : names) {
        try {
            results[name] = call(name, query);
        } catch (const std::exception&) {
            results[name] = ToolResult::empty();
        }
    }
    return results;
}

} // namespace orvane
