#pragma once

#include "mesh/MeshEvent.h"
#include "scripture/BibleLoader.h"

#include <iosfwd>
#include <mutex>
#include <string>

namespace quillon::mesh {
class ScriptureBridge;
}
namespace quillon::screens {
class OutletHub;
}

namespace quillon::cli {

class MeshSermonTools;

/// `quillon mesh serve`: the bridge in the foreground, commands read one a line, events written one a
/// line (text, or JSON objects with --json). Output from the bridge's main-thread executor and from
/// the command loop share one lock so lines never interleave.
class MeshServeSession {
public:
    /// With `tools`, the session answers the peers' sermon tools and `open` chooses the sermon on the
    /// desk; the bridge's tool handler is set here, so build the session before starting the bridge.
    MeshServeSession(mesh::ScriptureBridge& bridge, std::ostream& out, bool json, MeshSermonTools* tools = nullptr);

    /// Reads commands until "quit" or the end of input.
    void run(std::istream& in);
    /// Runs one command line; false after "quit".
    bool handle(const std::string& line);
    /// The screens beyond the mesh (they follow the bridge by themselves); listed by `status`.
    void setOutlets(screens::OutletHub* outlets) { m_outlets = outlets; }
    /// Writes one event line; safe from any thread.
    void printEvent(const mesh::MeshEvent& event);

private:
    void open(const std::string& idText);
    void print(const std::string& textLine, const std::string& jsonLine);
    std::string passageText(const scripture::ScriptureReference& reference, model::BibleVersion version);

    mesh::ScriptureBridge& m_bridge;
    std::ostream& m_out;
    bool m_json;
    MeshSermonTools* m_tools;
    screens::OutletHub* m_outlets = nullptr;
    std::mutex m_outputMutex;
    /// Reads the announced passage's text; loads each version once, on first use.
    scripture::BibleLoader m_bible;
};

} // namespace quillon::cli
