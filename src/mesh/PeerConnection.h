#pragma once

#include "mesh/LinkClaim.h"
#include "mesh/MeshLimits.h"
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
#include <vector>

namespace quillon::mesh {

/// One Vantalink connection accepted by the desk, plain or secure: reads frames in bounded pieces,
/// queues writes. Lives on the bridge's thread; every member is touched only there (except the claim).
class PeerConnection : public std::enable_shared_from_this<PeerConnection> {
public:
    static constexpr std::size_t maximumQueuedBytes = limits::queuedBytesPerPeer;
    /// A frame as it is written: broadcasts share one copy among all peers.
    using Frame = std::shared_ptr<const std::string>;

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

    /// `bodyBudget` is shared by all connections for the parts of bodies beyond their first piece.
    PeerConnection(Stream stream, bool secure, Owner& owner, std::uint64_t identifier, ByteBudget& bodyBudget);

    /// Starts reading; a secure connection first completes its handshake within `handshakeTimeout`.
    void start(std::chrono::milliseconds handshakeTimeout);
    /// Queues a frame (header included). A peer that lets more than `maximumQueuedBytes` pile up
    /// is closed: it has stopped reading, and the desk must not hold its backlog without end.
    void send(std::string frame);
    void send(Frame frame);
    /// Closes at once; the owner hears connectionClosed once.
    void close(const std::string& reason);
    /// Reads nothing more, writes what is queued (a rejection, say), then closes; closes at once
    /// when the peer does not take the queued bytes within a second.
    void closeAfterSending(const std::string& reason);

    std::uint64_t identifier() const { return m_identifier; }
    bool secure() const { return m_secure; }
    bool ready() const { return m_ready && !m_closed; }
    bool closed() const { return m_closed; }
    bool closing() const { return m_closing; }
    /// The remote address without its port (IPv4 written plainly): what the per-address limit counts.
    const std::string& address() const { return m_address; }
    std::size_t queuedBytes() const { return m_outgoingBytes; }
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
    bool warnedAboutUnpairedClaim = false;

private:
    void readHeader();
    void readBody(std::uint32_t length);
    void readPiece();
    /// Makes room for the next piece, charging what lies beyond the first piece to the shared budget.
    bool reserveFor(std::size_t size);
    void releaseBody();
    void bodyComplete();
    /// Takes one message from the rate allowance; false when the peer is over it.
    bool withinRate();
    void writeNext();
    template <class Operation>
    void onStream(Operation&& operation);

    Stream m_stream;
    bool m_secure;
    Owner& m_owner;
    std::uint64_t m_identifier;
    std::string m_remote;
    std::string m_address;
    LinkClaim m_claim;
    boost::asio::steady_timer m_handshakeTimer;
    ByteBudget& m_bodyBudget;
    unsigned char m_header[4] = {};
    std::vector<char> m_body;
    std::size_t m_expected = 0;
    /// What m_body's capacity holds beyond the first piece, taken from the shared budget.
    std::size_t m_charged = 0;
    double m_rateAllowance = limits::messageBurst;
    std::chrono::steady_clock::time_point m_rateUpdated = std::chrono::steady_clock::now();
    bool m_warnedAboutRate = false;
    std::deque<Frame> m_outgoing;
    std::size_t m_outgoingBytes = 0;
    bool m_ready = false;
    bool m_closed = false;
    bool m_closing = false;
    std::string m_closingReason;
    std::optional<std::string> m_pskPeer;
    std::chrono::steady_clock::time_point m_lastHeard = std::chrono::steady_clock::now();
};

} // namespace quillon::mesh
