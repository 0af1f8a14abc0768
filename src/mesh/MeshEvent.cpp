#include "mesh/MeshEvent.h"

namespace quillon::mesh {

std::string_view eventName(MeshEvent::Kind kind) {
    using Kind = MeshEvent::Kind;
    switch (kind) {
    case Kind::peerJoined:
        return "peerJoined";
    case Kind::peerNamed:
        return "peerNamed";
    case Kind::peerLeft:
        return "peerLeft";
    case Kind::peerVerified:
        return "peerVerified";
    case Kind::peerStatus:
        return "peerStatus";
    case Kind::incomingScripture:
        return "incomingScripture";
    case Kind::incomingClear:
        return "incomingClear";
    case Kind::nextVerse:
        return "nextVerse";
    case Kind::previousVerse:
        return "previousVerse";
    case Kind::pairingSucceeded:
        return "pairingSucceeded";
    case Kind::pairingFailed:
        return "pairingFailed";
    case Kind::tlsStatus:
        return "vantalinkTLSStatusChanged";
    case Kind::calvaneLinked:
        return "calvaneLinked";
    case Kind::calvaneRejected:
        return "calvaneRejected";
    case Kind::calvaneLost:
        return "calvaneLost";
    case Kind::discoveryOff:
        return "discoveryOff";
    } // no default case, so the compiler can warn about missing cases
    return "unknown";
}

} // namespace quillon::mesh
