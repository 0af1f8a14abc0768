#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <nlohmann/json.hpp>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillon::mesh {

/// The WebSocket link to Calvane's bridge: text frames of one JSON object each, "kind" deciding.
/// Reconnects after a failure or a lost link, waiting the first delay and doubling it up to the
/// ceiling; "linked" resets the wait. A link that has not said "linked" within the handshake
/// timeout, or stays silent (pings unanswered) for the idle timeout, is dropped and retried.
/// Runs entirely on the bridge's thread.
class CalvaneLink : public std::enable_shared_from_this<CalvaneLink> {
public:
    struct Callbacks {
        std::function<void()> linked;
        std::function<void(const std::optional<std::string>& reason)> rejected;
        std::function<void(const std::string& reason)> lost;
        /// "scripture" and "clear" frames pushed by Calvane.
        std::function<void(const nlohmann::json& frame)> pushed;
    };

    struct Timing {
        std::chrono::milliseconds firstRetry{1'000};
        std::chrono::milliseconds retryCeiling{60'000};
        /// From the start of a connection attempt to Calvane's "linked".
        std::chrono::milliseconds handshakeTimeout{10'000};
        /// Silence after which a linked link is considered gone; pings go out at half of it.
        std::chrono::milliseconds idleTimeout{45'000};
    };

    CalvaneLink(boost::asio::io_context& io, std::function<nlohmann::json()> hello, Callbacks callbacks, Timing timing);

    /// Where Calvane listens; a new address replaces the old one and connects at once.
    void connectTo(std::string host, std::uint16_t port);
    /// Sends a frame once Calvane has said "linked"; frames before that, or for a closed link, are
    /// dropped (the "linked" callback is where the desk announces what is live). A Calvane that lets
    /// more than the peers' queue limit pile up is dropped and retried.
    void send(const nlohmann::json& frame);
    void stop();

    bool isOpen() const { return m_open; }
    bool isLinked() const { return m_linked; }
    std::chrono::milliseconds nextRetryDelay() const { return m_retryDelay; }

private:
    void connect();
    void fail(const std::string& reason);
    void scheduleRetry();
    void readNext();
    void write(std::string text);
    void writeNext();
    void armDeadline();
    void closeSocket();
    void handle(const std::string& text);

    using Socket = boost::beast::websocket::stream<boost::asio::ip::tcp::socket>;

    boost::asio::io_context& m_io;
    std::function<nlohmann::json()> m_hello;
    Callbacks m_callbacks;
    Timing m_timing;
    std::chrono::milliseconds m_retryDelay;
    boost::asio::ip::tcp::resolver m_resolver;
    boost::asio::steady_timer m_retryTimer;
    boost::asio::steady_timer m_deadline;
    std::unique_ptr<Socket> m_socket;
    boost::beast::flat_buffer m_buffer;
    std::deque<std::string> m_outgoing;
    std::size_t m_outgoingBytes = 0;
    std::string m_host;
    std::uint16_t m_port = 0;
    /// Bumped on every new attempt so handlers of an abandoned socket do nothing.
    std::uint64_t m_generation = 0;
    bool m_open = false;
    bool m_linked = false;
    bool m_stopped = false;
};

} // namespace quillon::mesh
