#pragma once

#include "orvane/SuiteCrypto.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace quillon::testing {

/// Hostile peers on loopback, all at once, each kind from its own address in 127/8 so the desk's
/// per-address limit sees several machines: 500 connections opened at once and held, slow senders
/// dribbling a byte a second, peers that ask and never read, frames of forbidden lengths, bodies that
/// are not UTF-8 or not JSON, one peer sending 10,000 small messages a second, pairing answers that
/// are wrong, replayed or late, and TLS handshakes that stop after the ClientHello.
///
/// Runs on threads of its own from start() to stop(); stop() closes every socket it opened.
class MeshAbuser {
public:
    struct Target {
        std::uint16_t plainPort = 0;
        std::uint16_t securePort = 0;
        /// A name the desk holds a pairing for: the impostors claim it and answer wrongly.
        std::string pairedName = "Brenmoor";
        /// How long a "late" answer waits; longer than the desk's proof timeout.
        std::chrono::milliseconds lateBy{400};
    };

    explicit MeshAbuser(Target target) : m_target(std::move(target)) {}
    ~MeshAbuser() { stop(); }
    MeshAbuser(const MeshAbuser&) = delete;
    MeshAbuser& operator=(const MeshAbuser&) = delete;

    void start();
    void stop();

    /// Small messages the flooding peer wrote, for the report.
    std::uint64_t floodedMessages() const { return m_flooded.load(); }
    /// Connections the abusers opened in all.
    std::uint64_t connectionsOpened() const { return m_opened.load(); }
    /// How many of the 500 held connections the desk still keeps open: at most its limit for
    /// one address once it has looked at them all.
    std::uint64_t heldStillOpen() const { return m_heldOpen.load(); }

    /// A TCP connection to the desk from `from` (an address in 127/8); -1 when it fails.
    static int connectFrom(const char* from, std::uint16_t port);

private:
    void holdMany();
    void dribble();
    void neverRead();
    void badFrames();
    void flood();
    void pairingAnswers();
    void halfHandshakes();
    /// Sleeps up to `duration`, waking early when stopping; false once stopping.
    bool pause(std::chrono::milliseconds duration);

    Target m_target;
    std::atomic<bool> m_stopping{false};
    std::atomic<std::uint64_t> m_flooded{0};
    std::atomic<std::uint64_t> m_opened{0};
    std::atomic<std::uint64_t> m_heldOpen{0};
    std::vector<std::thread> m_threads;
};

} // namespace quillon::testing
