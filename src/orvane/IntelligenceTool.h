#pragma once

#include "orvane/ToolResult.h"

#include <stdexcept>
#include <string>

namespace orvane {

/// Why a tool call failed. Never shown to the user: gathering turns every failure into an empty result.
class ToolError : public std::runtime_error {
public:
    enum class Case { notRegistered, lookupFailed };

    static ToolError notRegistered(const std::string& name) {
        return ToolError(Case::notRegistered, name, "No tool named \"" + name + "\" is registered.");
    }
    static ToolError lookupFailed(const std::string& detail) { return ToolError(Case::lookupFailed, {}, detail); }

    Case kind() const { return m_case; }
    /// The missing tool's name for `notRegistered`; empty otherwise.
    const std::string& name() const { return m_name; }

private:
    ToolError(Case kind, std::string name, const std::string& detail)
        : std::runtime_error(detail), m_case(kind), m_name(std::move(name)) {}

    Case m_case;
    std::string m_name;
};

/// Retrieval run by the application before a model is asked: the features hand what a tool finds
/// to the model, numbered, so it never has to invent its material.
class IntelligenceTool {
public:
    virtual ~IntelligenceTool() = default;
    virtual std::string name() const = 0;
    /// One sentence: what the tool looks up and what the query must be.
    virtual std::string purpose() const = 0;
    /// Throws ToolError::lookupFailed when the lookup cannot be completed.
    virtual ToolResult lookup(const std::string& query) const = 0;
};

} // namespace orvane
