#include "mesh/ScriptureBridge.h"

#include "mesh/CalvaneLink.h"
#include "mesh/ServiceDiscovery.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/ApplicationIdentity.h"
#include "platform/PlatformWording.h"

#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/post.hpp>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <future>

namespace quillon::mesh {

namespace asio = boost::asio;
using Type = SermonStudioMessageType;
using Kind = MeshEvent::Kind;

namespace {

constexpr const char* source = "Quillon";
constexpr const char* applicationVersion = "0.1.0";

bool isContent(Type type) {
    switch (type) {
    case Type::pairChallenge:
    case Type::pairResponse:
    case Type::pairRejected:
    case Type::pairAccepted:
    case Type::hello:
        return false;
    default:
        return true;
    }
}

} // namespace

ScriptureBridge::ScriptureBridge(MeshSettings settings, SuiteMeshPairingStore& pairings, Executor mainThread,
                                 const platform::Clock& clock)
    : m_settings(std::move(settings)), m_pairings(pairings), m_mainThread(std::move(mainThread)), m_clock(clock),
      m_ledger([&clock] { return clock.now(); }, std::chrono::seconds{30}),
      m_tlsContext(asio::ssl::context::tls_server), m_plainAcceptor(m_io), m_secureAcceptor(m_io),
      m_heartbeatTimer(m_io), m_plainRetry(m_io), m_secureRetry(m_io) {
    m_resolver = [this](std::string_view identity) { return resolveIdentity(identity); };
    VantalinkPsk::configureServer(m_tlsContext, m_resolver);
}

ScriptureBridge::~ScriptureBridge() {
    stop();
    m_alive->store(false);
}

void ScriptureBridge::start() {
    if (m_started)
        return;
    m_started = true;
    m_stopping = false;
    m_work.emplace(m_io.get_executor());
    openListener(m_plainAcceptor, m_settings.port, false);
    openListener(m_secureAcceptor, m_settings.tlsPort, true);

    CalvaneLink::Callbacks callbacks;
    callbacks.linked = [this] {
        spdlog::info("Calvane linked with Quillon");
        onMain([this] {
            std::lock_guard lock(m_stateMutex);
            m_isCalvaneConnected = true;
        });
        emit(Kind::calvaneLinked, "Calvane", "");
        sendCalvaneLive();
    };
    callbacks.rejected = [this](const std::optional<std::string>& reason) {
        std::string text = reason ? "Calvane rejected Quillon: " + *reason : "Calvane rejected the connection.";
        spdlog::warn("{}", text);
        onMain([this] {
            std::lock_guard lock(m_stateMutex);
            m_isCalvaneConnected = false;
        });
        emit(Kind::calvaneRejected, "Calvane", text);
    };
    callbacks.lost = [this](const std::string& reason) {
        spdlog::info("The link to Calvane was lost: {}", reason);
        onMain([this] {
            std::lock_guard lock(m_stateMutex);
            m_isCalvaneConnected = false;
        });
        emit(Kind::calvaneLost, "Calvane", reason);
    };
    callbacks.pushed = [this](const nlohmann::json& frame) { handleCalvanePush(frame); };
    auto hello = [this] {
        nlohmann::json frame = {{"kind", "hello"}, {"appName", source}, {"appVersion", applicationVersion}};
        if (auto code = m_pairings.calvaneCode())
            frame["pairingCode"] = *code;
        return frame;
    };
    m_calvane = std::make_shared<CalvaneLink>(
        m_io, hello, callbacks,
        CalvaneLink::Timing{m_settings.calvaneFirstRetry, m_settings.calvaneRetryCeiling,
                            m_settings.calvaneHandshakeTimeout, m_settings.calvaneIdleTimeout});
    if (m_settings.calvaneAddress) {
        const std::string& address = *m_settings.calvaneAddress;
        auto colon = address.rfind(':');
        int port = colon == std::string::npos ? 0 : std::atoi(address.c_str() + colon + 1);
        if (port > 0 && port <= 65535)
            asio::post(m_io, [this, host = address.substr(0, colon), port] {
                m_calvane->connectTo(host, static_cast<std::uint16_t>(port));
            });
        else
            spdlog::warn("The Calvane address \"{}\" is not host:port; it is ignored", address);
    }
    if (m_settings.discovery) {
        m_discovery = std::make_unique<ServiceDiscovery>(platform::applicationName);
        bool on = m_discovery->start(m_plainPort, m_securePort, [this](const std::string& host, std::uint16_t port) {
            if (m_settings.calvaneAddress)
                return; // the preference wins over what the network says
            asio::post(m_io, [this, host, port] { m_calvane->connectTo(host, port); });
        });
        if (!on)
            emit(Kind::discoveryOff, "", "discovery is off");
    }
    m_lastHeartbeat = std::chrono::steady_clock::now();
    scheduleHeartbeat();
    m_thread = std::thread([this] { m_io.run(); });
}

void ScriptureBridge::stop() {
    if (!m_started)
        return;
    m_started = false;
    if (m_discovery)
        m_discovery->stop();
    asio::post(m_io, [this] {
        // A handler already queued when its timer is cancelled below still runs, without an error.
        m_stopping = true;
        boost::system::error_code ignored;
        m_plainAcceptor.close(ignored);
        m_secureAcceptor.close(ignored);
        m_heartbeatTimer.cancel();
        m_plainRetry.timer.cancel();
        m_secureRetry.timer.cancel();
        if (m_calvane)
            m_calvane->stop();
        auto connections = m_connections;
        for (auto& [identifier, connection] : connections)
            connection->close("the desk stopped the scripture mesh");
        m_work.reset();
    });
    if (m_thread.joinable())
        m_thread.join();
    // Let handlers still queued (aborted reads, timers) finish so every socket is released.
    m_io.restart();
    m_io.run();
    m_connections.clear();
    m_calvane.reset();
    m_discovery.reset();
}

void ScriptureBridge::openListener(asio::ip::tcp::acceptor& acceptor, std::uint16_t port, bool secure) {
    const char* startFailure =
        secure ? "Could not start the secure Vantalink listener: " : "Could not start the Brenmoor/Calvane listener: ";
    boost::system::error_code error;
    asio::ip::tcp::endpoint endpoint(asio::ip::address_v6::any(), port);
    acceptor.open(endpoint.protocol(), error);
    if (!error) {
        acceptor.set_option(asio::ip::v6_only(false), error);
        acceptor.set_option(asio::socket_base::reuse_address(true), error);
        acceptor.bind(endpoint, error);
    }
    if (!error)
        acceptor.listen(asio::socket_base::max_listen_connections, error);
    if (error) {
        spdlog::error("{}{}", startFailure, error.message());
        boost::system::error_code ignored;
        acceptor.close(ignored);
        return;
    }
    std::uint16_t bound = acceptor.local_endpoint(error).port();
    (secure ? m_securePort : m_plainPort) = bound;
    spdlog::info("Scripture mesh {} listener on port {}", secure ? "secure" : "plain", bound);
    acceptNext(acceptor, secure);
}

void ScriptureBridge::acceptNext(asio::ip::tcp::acceptor& acceptor, bool secure) {
    acceptor.async_accept([this, &acceptor, secure](boost::system::error_code error, asio::ip::tcp::socket socket) {
        if (error == asio::error::operation_aborted || !acceptor.is_open())
            return;
        if (error)
            return acceptLater(acceptor, secure, error);
        auto& retry = secure ? m_secureRetry : m_plainRetry;
        if (retry.delay.count() > 0) {
            spdlog::info("The {} listener accepts connections again", secure ? "secure Vantalink" : "Brenmoor/Calvane");
            retry.delay = std::chrono::milliseconds{0};
        }
        admit(std::move(socket), secure);
        acceptNext(acceptor, secure);
    });
}

void ScriptureBridge::acceptLater(asio::ip::tcp::acceptor& acceptor, bool secure,
                                  const boost::system::error_code& error) {
    // Accepting again at once would fail again at once (descriptors used up, say): a spinning
    // thread and a flood of log lines. Wait, doubling the wait, and say so once per streak.
    auto& retry = secure ? m_secureRetry : m_plainRetry;
    if (retry.delay.count() == 0) {
        spdlog::error("{}{}; accepting pauses until it clears",
                      secure ? "The secure Vantalink listener failed: " : "The Brenmoor/Calvane listener failed: ",
                      error.message());
        retry.delay = limits::acceptFirstRetry;
    } else {
        retry.delay = std::min(retry.delay * 2, std::chrono::milliseconds{limits::acceptRetryCeiling});
    }
    retry.timer.expires_after(retry.delay);
    retry.timer.async_wait([this, &acceptor, secure](boost::system::error_code waited) {
        if (!waited && !m_stopping && acceptor.is_open())
            acceptNext(acceptor, secure);
    });
}

void ScriptureBridge::admit(asio::ip::tcp::socket socket, bool secure) {
    boost::system::error_code error;
    auto endpoint = socket.remote_endpoint(error);
    if (error)
        return; // gone before it could be looked at
    auto address = endpoint.address();
    if (address.is_v6() && address.to_v6().is_v4_mapped())
        address = asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6());
    std::string key = address.to_string();
    auto& count = m_connectionsPerAddress[key];
    if (count >= limits::maximumConnectionsPerAddress || m_connections.size() >= limits::maximumConnections) {
        if (m_refusedAddresses.insert(key).second)
            spdlog::warn("Refused connections from {}: the desk holds {} connections, {} of them from there (at most "
                         "{} in all, {} from one address)",
                         key, m_connections.size(), count, limits::maximumConnections,
                         limits::maximumConnectionsPerAddress);
        if (count == 0)
            m_connectionsPerAddress.erase(key);
        socket.close(error);
        return;
    }
    ++count;
    m_refusedAddresses.erase(key);
    auto connection =
        std::make_shared<PeerConnection>(PeerConnection::Stream(std::move(socket), m_tlsContext), secure,
                                         static_cast<PeerConnection::Owner&>(*this), m_nextIdentifier++, m_bodyBudget);
    m_connections[connection->identifier()] = connection;
    connection->start(m_settings.tlsHandshakeTimeout);
}

