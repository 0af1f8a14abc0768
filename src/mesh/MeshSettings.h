#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::mesh {

/// The mesh's preferences, read once when the bridge starts. Durations are in milliseconds so
/// tests can shorten the ones the user never sets.
struct MeshSettings {
    /// "vantalink.port" / "vantalink.tlsPort": fixed listening ports; 0 picks any free port.
    std::uint16_t port = 0;
    std::uint16_t tlsPort = 0;
    /// "vantalink.calvaneAddress": "host:port" of Calvane's bridge, used without discovery.
    std::optional<std::string> calvaneAddress;
    /// "vantalink.requireEncrypted": content goes over secure links only.
    bool requireEncrypted = false;
    /// "Quillon.suiteMesh.requirePairing": only peers that proved their pairing are trusted.
    bool requirePairing = false;
    /// "vantalink.tlsHandshakeTimeoutSeconds" (default 10).
    std::chrono::milliseconds tlsHandshakeTimeout{10'000};
    /// "Quillon.suiteMesh.pairingWindowSeconds" (default 120).
    std::chrono::milliseconds pairingWindow{120'000};
    /// How often every peer gets a heartbeat, and how long a silent peer is kept.
    std::chrono::milliseconds heartbeatInterval{15'000};
    std::chrono::milliseconds silenceLimit{45'000};
    /// How long a peer that claimed a paired name may take to answer its challenge.
    std::chrono::milliseconds proofTimeout{30'000};
    /// Calvane reconnection: first wait, doubled after each failure up to the ceiling.
    std::chrono::milliseconds calvaneFirstRetry{1'000};
    std::chrono::milliseconds calvaneRetryCeiling{60'000};
    /// How long a Calvane link may take from dialling to "linked", and how long it may stay silent
    /// (unanswered pings) once linked, before it is dropped and dialled again.
    std::chrono::milliseconds calvaneHandshakeTimeout{10'000};
    std::chrono::milliseconds calvaneIdleTimeout{45'000};
    /// Publish and browse with Avahi.
    bool discovery = true;

    static MeshSettings fromPreferences(const platform::Preferences& preferences);
};

/// Milliseconds as the seconds a person reads in a log line: 10000 is "10", 300 is "0.3".
std::string secondsText(std::chrono::milliseconds duration);

} // namespace quillon::mesh
