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

/// The sermon tools a mesh peer may ask the desk for: "currentSermon" (the sermon open on the desk)
/// and "searchSermons", answered from the library as it was last read.
///
/// `answer` runs on the bridge's main-thread executor while `open` comes from the command loop, so
/// every use of the library and the index holds one lock.
class MeshSermonTools {
public:
    /// Most sermons one "searchSermons" answer lists.
    static constexpr int searchLimit = 20;

    /// Ranks searches as `quillon search` does, with the local model's embedding when the preacher
    /// turned it on (the server is asked once, here).
    explicit MeshSermonTools(Library& library);

    /// Reads the library again, so sermons written since the desk started count, and makes the
    /// sermon named by `idText` (full id or an unambiguous prefix) the one open on the desk.
    /// Throws UserError when no sermon, or more than one, matches; the open sermon then stays.
    model::SermonNote open(std::string_view idText);
    /// The sermon open on the desk, if any.
    std::optional<model::SermonNote> current() const;

    /// The bridge's tool handler.
    mesh::ToolAnswer answer(const std::string& tool, const std::string& query);

private:
    /// The open sermon as one passage: its title as the source, its outline text as the text.
    orvane::ToolResult currentSermon() const;
    /// One passage per matching sermon, best first: the title, and the sentence that best matches.
    orvane::ToolResult searchSermons(const std::string& query);

    Library& m_library;
    mutable std::mutex m_mutex;
    std::optional<model::Uuid> m_current;
    search::SermonSearchIndex m_index;
};

} // namespace quillon::cli
