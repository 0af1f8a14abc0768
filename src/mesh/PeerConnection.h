#pragma once

#include "mesh/LinkClaim.h"
#include "mesh/SermonStudioMessage.h"
#include "orvane/SuiteCrypto.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace quillon::mesh {

/// One Vantalink connection accepted by the desk, plain or secure: reads frames, queues writes.
/// Lives on the bridge's thread; every member is touched only there (except the claim).
class PeerConnection : public std::enable_shared_from_this<PeerConnection> {
public:
    /// Room for a few of the largest frames: a slow reader catches up, a stalled one is let go.
    static constexpr std::size_t maximumQueuedBytes = 3 * std::size_t{maximumFrameLength};

    using Stream = boost::asio::ssl::stream<boost::asio::ip::tcp::socket>;

    /// What the connection reports to the bridge; called on the bridge's thread.
    class Owner {
    public:
        virtual void connectionReady(const std::shared_ptr<PeerConnection>& connection) = 0;
        virtual void messageReceived(const std::shared_ptr<PeerConnection>& connection,
                                     SermonStudioMessage message) = 0;
        virtual void bodyDropped(const std::shared_ptr<PeerConnection>& connection, const std::string& type) = 0;
        virtual void connectionClosed(const std::shared_ptr<PeerConnection>& connection, const std::string& reason) = 0;

        virtual ~Owner() = default;
    };

    /// A challenge this connection has to answer.
    struct PendingProof {
        orvane::Bytes nonce;
        std::string peerName;
        bool bootstrap = false;
        /// The bootstrap session's salt, so one session challenges a connection only once.
        orvane::Bytes salt;
    };

    PeerConnection(Stream stream, bool secure, Owner& owner, std::uint64_t identifier);

    /// Starts reading; a secure connection first completes its handshake within `handshakeTimeout`.
    void start(std::chrono::milliseconds handshakeTimeout);
    /// Queues a frame (header included). A peer that lets more than `maximumQueuedBytes` pile up
    /// is closed: it has stopped reading, and the desk must not hold its backlog without end.
    void send(std::string frame);
    /// Closes at once; the owner hears connectionClosed once.
    void close(const std::string& reason);

    std::uint64_t identifier() const { return m_identifier; }
    bool secure() const { return m_secure; }
    bool ready() const { return m_ready && !m_closed; }
    bool closed() const { return m_closed; }
    LinkClaim& claim() { return m_claim; }
    /// The claimed name, else the remote address: how log lines name the peer.
    std::string displayName() const;
    std::chrono::steady_clock::time_point lastHeard() const { return m_lastHeard; }
    /// The paired peer whose key the secure handshake used, if any.
    const std::optional<std::string>& pskPeer() const { return m_pskPeer; }

    std::optional<PendingProof> pendingProof;
    boost::asio::steady_timer proofTimer;
    /// The last status a peer reported (studioStatus, scriptureDisplayed, …) for the peers listing.
    std::string lastStatus;
    bool warnedAboutPlainLink = false;

private:
    void readHeader();
    void readBody(std::uint32_t length);
    void writeNext();
    template <class Operation>
    void onStream(Operation&& operation);

    Stream m_stream;
    bool m_secure;
    Owner& m_owner;
    std::uint64_t m_identifier;
    std::string m_remote;
    LinkClaim m_claim;
    boost::asio::steady_timer m_handshakeTimer;
    unsigned char m_header[4] = {};
    std::string m_body;
    std::deque<std::string> m_outgoing;
    std::size_t m_outgoingBytes = 0;
    bool m_ready = false;
    bool m_closed = false;
    std::optional<std::string> m_pskPeer;
    std::chrono::steady_clock::time_point m_lastHeard = std::chrono::steady_clock::now();
};

} // namespace quillon::mesh