void ScriptureBridge::scheduleHeartbeat() {
    // Silence is checked more often than heartbeats are sent, so a silent peer goes close to the
    // limit (within 1 s of 45 s by default) rather than at the next heartbeat, up to 15 s later.
    auto check =
        std::max(std::chrono::milliseconds{1}, std::min(m_settings.silenceLimit / 45, m_settings.heartbeatInterval));
    m_heartbeatTimer.expires_after(check);
    m_heartbeatTimer.async_wait([this](boost::system::error_code error) {
        if (error || m_stopping)
            return; // armed again after stop() it would keep the network thread from ever finishing
        auto now = std::chrono::steady_clock::now();
        bool heartbeatDue = now - m_lastHeartbeat >= m_settings.heartbeatInterval;
        if (heartbeatDue)
            m_lastHeartbeat = now;
        auto connections = m_connections;
        for (auto& [identifier, connection] : connections) {
            if (!connection->ready())
                continue;
            if (now - connection->lastHeard() > m_settings.silenceLimit) {
                std::string seconds = secondsText(m_settings.silenceLimit);
                spdlog::info("{} was silent for {} seconds and was dropped", connection->displayName(), seconds);
                connection->close("silent for " + seconds + " seconds");
                continue;
            }
            if (heartbeatDue && (!m_settings.requireEncrypted || connection->secure()))
                send(*connection, makeMessage(Type::heartbeat, {}));
        }
        scheduleHeartbeat();
    });
}

