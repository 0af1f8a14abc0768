#pragma once

#include <string>
#include <string_view>

namespace quillon::mesh {

/// Something the bridge tells the application about, one line each on the command line.
struct MeshEvent {
    enum class Kind {
        peerJoined,
        peerNamed,
        peerLeft,
        peerVerified,
        peerStatus,
        incomingScripture,
        incomingClear,
        nextVerse,
        previousVerse,
        pairingSucceeded,
        pairingFailed,
        /// The secure link's state changed ("vantalinkTLSStatusChanged").
        tlsStatus,
        calvaneLinked,
        calvaneRejected,
        calvaneLost,
        discoveryOff,
    };

    Kind kind;
    /// The peer's claimed name or address; empty when the event concerns no peer.
    std::string peer;
    std::string detail;
};

/// The event's name as written in JSON lines: "peerJoined", "incomingScripture", ….
std::string_view eventName(MeshEvent::Kind kind);

} // namespace quillon::mesh
