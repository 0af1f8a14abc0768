#include "VantalinkTestPeer.h"

#include "orvane/SuiteHandshake.h"
#include "orvane/SuiteMeshBootstrapSession.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace quillon::testing {

using mesh::SermonStudioMessage;
using mesh::SermonStudioMessageType;

namespace {

int connectLoopback(std::uint16_t port, const char* from = "127.0.0.1") {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    // Any address in 127/8 is this machine: tests stand in for several hosts by choosing one.
    sockaddr_in local{};
    local.sin_family = AF_INET;
    ::inet_pton(AF_INET, from, &local.sin_addr);
    ::bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        throw std::runtime_error("could not connect to the bridge on port " + std::to_string(port));
    }
    int one = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    return fd;
}

struct ClientPsk {
    std::string identity;
    orvane::Bytes key;
};
thread_local ClientPsk* currentPsk = nullptr;

unsigned int clientCallback(SSL*, const char*, char* identity, unsigned int maxIdentity, unsigned char* psk,
                            unsigned int maxPsk) {
    if (!currentPsk || currentPsk->identity.size() + 1 > maxIdentity || currentPsk->key.size() > maxPsk)
        return 0;
    std::memcpy(identity, currentPsk->identity.c_str(), currentPsk->identity.size() + 1);
    std::memcpy(psk, currentPsk->key.data(), currentPsk->key.size());
    return static_cast<unsigned int>(currentPsk->key.size());
}

} // namespace

VantalinkTestPeer::~VantalinkTestPeer() {
    if (m_ssl)
        SSL_free(m_ssl);
    if (m_context)
        SSL_CTX_free(m_context);
    if (m_fd >= 0)
        ::close(m_fd);
}

std::unique_ptr<VantalinkTestPeer> VantalinkTestPeer::connectPlain(std::uint16_t port, const char* from) {
    std::unique_ptr<VantalinkTestPeer> peer(new VantalinkTestPeer);
    peer->m_fd = connectLoopback(port, from);
    return peer;
}

std::unique_ptr<VantalinkTestPeer> VantalinkTestPeer::connectSecure(std::uint16_t port, const std::string& identity,
                                                                    const orvane::Bytes& key) {
    std::unique_ptr<VantalinkTestPeer> peer(new VantalinkTestPeer);
    peer->m_fd = connectLoopback(port);
    peer->m_context = SSL_CTX_new(TLS_client_method());
    SSL_CTX_set_min_proto_version(peer->m_context, TLS1_2_VERSION);
    SSL_CTX_set_max_proto_version(peer->m_context, TLS1_2_VERSION);
    SSL_CTX_set_cipher_list(peer->m_context, "PSK-AES128-GCM-SHA256");
    SSL_CTX_set_psk_client_callback(peer->m_context, clientCallback);
    peer->m_ssl = SSL_new(peer->m_context);
    SSL_set_fd(peer->m_ssl, peer->m_fd);
    timeval five{5, 0};
    ::setsockopt(peer->m_fd, SOL_SOCKET, SO_RCVTIMEO, &five, sizeof five);
    ClientPsk values{identity, key};
    currentPsk = &values;
    int result = SSL_connect(peer->m_ssl);
    currentPsk = nullptr;
    if (result != 1)
        return nullptr;
    return peer;
}

void VantalinkTestPeer::sendRaw(const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        long written = m_ssl ? SSL_write(m_ssl, bytes.data() + sent, static_cast<int>(bytes.size() - sent))
                             : ::send(m_fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (written <= 0)
            return; // the desk closed the connection; the test's next read notices
        sent += static_cast<std::size_t>(written);
    }
}

void VantalinkTestPeer::send(SermonStudioMessageType type, std::map<std::string, std::string> payload) {
    sendRaw(SermonStudioMessage{type, std::move(payload), std::chrono::system_clock::now()}.frame());
}

