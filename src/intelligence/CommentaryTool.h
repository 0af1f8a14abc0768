#pragma once

#include "intelligence/CommentaryLibrary.h"
#include "orvane/IntelligenceTool.h"

#include <memory>

namespace quillon::intelligence {

/// Looks up what the commentators of the reference library wrote on a passage.
class CommentaryTool final : public orvane::IntelligenceTool {
public:
    static constexpr int defaultMaximumPassages = 6;

    /// The application's tool: name "commentaries", every commentary of `library`, at most 6 passages.
    explicit CommentaryTool(std::shared_ptr<const CommentaryLibrary> library);
    CommentaryTool(std::string name, std::string purpose, std::shared_ptr<const CommentaryLibrary> library,
                   std::vector<Commentary> commentaries, int maximumPassages);

    std::string name() const override { return m_name; }
    std::string purpose() const override { return m_purpose; }
    const std::vector<Commentary>& commentaries() const { return m_commentaries; }
    int maximumPassages() const { return m_maximumPassages; }

    /// Reads `query` as a scripture reference and returns the covering entries of each commentary in
    /// turn, labelled "<work> — <entry label>"; a query that is no reference finds nothing.
    orvane::ToolResult lookup(const std::string& query) const override;

private:
    std::string m_name;
    std::string m_purpose;
    std::shared_ptr<const CommentaryLibrary> m_library;
    std::vector<Commentary> m_commentaries;
    int m_maximumPassages;
};

} // namespace quillon::intelligence
