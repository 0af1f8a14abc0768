#pragma once

#include "mesh/MeshEvent.h"
#include "mesh/MeshLimits.h"
#include "mesh/MeshScriptureReference.h"
#include "mesh/MeshSettings.h"
#include "mesh/PeerConnection.h"
#include "mesh/SerialExecutor.h"
#include "mesh/ToolAnswer.h"
#include "mesh/VantalinkPsk.h"
#include "orvane/SuiteChallengeLedger.h"
#include "orvane/SuiteMeshBootstrapSession.h"
#include "platform/Clock.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <nlohmann/json_fwd.hpp>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace quillon::mesh {

class CalvaneLink;
class ServiceDiscovery;
class SuiteMeshPairingStore;

/// The passage the desk has on screen, as it is announced.
struct LiveScripture {
    /// The printed reference ("John 3:16-18").
    std::string reference;
    std::string book;
    /// The Bible version's code text ("KJV").
    std::string version;
    std::string text;
    bool operator==(const LiveScripture&) const = default;
};

/// One open Vantalink connection as the peers listing shows it.
struct PeerSummary {
    std::uint64_t identifier = 0;
    std::string address;
    std::optional<std::string> claim;
    bool verified = false;
    bool secure = false;
    bool trusted = false;
    std::string status;
};

/// A pairing code to show the preacher.
struct PairingCode {
    std::string peerName;
    std::string code;
    std::chrono::system_clock::time_point expiresAt;
};

/// Shares the passage on screen with Brenmoor (Vantalink peers that connect to the desk, plain or
/// over TLS with a pre-shared key) and Calvane (a WebSocket link the desk dials), and hands what
/// they send back to the editor.
///
/// All network work runs on one thread with its own io_context. Every change of published state and
/// every callback into the application is posted to the executor the application supplies (its
/// main thread), never run on the network thread. Set the callbacks before start().
class ScriptureBridge : private PeerConnection::Owner {
public:
    ScriptureBridge(MeshSettings settings, SuiteMeshPairingStore& pairings, Executor mainThread,
                    const platform::Clock& clock = platform::SystemClock::shared());
    ~ScriptureBridge();
    ScriptureBridge(const ScriptureBridge&) = delete;
    ScriptureBridge& operator=(const ScriptureBridge&) = delete;

    /// Opens both listeners, publishes them, browses for Calvane and starts the network thread.
    /// A listener that cannot open is logged and left closed; the rest keeps working.
    void start();
    /// Closes every connection and listener and joins the network thread. Safe to call twice.
    void stop();

    /// Sends the passage to every trusted Vantalink peer and to Calvane, and makes it live.
    void announce(LiveScripture scripture);
    void announce(const MeshScriptureReference& reference, std::string version, std::string text);
    /// Clears the passage everywhere.
    void clear();

    /// Called with the passage (or nothing, for a clear) inside every announce() and clear(), on the
    /// caller's thread, after the mesh's own send is queued: the screens beyond the mesh hang here,
    /// so whoever announces reaches them all. A follower must return at once. Add before start().
    using LiveFollower = std::function<void(const std::optional<LiveScripture>& live)>;
    void addLiveFollower(LiveFollower follower);
    /// A reference that reached the desk from outside the mesh (a Bible program's navigation):
    /// stored in `incomingReference` and handed to `onIncomingScripture` on the main thread, as a
    /// peer's announcement is, with "source" naming where it came from. Safe from any thread.
    void receiveOutsideReference(const std::string& source, const MeshScriptureReference& reference);

    /// A fresh pairing code for `peerName`; peers already connected under that name are challenged at once.
    PairingCode startBootstrap(std::string peerName);

    /// The listening ports once start() has run (0 when a listener did not open).
    std::uint16_t plainPort() const { return m_plainPort; }
    std::uint16_t securePort() const { return m_securePort; }

    // Published state: written on the main thread only.
    bool isCalvaneConnected() const;
    bool isBrenmoorConnected() const;
    std::optional<LiveScripture> liveReference() const;
    std::optional<MeshScriptureReference> incomingReference() const;
    std::string tlsStatus() const;

    /// Every open connection; asks the network thread and waits for its answer.
    std::vector<PeerSummary> peers();

    // Callbacks into the application, run on its main thread.
    std::function<void(const MeshScriptureReference& reference, const SermonStudioMessage& message)>
        onIncomingScripture;
    std::function<void()> onNextVerse;
    std::function<void()> onPreviousVerse;
    std::function<void(const MeshEvent& event)> onEvent;
    /// Answers "currentSermon" and "searchSermons" (on the main thread); without it peers are told
    /// that no sermon library is open. "liveScripture" is answered by the bridge itself.
    std::function<ToolAnswer(const std::string& tool, const std::string& query)> toolHandler;

private:
    using ConnectionPointer = std::shared_ptr<PeerConnection>;

    // PeerConnection::Owner, on the network thread.
    void connectionReady(const ConnectionPointer& connection) override;
    void messageReceived(const ConnectionPointer& connection, SermonStudioMessage message) override;
    void bodyDropped(const ConnectionPointer& connection, const std::string& type) override;
    void connectionClosed(const ConnectionPointer& connection, const std::string& reason) override;