// MARK: connections

void ScriptureBridge::connectionReady(const ConnectionPointer& connection) {
    if (auto peer = connection->pskPeer()) {
        connection->claim().markVerified(*peer);
        publishTlsStatus("Secure link with " + *peer + " established");
    } else if (connection->secure()) {
        publishTlsStatus("Secure link established (not yet paired)");
    }
    send(*connection, makeMessage(Type::hello, {{"name", source}, {"source", source}}));
    publishConnectionState();
    emit(Kind::peerJoined, connection->displayName(), connection->secure() ? "secure" : "plain");
}

void ScriptureBridge::connectionClosed(const ConnectionPointer& connection, const std::string& reason) {
    if (m_connections.erase(connection->identifier()) > 0) {
        auto found = m_connectionsPerAddress.find(connection->address());
        if (found != m_connectionsPerAddress.end() && --found->second == 0)
            m_connectionsPerAddress.erase(found);
    }
    if (connection->pendingProof)
        m_ledger.withdraw(connection->pendingProof->nonce);
    if (reason.rfind("the secure handshake failed: ", 0) == 0) {
        spdlog::warn("{}: {}", connection->displayName(), reason);
        publishTlsStatus(reason.substr(std::string("the secure handshake failed: ").size()));
    } else {
        spdlog::info("{} left: {}", connection->displayName(), reason);
    }
    publishConnectionState();
    emit(Kind::peerLeft, connection->displayName(), reason);
}

void ScriptureBridge::bodyDropped(const ConnectionPointer& connection, const std::string& type) {
    spdlog::warn("Dropped {} from {}", type, connection->displayName());
}

