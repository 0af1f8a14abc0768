#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/streambuf.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace quillon::testing {

/// One HTTP/1.1 exchange with a server on 127.0.0.1.
struct HttpReply {
    int status = 0;
    std::string headers;
    std::string body;
};

/// Sends `method target` and reads the whole reply; nothing (status 0) when the server closed
/// without answering or took longer than five seconds.
HttpReply httpRequest(std::uint16_t port, const std::string& method, const std::string& target);
/// Sends raw bytes and reads until the server closes; empty when it answered nothing.
std::string rawExchange(std::uint16_t port, const std::string& bytes);

/// An open event stream, read an event at a time.
class EventStreamClient {
public:
    EventStreamClient(std::uint16_t port, const std::string& target);

    /// The status line's code (0 when nothing came).
    int status() const { return m_status; }
    /// The next "data:" line of an event named "passage", skipping comments; nothing after a
    /// timeout or a closed stream.
    std::optional<std::string> nextPassage(std::chrono::milliseconds timeout = std::chrono::seconds(5));
    /// True once the server has closed the stream (reads until then, up to the timeout).
    bool closedByServer(std::chrono::milliseconds timeout = std::chrono::seconds(5));

private:
    std::optional<std::string> readLine(std::chrono::milliseconds timeout);

    boost::asio::io_context m_io;
    boost::asio::ip::tcp::socket m_socket;
    boost::asio::streambuf m_buffer;
    int m_status = 0;
};

} // namespace quillon::testing