    void openListener(boost::asio::ip::tcp::acceptor& acceptor, std::uint16_t port, bool secure);
    void acceptNext(boost::asio::ip::tcp::acceptor& acceptor, bool secure);
    /// After a failed accept: waits (doubling up to a ceiling) rather than spin, and logs once.
    void acceptLater(boost::asio::ip::tcp::acceptor& acceptor, bool secure, const boost::system::error_code& error);
    /// Takes the connection unless the desk or its address already has as many as it allows.
    void admit(boost::asio::ip::tcp::socket socket, bool secure);
    /// Ends a bootstrap connection's failed proof; the third failure against a code ends the code.
    void failBootstrapProof(const ConnectionPointer& connection, const std::string& name, const std::string& reason);
    void scheduleHeartbeat();
    void handleHello(const ConnectionPointer& connection, const SermonStudioMessage& message);
    void challenge(const ConnectionPointer& connection, const std::string& peerName);
    void handlePairResponse(const ConnectionPointer& connection, const SermonStudioMessage& message);
    void handleToolRequest(const ConnectionPointer& connection, const SermonStudioMessage& message);
    void handleIncomingScripture(const std::string& peer, const std::map<std::string, std::string>& payload);
    void handleCalvanePush(const nlohmann::json& frame);
    bool isTrusted(PeerConnection& connection) const;
    /// True when content may travel on this connection; logs once when a plain link is refused.
    bool mayCarryContent(PeerConnection& connection);
    /// Logs once per connection that content from a name with no pairing is ignored.
    void noteRefusedContent(PeerConnection& connection, SermonStudioMessageType type);
    void sendContent(const SermonStudioMessage& message);
    /// Lets go of the peers with the longest backlogs while all queues together hold too much.
    void enforceQueueBudget();
    void sendCalvaneLive();
    /// False, and logged, when the frame would be longer than a peer accepts; nothing is written then.
    bool send(PeerConnection& connection, SermonStudioMessage message);
    SermonStudioMessage makeMessage(SermonStudioMessageType type, std::map<std::string, std::string> payload) const;
    SermonStudioMessage announcementMessage() const;
    void tellFollowers(const std::optional<LiveScripture>& live);
    std::optional<VantalinkPsk::Match> resolveIdentity(std::string_view identity);
    void publishConnectionState();
    void publishTlsStatus(std::string status);
    void emit(MeshEvent::Kind kind, std::string peer, std::string detail);
    /// Runs `task` on the application's main thread.
    void onMain(std::function<void()> task);

    MeshSettings m_settings;
    SuiteMeshPairingStore& m_pairings;
    Executor m_mainThread;
    const platform::Clock& m_clock;
    orvane::SuiteChallengeLedger m_ledger;

    boost::asio::io_context m_io;
    std::optional<boost::asio::executor_work_guard<boost::asio::io_context::executor_type>> m_work;
    boost::asio::ssl::context m_tlsContext;
    VantalinkPsk::Resolver m_resolver;
    boost::asio::ip::tcp::acceptor m_plainAcceptor;
    boost::asio::ip::tcp::acceptor m_secureAcceptor;
    boost::asio::steady_timer m_heartbeatTimer;
    /// Per listener (plain, secure): the back-off after a failed accept.
    struct AcceptRetry {
        explicit AcceptRetry(boost::asio::io_context& io) : timer(io) {}
        boost::asio::steady_timer timer;
        std::chrono::milliseconds delay{0};
    };
    AcceptRetry m_plainRetry;
    AcceptRetry m_secureRetry;
    std::chrono::steady_clock::time_point m_lastHeartbeat;
    std::thread m_thread;
    std::atomic<std::uint16_t> m_plainPort{0};
    std::atomic<std::uint16_t> m_securePort{0};
    bool m_started = false;

    // Network-thread state.
    /// Set by stop(): nothing may arm a timer or start work after it.
    bool m_stopping = false;
    std::map<std::uint64_t, ConnectionPointer> m_connections;
    std::map<std::string, std::size_t> m_connectionsPerAddress;
    /// Addresses refused since they last had a place, so each refusal streak is logged once.
    std::set<std::string> m_refusedAddresses;
    ByteBudget m_bodyBudget{limits::sharedBodyBytes};
    bool m_queueCheckPosted = false;
    std::uint64_t m_nextIdentifier = 1;
    std::optional<LiveScripture> m_networkLive;
    std::shared_ptr<CalvaneLink> m_calvane;
    std::unique_ptr<ServiceDiscovery> m_discovery;

    // Bootstrap sessions are created on the caller's thread and read on the network thread.
    std::mutex m_bootstrapMutex;
    std::map<std::string, orvane::SuiteMeshBootstrapSession> m_bootstraps;

    // Published state.
    mutable std::mutex m_stateMutex;
    bool m_isCalvaneConnected = false;
    bool m_isBrenmoorConnected = false;
    std::optional<LiveScripture> m_liveReference;
    std::optional<MeshScriptureReference> m_incomingReference;
    std::string m_tlsStatus;

    /// Set while the bridge lives; main-thread tasks posted late check it before touching `this`.
    std::shared_ptr<std::atomic<bool>> m_alive = std::make_shared<std::atomic<bool>>(true);
    std::vector<LiveFollower> m_liveFollowers;
};

} // namespace quillon::mesh