void ScriptureBridge::messageReceived(const ConnectionPointer& connection, SermonStudioMessage message) {
    std::string name = connection->displayName();
    if (message.type == Type::unknown) {
        spdlog::warn("Dropped Unknown from {}", name);
        return;
    }
    if (isContent(message.type) && message.type != Type::heartbeat) {
        if (!mayCarryContent(*connection))
            return noteRefusedContent(*connection, message.type);
    }
    switch (message.type) {
    case Type::hello:
        handleHello(connection, message);
        break;
    case Type::heartbeat:
        break; // reading it already refreshed the connection
    case Type::nextVerse:
        onMain([this] {
            if (onNextVerse)
                onNextVerse();
        });
        emit(Kind::nextVerse, name, "");
        break;
    case Type::previousVerse:
        onMain([this] {
            if (onPreviousVerse)
                onPreviousVerse();
        });
        emit(Kind::previousVerse, name, "");
        break;
    case Type::scriptureAnnouncement:
        handleIncomingScripture(name, message.payload);
        break;
    case Type::scriptureCleared:
    case Type::scriptureDisplayed:
    case Type::scriptureFaded:
    case Type::studioStatus: {
        std::string detail(rawValue(message.type));
        if (auto reference = message.field("reference"); !reference.empty())
            detail += " " + reference;
        else if (auto status = message.field("status"); !status.empty())
            detail += " " + status;
        connection->lastStatus = detail;
        emit(Kind::peerStatus, name, detail);
        break;
    }
    case Type::requestScripture:
        send(*connection, announcementMessage());
        break;
    case Type::pairResponse:
        handlePairResponse(connection, message);
        break;
    case Type::pairChallenge:
    case Type::pairAccepted:
    case Type::pairRejected:
        spdlog::info("{} sent {}; the desk does not answer challenges", name, rawValue(message.type));
        break;
    case Type::toolRequest:
        handleToolRequest(connection, message);
        break;
    case Type::toolResponse:
    case Type::unknown:
        spdlog::warn("Dropped {} from {}", rawValue(message.type), name);
        break;
    } // no default case, so the compiler can warn about missing cases
}

// MARK: trust and pairing

bool ScriptureBridge::isTrusted(PeerConnection& connection) const {
    if (!connection.ready())
        return false;
    return !m_settings.requirePairing || connection.claim().verified();
}

void ScriptureBridge::noteRefusedContent(PeerConnection& connection, Type type) {
    if (!m_settings.requirePairing || connection.warnedAboutUnpairedClaim || connection.pendingProof ||
        connection.claim().verified())
        return;
    auto name = connection.claim().name();
    if (!name || m_pairings.pairing(*name))
        return;
    connection.warnedAboutUnpairedClaim = true;
    spdlog::warn("Ignored {} from {}: it claimed a name with no pairing here", rawValue(type), *name);
}

bool ScriptureBridge::mayCarryContent(PeerConnection& connection) {
    if (m_settings.requireEncrypted && !connection.secure()) {
        if (!connection.warnedAboutPlainLink) {
            connection.warnedAboutPlainLink = true;
            spdlog::warn("{} on a plain link: encrypted Vantalink applies", connection.displayName());
        }
        return false;
    }
    return isTrusted(connection);
}

void ScriptureBridge::handleHello(const ConnectionPointer& connection, const SermonStudioMessage& message) {
    std::string name = message.field("name");
    if (name.empty())
        name = message.field("appName");
    if (name.empty()) {
        spdlog::warn("Dropped hello from {}: it names no peer", connection->displayName());
        return;
    }
    bool renamed = connection->claim().name() != name;
    connection->claim().claim(name);
    if (renamed)
        emit(Kind::peerNamed, name, connection->secure() ? "secure" : "plain");
    if (connection->claim().verified()) {
        send(*connection, makeMessage(Type::pairAccepted, {{"name", name}}));
        if (m_networkLive && mayCarryContent(*connection))
            send(*connection, announcementMessage());
        return;
    }
    challenge(connection, name);
    if (!connection->pendingProof && m_networkLive && mayCarryContent(*connection))
        send(*connection, announcementMessage());
}

