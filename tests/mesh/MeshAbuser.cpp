#include "MeshAbuser.h"

#include "mesh/SermonStudioMessage.h"
#include "orvane/SuiteCapability.h"
#include "orvane/SuiteHandshake.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <map>
#include <optional>

namespace quillon::testing {

using mesh::SermonStudioMessage;
using Type = mesh::SermonStudioMessageType;
using namespace std::chrono_literals;

namespace {

std::string frameOf(Type type, std::map<std::string, std::string> payload = {}) {
    return SermonStudioMessage{type, std::move(payload), std::chrono::system_clock::now()}.frame();
}

/// False when the desk has closed the connection (or the write failed otherwise).
bool sendAll(int fd, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        auto written = ::send(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (written <= 0)
            return false;
        sent += static_cast<std::size_t>(written);
    }
    return true;
}

bool receiveExactly(int fd, char* into, std::size_t length) {
    std::size_t done = 0;
    while (done < length) {
        auto got = ::recv(fd, into + done, length - done, 0);
        if (got <= 0)
            return false;
        done += static_cast<std::size_t>(got);
    }
    return true;
}

/// The next message of `type`, within the socket's receive timeout.
std::optional<SermonStudioMessage> receive(int fd, Type type) {
    for (;;) {
        unsigned char header[4];
        if (!receiveExactly(fd, reinterpret_cast<char*>(header), 4))
            return std::nullopt;
        auto length = mesh::acceptedFrameLength(header);
        if (!length)
            return std::nullopt;
        std::string body(*length, '\0');
        if (!receiveExactly(fd, body.data(), body.size()))
            return std::nullopt;
        auto message = SermonStudioMessage::decode(body);
        if (message && message->type == type)
            return message;
    }
}

void setReceiveTimeout(int fd, std::chrono::milliseconds timeout) {
    timeval value{static_cast<time_t>(timeout.count() / 1000), static_cast<suseconds_t>(timeout.count() % 1000 * 1000)};
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &value, sizeof value);
}

/// True while the peer has not closed; reads and discards whatever is waiting.
bool stillOpen(int fd) {
    char discard[4096];
    for (;;) {
        auto got = ::recv(fd, discard, sizeof discard, MSG_DONTWAIT);
        if (got > 0)
            continue;
        return got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
    }
}

unsigned int anyIdentity(SSL*, const char*, char* identity, unsigned int maxIdentity, unsigned char* psk,
                         unsigned int maxPsk) {
    const char name[] = "vantalink-unpaired|Halfway";
    if (sizeof name > maxIdentity || maxPsk < 32)
        return 0;
    std::copy(std::begin(name), std::end(name), identity);
    std::fill(psk, psk + 32, 0);
    return 32;
}

/// The first flight of a TLS 1.2 PSK client: what a peer sends before it stops halfway.
std::string clientHello() {
    SSL_CTX* context = SSL_CTX_new(TLS_client_method());
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_max_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_cipher_list(context, "PSK-AES128-GCM-SHA256");
    SSL_CTX_set_psk_client_callback(context, anyIdentity);
    SSL* ssl = SSL_new(context);
    BIO* in = BIO_new(BIO_s_mem());
    BIO* out = BIO_new(BIO_s_mem());
    SSL_set_bio(ssl, in, out);
    SSL_set_connect_state(ssl);
    SSL_do_handshake(ssl);
    std::string hello(static_cast<std::size_t>(BIO_ctrl_pending(out)), '\0');
    BIO_read(out, hello.data(), static_cast<int>(hello.size()));
    SSL_free(ssl);
    SSL_CTX_free(context);
    return hello;
}

} // namespace

