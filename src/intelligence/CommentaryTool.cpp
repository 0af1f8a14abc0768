#include "intelligence/CommentaryTool.h"

#include "scripture/ReferenceParser.h"

namespace quillon::intelligence {

CommentaryTool::CommentaryTool(std::shared_ptr<const CommentaryLibrary> library)
    : CommentaryTool("commentaries",
                     "Look up what the bundled public-domain commentators wrote on a passage. The query is a scripture "
                     "reference such as \"Romans 8:28\".",
                     library, library->commentaries(), defaultMaximumPassages) {}

CommentaryTool::CommentaryTool(std::string name, std::string purpose, std::shared_ptr<const CommentaryLibrary> library,
                               std::vector<Commentary> commentaries, int maximumPassages)
    : m_name(std::move(name)), m_purpose(std::move(purpose)), m_library(std::move(library)),
      m_commentaries(std::move(commentaries)), m_maximumPassages(maximumPassages) {}

orvane::ToolResult CommentaryTool::lookup(const std::string& query) const {
    std::optional<scripture::ScriptureReference> reference = scripture::parse(query);
    if (!reference)
        return orvane::ToolResult::empty();
    orvane::ToolResult result;
    for (const Commentary& commentary : m_commentaries) {
        for (CommentaryEntry& entry : m_library->entries(commentary, *reference)) {
            if (static_cast<int>(result.passages.size()) >= m_maximumPassages)
                return result;
            result.passages.push_back({commentary.name + " — " + entry.label, std::move(entry.text)});
        }
    }
    return result;
}

} // namespace quillon::intelligence