void ScriptureBridge::challenge(const ConnectionPointer& connection, const std::string& peerName) {
    std::optional<orvane::SuiteMeshBootstrapSession> bootstrap;
    {
        std::lock_guard lock(m_bootstrapMutex);
        auto found = m_bootstraps.find(peerName);
        if (found != m_bootstraps.end() && found->second.isExpired(m_clock.now()))
            m_bootstraps.erase(found);
        else if (found != m_bootstraps.end())
            bootstrap = found->second;
    }
    const auto& pending = connection->pendingProof;
    if (bootstrap) {
        // The hello and the preacher's code can both trigger a challenge; the peer answers only one.
        if (pending && pending->bootstrap && pending->peerName == peerName && pending->salt == bootstrap->salt)
            return;
        if (pending)
            m_ledger.withdraw(pending->nonce);
        auto issued = m_ledger.issue(orvane::SuiteCapability::grantedAtPairing());
        connection->pendingProof = PeerConnection::PendingProof{issued.nonce, peerName, true, bootstrap->salt};
        send(*connection, makeMessage(Type::pairChallenge, {{"nonce", orvane::base64Encode(issued.nonce)},
                                                            {"salt", orvane::base64Encode(bootstrap->salt)}}));
        return;
    }
    auto pairing = m_pairings.pairing(peerName);
    if (!pairing) {
        // Refused before any challenge: there is nothing the peer could prove.
        if (m_settings.requirePairing) {
            spdlog::warn("{} tried to connect with no pairing on file.", peerName);
            send(*connection, makeMessage(Type::pairRejected, {{"reason", "it claimed a name with no pairing here"}}));
        }
        return;
    }
    // A repeated hello does not pile up challenges: the peer answers the one it has.
    if (pending && !pending->bootstrap && pending->peerName == peerName)
        return;
    if (pending)
        m_ledger.withdraw(pending->nonce);
    auto issued = m_ledger.issue(pairing->capabilities);
    connection->pendingProof = PeerConnection::PendingProof{issued.nonce, peerName, false, {}};
    send(*connection, makeMessage(Type::pairChallenge, {{"nonce", orvane::base64Encode(issued.nonce)}}));
    connection->proofTimer.expires_after(m_settings.proofTimeout);
    std::weak_ptr<PeerConnection> weak = connection;
    connection->proofTimer.async_wait([this, weak, nonce = issued.nonce](boost::system::error_code error) {
        auto connection = weak.lock();
        if (error || !connection || !connection->pendingProof || connection->pendingProof->nonce != nonce)
            return;
        spdlog::warn("{}: it did not prove its pairing within {} seconds", connection->displayName(),
                     secondsText(m_settings.proofTimeout));
        connection->close("it did not prove its pairing in time");
    });
}

void ScriptureBridge::handlePairResponse(const ConnectionPointer& connection, const SermonStudioMessage& message) {
    auto pending = connection->pendingProof;
    auto nonce = orvane::base64Decode(message.field("nonce"));
    auto answer = orvane::base64Decode(message.field("answer"));
    if (!pending || !nonce || !answer || *nonce != pending->nonce) {
        spdlog::warn("Dropped pairResponse from {}: it answers no challenge sent to it", connection->displayName());
        return;
    }
    connection->pendingProof.reset();
    connection->proofTimer.cancel();
    const std::string& name = pending->peerName;
    auto now = m_clock.now();

    if (pending->bootstrap) {
        std::optional<orvane::SuiteMeshBootstrapSession> session;
        {
            std::lock_guard lock(m_bootstrapMutex);
            if (auto found = m_bootstraps.find(name); found != m_bootstraps.end())
                session = found->second;
        }
        if (!session || session->isExpired(now)) {
            spdlog::warn("{}: it did not answer the pairing challenge for that name (the code expired)", name);
            return failBootstrapProof(connection, name, "the pairing code expired");
        }
        orvane::SuitePairing provisional{name, orvane::SuiteCapability::grantedAtPairing(), session->secret, now};
        auto failure = m_ledger.verify(*nonce, name, *answer, provisional, now);
        if (failure) {
            if (*failure == orvane::SuiteHandshake::Failure::incorrect)
                spdlog::warn("{} answered with the wrong code.", name);
            else
                spdlog::warn("{}: it did not answer the pairing challenge for that name ({})", name,
                             orvane::describe(*failure));
            return failBootstrapProof(connection, name, std::string(orvane::describe(*failure)));
        }
        if (!m_pairings.save(provisional)) {
            spdlog::error("{} answered correctly, but the pairing could not be saved to {}.", name,
                          platform::wording::secretStore);
            send(*connection, makeMessage(Type::pairRejected, {{"reason", "the pairing could not be saved"}}));
            emit(Kind::pairingFailed, name, "the pairing could not be saved");
            return;
        }
        {
            std::lock_guard lock(m_bootstrapMutex);
            m_bootstraps.erase(name);
        }
        spdlog::info("{} paired successfully.", name);
        connection->claim().markVerified(name);
        send(*connection, makeMessage(Type::pairAccepted, {{"name", name}}));
        emit(Kind::pairingSucceeded, name, "");
    } else {
        auto pairing = m_pairings.pairing(name);
        auto failure = pairing ? m_ledger.verify(*nonce, name, *answer, *pairing, now)
                               : std::optional(orvane::SuiteHandshake::Failure::notPaired);
        if (failure) {
            spdlog::warn("{}: it did not answer the pairing challenge for that name ({})", name,
                         orvane::describe(*failure));
            send(*connection, makeMessage(Type::pairRejected, {{"reason", std::string(orvane::describe(*failure))}}));
            // A failed proof ends the connection: the peer claimed a name it could not back.
            connection->closeAfterSending("it did not prove its pairing");
            return;
        }
        connection->claim().markVerified(name);
        send(*connection, makeMessage(Type::pairAccepted, {{"name", name}}));
        emit(Kind::peerVerified, name, connection->secure() ? "secure" : "plain");
    }
    if (m_networkLive && mayCarryContent(*connection))
        send(*connection, announcementMessage());
}

