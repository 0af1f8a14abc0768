#include "LoopbackHttp.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <istream>

namespace quillon::testing {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

tcp::endpoint loopback(std::uint16_t port) {
    return {asio::ip::make_address("127.0.0.1"), port};
}

} // namespace

std::string rawExchange(std::uint16_t port, const std::string& bytes) {
    asio::io_context io;
    tcp::socket socket(io);
    boost::system::error_code error;
    socket.connect(loopback(port), error);
    if (error)
        return {};
    asio::write(socket, asio::buffer(bytes), error);
    std::string received;
    std::array<char, 4096> chunk{};
    bool done = false;
    std::function<void()> readMore = [&] {
        socket.async_read_some(asio::buffer(chunk), [&](boost::system::error_code readError, std::size_t size) {
            received.append(chunk.data(), size);
            if (readError)
                done = true;
            else
                readMore();
        });
    };
    readMore();
    io.run_for(std::chrono::seconds(5));
    return done ? received : std::string();
}

HttpReply httpRequest(std::uint16_t port, const std::string& method, const std::string& target) {
    std::string raw =
        rawExchange(port, method + " " + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
    HttpReply reply;
    auto headerEnd = raw.find("\r\n\r\n");
    if (raw.size() < 12 || headerEnd == std::string::npos)
        return reply;
    reply.status = std::stoi(raw.substr(9, 3));
    reply.headers = raw.substr(0, headerEnd);
    reply.body = raw.substr(headerEnd + 4);
    return reply;
}

EventStreamClient::EventStreamClient(std::uint16_t port, const std::string& target) : m_socket(m_io) {
    boost::system::error_code error;
    m_socket.connect(loopback(port), error);
    if (error)
        return;
    std::string request = "GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\nAccept: text/event-stream\r\n\r\n";
    asio::write(m_socket, asio::buffer(request), error);
    auto statusLine = readLine(std::chrono::seconds(5));
    if (statusLine && statusLine->size() >= 12)
        m_status = std::stoi(statusLine->substr(9, 3));
    while (auto header = readLine(std::chrono::seconds(5)))
        if (header->empty())
            break;
}

std::optional<std::string> EventStreamClient::readLine(std::chrono::milliseconds timeout) {
    std::optional<std::string> line;
    asio::async_read_until(m_socket, m_buffer, '\n', [&](boost::system::error_code error, std::size_t) {
        if (error)
            return;
        std::istream stream(&m_buffer);
        std::string text;
        std::getline(stream, text);
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        line = text;
    });
    m_io.restart();
    m_io.run_for(timeout);
    if (!line) {
        // A timed-out read must not complete later into a dead stack frame.
        boost::system::error_code ignored;
        m_socket.cancel(ignored);
        m_io.restart();
        m_io.run();
    }
    return line;
}

std::optional<std::string> EventStreamClient::nextPassage(std::chrono::milliseconds timeout) {
    bool named = false;
    while (auto line = readLine(timeout)) {
        if (*line == "event: passage")
            named = true;
        else if (named && line->rfind("data: ", 0) == 0)
            return line->substr(6);
        else if (line->empty())
            named = false;
    }
    return std::nullopt;
}

bool EventStreamClient::closedByServer(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        std::array<char, 1024> chunk{};
        bool closed = false;
        bool readSomething = false;
        m_socket.async_read_some(asio::buffer(chunk), [&](boost::system::error_code error, std::size_t) {
            closed = static_cast<bool>(error);
            readSomething = !error;
        });
        m_io.restart();
        m_io.run_for(deadline - std::chrono::steady_clock::now());
        if (closed)
            return true;
        if (!readSomething) {
            boost::system::error_code ignored;
            m_socket.cancel(ignored);
            m_io.restart();
            m_io.run();
            return false;
        }
    }
    return false;
}

} // namespace quillon::testing