int MeshAbuser::connectFrom(const char* from, std::uint16_t port) {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return -1;
    sockaddr_in local{};
    local.sin_family = AF_INET;
    ::inet_pton(AF_INET, from, &local.sin_addr);
    sockaddr_in remote{};
    remote.sin_family = AF_INET;
    remote.sin_port = htons(port);
    remote.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0 ||
        ::connect(fd, reinterpret_cast<sockaddr*>(&remote), sizeof remote) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

void MeshAbuser::start() {
    m_stopping = false;
    for (auto member : {&MeshAbuser::holdMany, &MeshAbuser::dribble, &MeshAbuser::neverRead, &MeshAbuser::badFrames,
                        &MeshAbuser::flood, &MeshAbuser::pairingAnswers, &MeshAbuser::halfHandshakes})
        m_threads.emplace_back([this, member] { (this->*member)(); });
}

void MeshAbuser::stop() {
    m_stopping = true;
    for (auto& thread : m_threads)
        thread.join();
    m_threads.clear();
}

bool MeshAbuser::pause(std::chrono::milliseconds duration) {
    auto until = std::chrono::steady_clock::now() + duration;
    while (!m_stopping && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(duration, 20ms));
    return !m_stopping;
}

void MeshAbuser::holdMany() {
    std::vector<int> held;
    for (int i = 0; i < 500 && !m_stopping; ++i) {
        int fd = connectFrom("127.0.0.66", m_target.plainPort);
        if (fd >= 0) {
            held.push_back(fd);
            ++m_opened;
        }
    }
    while (pause(100ms)) {
        std::uint64_t open = 0;
        for (int& fd : held) {
            if (fd >= 0 && !stillOpen(fd)) {
                ::close(fd);
                fd = -1;
            }
            open += fd >= 0 ? 1 : 0;
        }
        m_heldOpen = open;
    }
    for (int fd : held)
        if (fd >= 0)
            ::close(fd);
}

void MeshAbuser::dribble() {
    const std::string hello = frameOf(Type::hello, {{"name", "Dribbler"}});
    struct Slow {
        int fd = -1;
        std::size_t sent = 0;
    };
    std::vector<Slow> slow(8);
    do {
        for (auto& peer : slow) {
            if (peer.fd < 0 || peer.sent == hello.size()) {
                if (peer.fd >= 0)
                    ::close(peer.fd);
                peer = {connectFrom("127.0.0.67", m_target.plainPort), 0};
                if (peer.fd >= 0)
                    ++m_opened;
            }
            if (peer.fd < 0)
                continue;
            if (!stillOpen(peer.fd) || !sendAll(peer.fd, hello.substr(peer.sent++, 1))) {
                ::close(peer.fd);
                peer.fd = -1;
            }
        }
    } while (pause(1s));
    for (auto& peer : slow)
        if (peer.fd >= 0)
            ::close(peer.fd);
}

void MeshAbuser::neverRead() {
    const std::string asking = frameOf(Type::hello, {{"name", "Deaf"}}) +
                               frameOf(Type::toolRequest, {{"tool", "liveScripture"}, {"requestId", "x"}}) +
                               frameOf(Type::requestScripture);
    std::vector<int> deaf(8, -1);
    do {
        for (int& fd : deaf) {
            if (fd < 0) {
                fd = connectFrom("127.0.0.68", m_target.plainPort);
                if (fd >= 0)
                    ++m_opened;
            }
            if (fd >= 0 && !sendAll(fd, asking)) {
                ::close(fd);
                fd = -1;
            }
        }
    } while (pause(100ms));
    for (int fd : deaf)
        if (fd >= 0)
            ::close(fd);
}

void MeshAbuser::badFrames() {
    auto body = [](const std::string& text) {
        return mesh::frameHeader(static_cast<std::uint32_t>(text.size())) + text;
    };
    const std::vector<std::string> frames = {
        mesh::frameHeader(0),
        mesh::frameHeader(10'000'001),
        body("\xff\xfe{\"type\":\"hello\"}"),
        body("{\"type\": nope"),
        body("{\"type\":\"hello\",\"payload\":{\"name\":\"\xc3\x28\"},\"timestamp\":0}"),
        body("[1,2,3]"),
    };
    std::size_t next = 0;
    do {
        int fd = connectFrom("127.0.0.69", m_target.plainPort);
        if (fd < 0)
            continue;
        ++m_opened;
        sendAll(fd, frames[next++ % frames.size()]);
        pause(10ms);
        ::close(fd);
    } while (pause(10ms));
}

void MeshAbuser::flood() {
    std::string batch;
    for (int i = 0; i < 100; ++i)
        batch += frameOf(i % 2 ? Type::heartbeat : Type::scriptureFaded, {{"status", "faded"}});
    int fd = -1;
    auto next = std::chrono::steady_clock::now();
    while (!m_stopping) {
        if (fd < 0) {
            fd = connectFrom("127.0.0.70", m_target.plainPort);
            if (fd < 0 || !sendAll(fd, frameOf(Type::hello, {{"name", "Flooder"}}))) {
                pause(50ms);
                continue;
            }
            ++m_opened;
        }
        // 100 messages every 10 ms: 10,000 a second.
        if (!stillOpen(fd) || !sendAll(fd, batch)) {
            ::close(fd);
            fd = -1;
            continue;
        }
        m_flooded += 100;
        next += 10ms;
        std::this_thread::sleep_until(next);
    }
    if (fd >= 0)
        ::close(fd);
}

void MeshAbuser::pairingAnswers() {
    std::optional<SermonStudioMessage> earlier;
    int round = 0;
    do {
        int fd = connectFrom("127.0.0.71", m_target.plainPort);
        if (fd < 0)
            continue;
        ++m_opened;
        setReceiveTimeout(fd, 2s);
        sendAll(fd, frameOf(Type::hello, {{"name", m_target.pairedName}}));
        auto challenge = receive(fd, Type::pairChallenge);
        if (challenge) {
            auto respond = [&](const SermonStudioMessage& to) {
                auto nonce = orvane::base64Decode(to.field("nonce")).value_or(orvane::Bytes{});
                auto answer = orvane::SuiteHandshake::answer(orvane::randomBytes(32), nonce, m_target.pairedName,
                                                             orvane::SuiteCapability::grantedAtPairing());
                sendAll(fd, frameOf(Type::pairResponse,
                                    {{"nonce", to.field("nonce")}, {"answer", orvane::base64Encode(answer)}}));
            };
            switch (round++ % 3) {
            case 0: // a guessed secret
                respond(*challenge);
                break;
            case 1: // an answer to someone else's challenge
                respond(earlier.value_or(*challenge));
                break;
            default: // too late: the desk has given up on this connection by now
                pause(m_target.lateBy);
                respond(*challenge);
                break;
            }
            earlier = challenge;
            receive(fd, Type::pairAccepted); // never comes; returns when the desk closes or time runs out
        }
        ::close(fd);
    } while (pause(20ms));
}

void MeshAbuser::halfHandshakes() {
    const std::string hello = clientHello();
    std::vector<int> stalled(8, -1);
    do {
        for (int& fd : stalled) {
            if (fd >= 0 && stillOpen(fd))
                continue;
            if (fd >= 0)
                ::close(fd);
            fd = connectFrom("127.0.0.72", m_target.securePort);
            if (fd < 0)
                continue;
            ++m_opened;
            sendAll(fd, hello); // and never another byte
        }
    } while (pause(50ms));
    for (int fd : stalled)
        if (fd >= 0)
            ::close(fd);
}

} // namespace quillon::testing