void ScriptureBridge::failBootstrapProof(const ConnectionPointer& connection, const std::string& name,
                                         const std::string& reason) {
    send(*connection, makeMessage(Type::pairRejected, {{"reason", reason}}));
    // A failed proof ends the connection, so a guesser cannot try code after code on one link.
    connection->closeAfterSending("it did not prove its pairing");
    emit(Kind::pairingFailed, name, reason);
    bool used = false;
    {
        std::lock_guard lock(m_bootstrapMutex);
        auto found = m_bootstraps.find(name);
        if (found != m_bootstraps.end() && found->second.recordFailedAnswer()) {
            m_bootstraps.erase(found);
            used = true;
        }
    }
    if (!used)
        return;
    // Connections still holding a challenge for the withdrawn code can no longer pair with it.
    spdlog::warn("The pairing code for {} was withdrawn after {} failed answers; generate a new one", name,
                 orvane::SuiteMeshBootstrapSession::allowedFailedAnswers);
    emit(Kind::pairingFailed, name, "the pairing code was withdrawn after repeated failed answers");
}

std::optional<VantalinkPsk::Match> ScriptureBridge::resolveIdentity(std::string_view identity) {
    if (identity.rfind(VantalinkPsk::unpairedPrefix, 0) == 0)
        return VantalinkPsk::Match{VantalinkPsk::unpairedKey(identity), std::nullopt};
    for (const auto& name : m_pairings.pairedPeerNames()) {
        auto pairing = m_pairings.pairing(name);
        if (pairing && VantalinkPsk::identity(pairing->secret) == identity)
            return VantalinkPsk::Match{VantalinkPsk::key(pairing->secret), name};
    }
    spdlog::warn("A secure peer offered a pairing identity unknown here");
    return std::nullopt;
}

PairingCode ScriptureBridge::startBootstrap(std::string peerName) {
    auto session = orvane::SuiteMeshBootstrapSession::start(peerName, platform::applicationIdentifier, m_clock.now(),
                                                            m_settings.pairingWindow);
    PairingCode shown{peerName, session.code, session.expiresAt};
    {
        std::lock_guard lock(m_bootstrapMutex);
        m_bootstraps[peerName] = session;
    }
    asio::post(m_io, [this, peerName] {
        for (auto& [identifier, connection] : m_connections)
            if (connection->ready() && connection->claim().name() == peerName)
                challenge(connection, peerName);
    });
    return shown;
}

// MARK: tools and incoming scripture

void ScriptureBridge::handleToolRequest(const ConnectionPointer& connection, const SermonStudioMessage& message) {
    std::string tool = message.field("tool");
    std::string requestId = message.field("requestId");
    std::string query = message.field("query");
    std::weak_ptr<PeerConnection> weak = connection;
    auto reply = [this, weak, tool, requestId](const ToolAnswer& answer) {
        asio::post(m_io, [this, weak, tool, requestId, answer] {
            auto connection = weak.lock();
            if (!connection || connection->closed())
                return;
            std::map<std::string, std::string> payload = {{"tool", tool}, {"requestId", requestId}};
            if (answer.result)
                payload["result"] = *answer.result;
            else
                payload["error"] = answer.error.value_or("Quillon could not answer.");
            if (!send(*connection, makeMessage(Type::toolResponse, payload)) && answer.result) {
                payload.erase("result");
                payload["error"] = "Quillon's answer is too large to send.";
                send(*connection, makeMessage(Type::toolResponse, payload));
            }
        });
    };
    if (tool == "liveScripture") {
        orvane::ToolResult live;
        if (m_networkLive)
            live.passages.push_back(
                {m_networkLive->reference + " (" + m_networkLive->version + ")", m_networkLive->text});
        return reply(ToolAnswer::found(live));
    }
    if (tool != "currentSermon" && tool != "searchSermons")
        return reply(ToolAnswer::failed("Quillon has no tool named \"" + tool + "\"."));
    onMain([this, tool, query, reply] {
        if (!toolHandler)
            return reply(ToolAnswer::failed("Quillon has no sermon library open here."));
        ToolAnswer answer;
        try {
            answer = toolHandler(tool, query);
        } catch (const std::exception& failure) {
            answer = ToolAnswer::failed(std::string("Quillon could not run ") + tool + ": " + failure.what());
        }
        reply(answer);
    });
}

