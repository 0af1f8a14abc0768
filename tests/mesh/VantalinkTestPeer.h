#pragma once

#include "mesh/SermonStudioMessage.h"
#include "orvane/SuiteCrypto.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

struct ssl_st;
struct ssl_ctx_st;

namespace quillon::testing {

/// A simulated Brenmoor for tests: a blocking loopback client that speaks Vantalink framing, plain or
/// over TLS with a pre-shared key. Every read has a deadline so a broken bridge fails a test, not hangs it.
class VantalinkTestPeer {
public:
    ~VantalinkTestPeer();

    /// `from` is the loopback address the connection comes from.
    static std::unique_ptr<VantalinkTestPeer> connectPlain(std::uint16_t port, const char* from = "127.0.0.1");
    /// Nothing when the TLS handshake fails.
    static std::unique_ptr<VantalinkTestPeer> connectSecure(std::uint16_t port, const std::string& identity,
                                                            const orvane::Bytes& key);

    void sendRaw(const std::string& bytes);
    void send(mesh::SermonStudioMessageType type, std::map<std::string, std::string> payload = {});
    void hello(const std::string& name) { send(mesh::SermonStudioMessageType::hello, {{"name", name}}); }

    /// The next message of `type`, skipping others; nothing on timeout or close.
    std::optional<mesh::SermonStudioMessage> waitFor(mesh::SermonStudioMessageType type,
                                                     std::chrono::milliseconds timeout = std::chrono::seconds{5});
    /// The next message other than a heartbeat or hello; nothing on timeout or close.
    std::optional<mesh::SermonStudioMessage> next(std::chrono::milliseconds timeout = std::chrono::seconds{5});
    /// True when the desk closes the connection within the timeout (messages before are skipped).
    bool waitForClose(std::chrono::milliseconds timeout = std::chrono::seconds{5});

    /// Answers a bootstrap challenge with `code` as the peer would: HKDF of code and salt, HMAC.
    void answerBootstrap(const mesh::SermonStudioMessage& challenge, const std::string& code, const std::string& name);
    /// Answers a challenge with a stored secret.
    void answerWithSecret(const mesh::SermonStudioMessage& challenge, const orvane::Bytes& secret,
                          const std::string& name);

private:
    VantalinkTestPeer() = default;
    enum class ReadResult { done, timeout, closed };
    ReadResult readExactly(char* into, std::size_t length, std::chrono::steady_clock::time_point deadline);
    std::optional<mesh::SermonStudioMessage> readMessage(std::chrono::steady_clock::time_point deadline, bool* closed);

    int m_fd = -1;
    ssl_ctx_st* m_context = nullptr;
    ssl_st* m_ssl = nullptr;
};

} // namespace quillon::testing
