#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/status.hpp>

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace quillon::screens {

class LivePageServer;

/// One browser connection to the live page: plain requests answered one after another, or, once
/// it asks for "/events", an open event stream. Runs only on the server's thread.
class LivePageConnection : public std::enable_shared_from_this<LivePageConnection> {
public:
    LivePageConnection(LivePageServer& server, boost::asio::ip::tcp::socket socket, std::uint64_t identifier,
                       std::shared_ptr<std::atomic<std::size_t>> openCount);
    ~LivePageConnection();
    LivePageConnection(const LivePageConnection&) = delete;
    LivePageConnection& operator=(const LivePageConnection&) = delete;

    void start();
    /// Answers 503 and closes: the server already has as many connections as it keeps.
    void refuse();
    /// Queues an event for a stream; a reader this far behind is closed instead.
    void push(std::shared_ptr<const std::string> event);
    void close();
    std::uint64_t identifier() const { return m_identifier; }

    /// Queued events a stream may have before it counts as stuck.
    static constexpr std::size_t maximumQueued = 64;

private:
    void readRequest();
    void route();
    void respond(boost::beast::http::status status, std::string contentType, std::string body, bool keepAlive);
    void openStream();
    void watchForHangUp();
    void writeNext();

    LivePageServer& m_server;
    boost::beast::tcp_stream m_stream;
    std::uint64_t m_identifier;
    std::shared_ptr<std::atomic<std::size_t>> m_openCount;
    boost::beast::flat_buffer m_buffer;
    std::optional<boost::beast::http::request_parser<boost::beast::http::empty_body>> m_parser;
    std::deque<std::shared_ptr<const std::string>> m_outgoing;
    std::array<char, 512> m_discard{};
    bool m_writing = false;
    bool m_closed = false;
};

} // namespace quillon::screens