void ScriptureBridge::handleIncomingScripture(const std::string& peer,
                                              const std::map<std::string, std::string>& payload) {
    auto reference = MeshScriptureReference::fromPayload(payload);
    if (!reference) {
        spdlog::warn("Dropped scriptureAnnouncement from {}: it names no reference", peer);
        return;
    }
    SermonStudioMessage message = makeMessage(Type::scriptureAnnouncement, payload);
    onMain([this, reference = *reference, message] {
        {
            std::lock_guard lock(m_stateMutex);
            m_incomingReference = reference;
        }
        if (onIncomingScripture)
            onIncomingScripture(reference, message);
    });
    emit(Kind::incomingScripture, peer, reference->description());
}

void ScriptureBridge::handleCalvanePush(const nlohmann::json& frame) {
    if (frame.value("kind", "") == "clear") {
        emit(Kind::incomingClear, "Calvane", "");
        return;
    }
    std::map<std::string, std::string> payload;
    for (const auto& [key, value] : frame.items())
        if (value.is_string())
            payload[key] = value.get<std::string>();
        else if (value.is_number_integer())
            payload[key] = std::to_string(value.get<long long>());
    handleIncomingScripture("Calvane", payload);
}

// MARK: sending

void ScriptureBridge::announce(const MeshScriptureReference& reference, std::string version, std::string text) {
    announce(LiveScripture{reference.description(), reference.book, std::move(version), std::move(text)});
}

void ScriptureBridge::announce(LiveScripture scripture) {
    {
        std::lock_guard lock(m_stateMutex);
        m_liveReference = scripture;
    }
    asio::post(m_io, [this, scripture] {
        m_networkLive = scripture;
        sendContent(announcementMessage());
        if (m_calvane)
            m_calvane->send({{"kind", "scripture"},
                             {"reference", scripture.reference},
                             {"version", scripture.version},
                             {"text", scripture.text},
                             {"formatted", false},
                             {"calloutId", orvane::hexEncode(orvane::randomBytes(8))},
                             {"source", source}});
    });
    tellFollowers(scripture);
}

void ScriptureBridge::clear() {
    {
        std::lock_guard lock(m_stateMutex);
        m_liveReference.reset();
    }
    asio::post(m_io, [this] {
        m_networkLive.reset();
        sendContent(makeMessage(Type::scriptureCleared, {{"source", source}, {"reference", ""}}));
        if (m_calvane)
            m_calvane->send({{"kind", "clear"}, {"source", source}});
    });
    tellFollowers(std::nullopt);
}

void ScriptureBridge::addLiveFollower(LiveFollower follower) {
    if (follower)
        m_liveFollowers.push_back(std::move(follower));
}

// A follower that throws must not keep the passage from the others or from the caller.
void ScriptureBridge::tellFollowers(const std::optional<LiveScripture>& live) {
    for (const auto& follower : m_liveFollowers) {
        try {
            follower(live);
        } catch (const std::exception& failure) {
            spdlog::error("A screen beyond the mesh failed to follow the passage: {}", failure.what());
        }
    }
}

void ScriptureBridge::receiveOutsideReference(const std::string& origin, const MeshScriptureReference& reference) {
    std::map<std::string, std::string> payload = {{"reference", reference.description()},
                                                  {"book", reference.book},
                                                  {"chapter", std::to_string(reference.chapter)},
                                                  {"source", origin}};
    if (reference.startVerse)
        payload["startVerse"] = std::to_string(*reference.startVerse);
    if (reference.endVerse)
        payload["endVerse"] = std::to_string(*reference.endVerse);
    SermonStudioMessage message = makeMessage(Type::scriptureAnnouncement, std::move(payload));
    onMain([this, reference, message] {
        {
            std::lock_guard lock(m_stateMutex);
            m_incomingReference = reference;
        }
        if (onIncomingScripture)
            onIncomingScripture(reference, message);
    });
    emit(Kind::incomingScripture, origin, reference.description());
}

SermonStudioMessage ScriptureBridge::announcementMessage() const {
    if (!m_networkLive)
        return makeMessage(Type::scriptureCleared, {{"source", source}, {"reference", ""}});
    return makeMessage(Type::scriptureAnnouncement, {{"reference", m_networkLive->reference},
                                                     {"version", m_networkLive->version},
                                                     {"text", m_networkLive->text},
                                                     {"book", m_networkLive->book},
                                                     {"source", source}});
}

