#pragma once

#include "mesh/SermonStudioMessage.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace quillon::mesh {

/// What the desk lets the network hold, whoever is on the other end. Together these bound the
/// mesh's memory: at most `maximumConnections` × (`bodyPieceBytes` + a TLS session of a few KB)
/// for connections, plus `sharedBodyBytes` for unfinished large bodies and `sharedQueuedBytes` for
/// frames waiting to be written, about 110 MB in all however peers behave.
namespace limits {

/// Open Vantalink connections, plain and secure together; more are accepted and closed at once.
inline constexpr std::size_t maximumConnections = 256;
/// Open connections from one address, so one machine cannot take every place.
inline constexpr std::size_t maximumConnectionsPerAddress = 16;

/// Bodies are read in pieces of this size as their bytes arrive, never reserved from the header;
/// a body up to this size is held by its connection alone.
inline constexpr std::size_t bodyPieceBytes = 64 * 1024;
/// What unfinished bodies beyond their first piece may hold across all peers: room for three of
/// the largest frames. A connection that would need more is closed.
inline constexpr std::size_t sharedBodyBytes = 32 * 1024 * 1024;

/// Frames waiting for one peer to read them: a slow reader catches up, a stalled one is let go.
inline constexpr std::size_t queuedBytesPerPeer = 3 * std::size_t{maximumFrameLength};
/// Frames waiting for all peers together; past it the peer with the longest backlog is let go.
inline constexpr std::size_t sharedQueuedBytes = 64 * 1024 * 1024;

/// Messages a peer may send each second on average, and in one burst; the rest are dropped unread.
inline constexpr double messagesPerSecond = 200;
inline constexpr double messageBurst = 400;

/// Back-off of a listener that cannot accept (descriptors used up): first wait and longest wait.
inline constexpr std::chrono::milliseconds acceptFirstRetry{50};
inline constexpr std::chrono::milliseconds acceptRetryCeiling{1'000};

} // namespace limits

/// A count of bytes several connections draw on; used on the bridge's thread only.
class ByteBudget {
public:
    explicit ByteBudget(std::size_t capacity) : m_capacity(capacity) {}

    /// False, and nothing taken, when `bytes` more would exceed the capacity.
    bool take(std::size_t bytes) {
        if (bytes > m_capacity - m_used)
            return false;
        m_used += bytes;
        return true;
    }
    void give(std::size_t bytes) { m_used -= std::min(bytes, m_used); }
    std::size_t used() const { return m_used; }

private:
    std::size_t m_capacity;
    std::size_t m_used = 0;
};

} // namespace quillon::mesh
