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
/// ceiling; "linked" resets the wait. Runs entirely on the bridge's thread.
class CalvaneLink : public std::enable_shared_from_this<CalvaneLink> {
public:
    struct Callbacks {
        std::function<void()> linked;
        std::function<void(const std::optional<std::string>& reason)> rejected;
        std::function<void(const std::string& reason)> lost;
        /// "scripture" and "clear" frames pushed by Calvane.
        std::function<void(const nlohmann::json& frame)> pushed;
    };

    CalvaneLink(boost::asio::io_context& io, std::function<nlohmann::json()> hello, Callbacks callbacks,
                std::chrono::milliseconds firstRetry, std::chrono::milliseconds retryCeiling);

    /// Where Calvane listens; a new address replaces the old one and connects at once.
    void connectTo(std::string host, std::uint16_t port);
    /// Sends a frame when the link is open; frames for a closed link are dropped (the next
    /// "linked" starts fresh and the desk announces again).
    void send(const nlohmann::json& frame);
    void stop();

    bool isOpen() const { return m_open; }
    std::chrono::milliseconds nextRetryDelay() const { return m_retryDelay; }

private:
    void connect();
    void fail(const std::string& reason);
    void scheduleRetry();
    void readNext();
    void writeNext();
    void handle(const std::string& text);

    using Socket = boost::beast::websocket::stream<boost::asio::ip::tcp::socket>;

    boost::asio::io_context& m_io;
    std::function<nlohmann::json()> m_hello;
    Callbacks m_callbacks;
    std::chrono::milliseconds m_firstRetry;
    std::chrono::milliseconds m_retryCeiling;
    std::chrono::milliseconds m_retryDelay;
    boost::asio::ip::tcp::resolver m_resolver;
    boost::asio::steady_timer m_retryTimer;
    std::unique_ptr<Socket> m_socket;
    boost::beast::flat_buffer m_buffer;
    std::deque<std::string> m_outgoing;
    std::string m_host;
    std::uint16_t m_port = 0;
    /// Bumped on every new attempt so handlers of an abandoned socket do nothing.
    std::uint64_t m_generation = 0;
    bool m_open = false;
    bool m_stopped = false;
};

} // namespace quillon::mesh
