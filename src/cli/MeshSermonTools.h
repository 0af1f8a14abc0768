#pragma once

#include "cli/Library.h"
#include "mesh/ToolAnswer.h"
#include "model/Uuid.h"
#include "search/SermonSearchIndex.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::cli {

/// The sermon tools a mesh peer may ask the desk for, answered from the library loaded when the
/// bridge started: "currentSermon" (the sermon open on the desk) and "searchSermons".
///
/// `answer` runs on the bridge's main-thread executor while `open` comes from the command loop, so
/// the open sermon is guarded; the search index is touched by `answer` alone.
class MeshSermonTools {
public:
    /// Most sermons one "searchSermons" answer lists.
    static constexpr int searchLimit = 20;

    /// Ranks searches as `quillon search` does, with the local model's embedding when the preacher
    /// turned it on (the server is asked once, here).
    explicit MeshSermonTools(Library& library);

    /// Makes the sermon named by `idText` (full id or an unambiguous prefix) the one open on the desk.
    /// Throws UserError when no sermon, or more than one, matches.
    const model::SermonNote& open(std::string_view idText);
    /// The sermon open on the desk, if any.
    const model::SermonNote* current() const;

    /// The bridge's tool handler.
    mesh::ToolAnswer answer(const std::string& tool, const std::string& query);

    /// The open sermon as one passage: its title as the source, its outline text as the text.
    /// No passages when no sermon is open.
    orvane::ToolResult currentSermon() const;
    /// One passage per matching sermon, best first: the title, and the sentence that best matches.
    orvane::ToolResult searchSermons(const std::string& query);

private:
    Library& m_library;
    mutable std::mutex m_mutex;
    std::optional<model::Uuid> m_current;
    search::SermonSearchIndex m_index;
};

} // namespace quillon::cli