VantalinkTestPeer::ReadResult VantalinkTestPeer::readExactly(char* into, std::size_t length,
                                                             std::chrono::steady_clock::time_point deadline) {
    std::size_t done = 0;
    while (done < length) {
        if (!m_ssl || SSL_pending(m_ssl) == 0) {
            auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                return ReadResult::timeout;
            pollfd waiting{m_fd, POLLIN, 0};
            if (::poll(&waiting, 1, static_cast<int>(left.count())) == 0)
                return ReadResult::timeout;
        }
        long got = m_ssl ? SSL_read(m_ssl, into + done, static_cast<int>(length - done))
                         : ::recv(m_fd, into + done, length - done, 0);
        if (got <= 0) {
            if (m_ssl && SSL_get_error(m_ssl, static_cast<int>(got)) == SSL_ERROR_WANT_READ)
                continue;
            return ReadResult::closed;
        }
        done += static_cast<std::size_t>(got);
    }
    return ReadResult::done;
}

std::optional<SermonStudioMessage> VantalinkTestPeer::readMessage(std::chrono::steady_clock::time_point deadline,
                                                                  bool* closed) {
    unsigned char header[4];
    auto result = readExactly(reinterpret_cast<char*>(header), 4, deadline);
    if (result == ReadResult::done) {
        std::uint32_t length =
            std::uint32_t{header[0]} << 24 | std::uint32_t{header[1]} << 16 | std::uint32_t{header[2]} << 8 | header[3];
        std::string body(length, '\0');
        result = readExactly(body.data(), length, deadline);
        if (result == ReadResult::done)
            return SermonStudioMessage::decode(body);
    }
    *closed = result == ReadResult::closed;
    return std::nullopt;
}

std::optional<SermonStudioMessage> VantalinkTestPeer::waitFor(SermonStudioMessageType type,
                                                              std::chrono::milliseconds timeout) {
    auto deadline = std::chrono::steady_clock::now() + timeout;
    bool closed = false;
    while (!closed) {
        auto message = readMessage(deadline, &closed);
        if (!message && !closed && std::chrono::steady_clock::now() >= deadline)
            return std::nullopt;
        if (message && message->type == type)
            return message;
    }
    return std::nullopt;
}

std::optional<SermonStudioMessage> VantalinkTestPeer::next(std::chrono::milliseconds timeout) {
    auto deadline = std::chrono::steady_clock::now() + timeout;
    bool closed = false;
    while (!closed && std::chrono::steady_clock::now() < deadline) {
        auto message = readMessage(deadline, &closed);
        if (message && message->type != SermonStudioMessageType::heartbeat &&
            message->type != SermonStudioMessageType::hello)
            return message;
    }
    return std::nullopt;
}

bool VantalinkTestPeer::waitForClose(std::chrono::milliseconds timeout) {
    auto deadline = std::chrono::steady_clock::now() + timeout;
    bool closed = false;
    while (!closed && std::chrono::steady_clock::now() < deadline)
        readMessage(deadline, &closed);
    return closed;
}

void VantalinkTestPeer::answerBootstrap(const SermonStudioMessage& challenge, const std::string& code,
                                        const std::string& name) {
    auto salt = orvane::base64Decode(challenge.field("salt")).value_or(orvane::Bytes{});
    answerWithSecret(challenge, orvane::SuiteMeshBootstrapSession::deriveSecret(code, salt, "io.veltra.qln"), name);
}

void VantalinkTestPeer::answerWithSecret(const SermonStudioMessage& challenge, const orvane::Bytes& secret,
                                         const std::string& name) {
    auto nonce = orvane::base64Decode(challenge.field("nonce")).value_or(orvane::Bytes{});
    auto answer = orvane::SuiteHandshake::answer(secret, nonce, name, orvane::SuiteCapability::grantedAtPairing());
    send(SermonStudioMessageType::pairResponse,
         {{"nonce", challenge.field("nonce")}, {"answer", orvane::base64Encode(answer)}});
}

} // namespace quillon::testing