void ScriptureBridge::sendContent(const SermonStudioMessage& message) {
    auto frame = std::make_shared<const std::string>(message.frame());
    for (auto& [identifier, connection] : m_connections)
        if (mayCarryContent(*connection))
            connection->send(frame);
    enforceQueueBudget();
}

void ScriptureBridge::enforceQueueBudget() {
    // Posted, because closing removes connections from the table a caller may be walking.
    if (m_queueCheckPosted)
        return;
    m_queueCheckPosted = true;
    asio::post(m_io, [this] {
        m_queueCheckPosted = false;
        for (;;) {
            std::size_t total = 0;
            ConnectionPointer longest;
            for (auto& [identifier, connection] : m_connections) {
                total += connection->queuedBytes();
                if (!longest || connection->queuedBytes() > longest->queuedBytes())
                    longest = connection;
            }
            if (total <= limits::sharedQueuedBytes || !longest)
                return;
            longest->close("the peer stopped reading while the desk's queues were full");
        }
    });
}

void ScriptureBridge::sendCalvaneLive() {
    if (!m_calvane || !m_networkLive)
        return;
    m_calvane->send({{"kind", "scripture"},
                     {"reference", m_networkLive->reference},
                     {"version", m_networkLive->version},
                     {"text", m_networkLive->text},
                     {"formatted", false},
                     {"calloutId", ""},
                     {"source", source}});
}

bool ScriptureBridge::send(PeerConnection& connection, SermonStudioMessage message) {
    std::string frame = message.frame();
    // A peer closes the link on a frame this long, so it is never written.
    if (frame.size() - 4 > maximumFrameLength) {
        spdlog::warn("Did not send {} to {}: its {} bytes are over the frame limit of {}", rawValue(message.type),
                     connection.displayName(), frame.size() - 4, maximumFrameLength);
        return false;
    }
    connection.send(std::move(frame));
    enforceQueueBudget();
    return true;
}

SermonStudioMessage ScriptureBridge::makeMessage(Type type, std::map<std::string, std::string> payload) const {
    return SermonStudioMessage{type, std::move(payload), m_clock.now()};
}

// MARK: published state

void ScriptureBridge::publishConnectionState() {
    bool connected = false;
    for (auto& [identifier, connection] : m_connections)
        connected = connected || connection->ready();
    onMain([this, connected] {
        std::lock_guard lock(m_stateMutex);
        m_isBrenmoorConnected = connected;
    });
}

void ScriptureBridge::publishTlsStatus(std::string status) {
    onMain([this, status] {
        std::lock_guard lock(m_stateMutex);
        m_tlsStatus = status;
    });
    emit(Kind::tlsStatus, "", status);
}

void ScriptureBridge::emit(Kind kind, std::string peer, std::string detail) {
    onMain([this, event = MeshEvent{kind, std::move(peer), std::move(detail)}] {
        if (onEvent)
            onEvent(event);
    });
}

void ScriptureBridge::onMain(std::function<void()> task) {
    m_mainThread([alive = m_alive, task = std::move(task)] {
        if (alive->load())
            task();
    });
}

std::vector<PeerSummary> ScriptureBridge::peers() {
    if (!m_started)
        return {};
    std::promise<std::vector<PeerSummary>> promise;
    auto answer = promise.get_future();
    asio::post(m_io, [this, &promise] {
        std::vector<PeerSummary> summaries;
        for (auto& [identifier, connection] : m_connections) {
            boost::system::error_code ignored;
            summaries.push_back(PeerSummary{identifier, connection->displayName(), connection->claim().name(),
                                            connection->claim().verified(), connection->secure(),
                                            isTrusted(*connection), connection->lastStatus});
        }
        promise.set_value(std::move(summaries));
    });
    if (answer.wait_for(std::chrono::seconds{5}) != std::future_status::ready)
        return {}; // never reached unless the network thread is wedged; the promise outlives nothing then
    return answer.get();
}

bool ScriptureBridge::isCalvaneConnected() const {
    std::lock_guard lock(m_stateMutex);
    return m_isCalvaneConnected;
}

bool ScriptureBridge::isBrenmoorConnected() const {
    std::lock_guard lock(m_stateMutex);
    return m_isBrenmoorConnected;
}

std::optional<LiveScripture> ScriptureBridge::liveReference() const {
    std::lock_guard lock(m_stateMutex);
    return m_liveReference;
}

std::optional<MeshScriptureReference> ScriptureBridge::incomingReference() const {
    std::lock_guard lock(m_stateMutex);
    return m_incomingReference;
}

std::string ScriptureBridge::tlsStatus() const {
    std::lock_guard lock(m_stateMutex);
    return m_tlsStatus;
}

} // namespace quillon::mesh
