#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillon::testing {

/// A stand-in for OpenLP's remote API (version 2) on 127.0.0.1: its Bible list and choice, the
/// search, going live, the display, and the login with a token in the "Authorization" header.
/// Each connection is served on its own thread, so a slow reply holds up only its own client.
class StubOpenLp {
public:
    /// What the stub does with one request instead of answering it properly.
    enum class Fault { none, status500, html, reset, slow };

    struct Request {
        std::string method;
        std::string target;
        std::string authorization;
        std::string body;
    };

    StubOpenLp();
    ~StubOpenLp();
    StubOpenLp(const StubOpenLp&) = delete;
    StubOpenLp& operator=(const StubOpenLp&) = delete;

    std::uint16_t port() const { return m_port; }
    std::string address() const { return "127.0.0.1:" + std::to_string(m_port); }

    void setBibles(std::vector<std::string> bibles, std::string selected);
    /// Login on: every request but the Bible list and the login needs the current token.
    void requireLogin(std::string user, std::string password);
    /// A new token, as after OpenLP restarts: the old one gets 401.
    void changeToken();
    /// The next `count` requests meet `fault` (a slow reply comes after `delay`).
    void fail(Fault fault, int count = 1, std::chrono::milliseconds delay = std::chrono::milliseconds(600));
    /// References the search finds nothing for.
    void setMissing(std::string reference);

    std::vector<Request> requests() const;
    /// The ids sent live, each with the Bible selected then ("King James Version|John 3:16").
    std::vector<std::string> lives() const;
    std::vector<std::string> displays() const;
    std::string selected() const;
    int logins() const;

private:
    void acceptNext();
    void serve(boost::asio::ip::tcp::socket socket);
    std::pair<int, std::string> answer(const Request& request);

    boost::asio::io_context m_io;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::uint16_t m_port = 0;
    std::thread m_thread;
    std::vector<std::thread> m_connections;

    mutable std::mutex m_mutex;
    std::vector<std::string> m_bibles = {"King James Version"};
    std::string m_selected = "King James Version";
    std::string m_user;
    std::string m_password;
    std::string m_token = "token-1";
    int m_tokenNumber = 1;
    std::deque<std::pair<Fault, std::chrono::milliseconds>> m_faults;
    std::string m_missing;
    std::vector<Request> m_requests;
    std::vector<std::string> m_lives;
    std::vector<std::string> m_displays;
    int m_logins = 0;
};

} // namespace quillon::testing
