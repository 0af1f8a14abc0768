#include "StubOpenLp.h"

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace quillon::testing {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using nlohmann::json;

namespace {

std::string decoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i] == '+' ? ' ' : text[i];
        }
    }
    return result;
}

} // namespace

StubOpenLp::StubOpenLp() : m_acceptor(m_io, tcp::endpoint(asio::ip::make_address("127.0.0.1"), 0)) {
    m_port = m_acceptor.local_endpoint().port();
    acceptNext();
    m_thread = std::thread([this] { m_io.run(); });
}

StubOpenLp::~StubOpenLp() {
    m_io.stop();
    m_thread.join();
    for (auto& connection : m_connections)
        connection.join();
}

void StubOpenLp::acceptNext() {
    m_acceptor.async_accept([this](boost::system::error_code error, tcp::socket socket) {
        if (error)
            return;
        m_connections.emplace_back([this, socket = std::move(socket)]() mutable { serve(std::move(socket)); });
        acceptNext();
    });
}

void StubOpenLp::serve(tcp::socket socket) {
    boost::beast::flat_buffer buffer;
    http::request<http::string_body> incoming;
    boost::system::error_code error;
    http::read(socket, buffer, incoming, error);
    if (error)
        return;
    Request request{std::string(incoming.method_string()), std::string(incoming.target()),
                    std::string(incoming[http::field::authorization]), incoming.body()};
    Fault fault = Fault::none;
    std::chrono::milliseconds delay{0};
    {
        std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
        if (!m_faults.empty()) {
            std::tie(fault, delay) = m_faults.front();
            m_faults.pop_front();
        }
    }
    if (fault == Fault::reset) {
        socket.set_option(asio::socket_base::linger(true, 0), error);
        socket.close(error);
        return;
    }
    if (fault == Fault::slow)
        std::this_thread::sleep_for(delay);
    auto [status, body] = fault == Fault::status500 ? std::pair<int, std::string>{500, "Internal Server Error"}
                          : fault == Fault::html ? std::pair<int, std::string>{200, "<html><body>OpenLP</body></html>"}
                                                 : answer(request);
    http::response<http::string_body> reply{static_cast<http::status>(status), 11};
    reply.set(http::field::content_type, fault == Fault::html ? "text/html" : "application/json");
    reply.body() = body;
    reply.prepare_payload();
    http::write(socket, reply, error);
    socket.shutdown(tcp::socket::shutdown_both, error);
}

std::pair<int, std::string> StubOpenLp::answer(const Request& request) {
    std::lock_guard lock(m_mutex);
    const std::string path = request.target.substr(0, request.target.find('?'));
    const json body = json::parse(request.body, nullptr, false);
    if (path == "/api/v2/core/login" && request.method == "POST") {
        if (!body.is_object() || body.value("username", "") != m_user || body.value("password", "") != m_password)
            return {401, ""};
        ++m_logins;
        return {200, json{{"token", m_token}}.dump()};
    }
    if (path == "/api/v2/plugins/bibles/search-options" && request.method == "GET")
        return {200, json::array({{{"name", "primary bible"}, {"list", m_bibles}, {"selected", m_selected}}}).dump()};
    if (!m_user.empty() && request.authorization != m_token)
        return {401, ""};
    if (path == "/api/v2/plugins/bibles/search-options" && request.method == "POST") {
        const std::string value = body.is_object() ? body.value("value", "") : "";
        if (std::find(m_bibles.begin(), m_bibles.end(), value) == m_bibles.end())
            return {400, ""};
        m_selected = value;
        return {204, ""};
    }
    if (path == "/api/v2/plugins/bibles/search" && request.method == "GET") {
        const std::string text = decoded(request.target.substr(request.target.find("text=") + 5));
        if (text == m_missing)
            return {200, "[]"};
        return {200, json::array({json::array({text, "the verse text"})}).dump()};
    }
    if (path == "/api/v2/plugins/bibles/live" && request.method == "POST") {
        if (!body.is_object() || !body.contains("id"))
            return {400, ""};
        m_lives.push_back(m_selected + "|" + body["id"].get<std::string>());
        return {204, ""};
    }
    if (path == "/api/v2/core/display" && request.method == "POST") {
        m_displays.push_back(body.is_object() ? body.value("display", "") : "");
        return {204, ""};
    }
    return {404, ""};
}

void StubOpenLp::setBibles(std::vector<std::string> bibles, std::string selected) {
    std::lock_guard lock(m_mutex);
    m_bibles = std::move(bibles);
    m_selected = std::move(selected);
}

void StubOpenLp::requireLogin(std::string user, std::string password) {
    std::lock_guard lock(m_mutex);
    m_user = std::move(user);
    m_password = std::move(password);
}

void StubOpenLp::changeToken() {
    std::lock_guard lock(m_mutex);
    m_token = "token-" + std::to_string(++m_tokenNumber);
}

void StubOpenLp::fail(Fault fault, int count, std::chrono::milliseconds delay) {
    std::lock_guard lock(m_mutex);
    for (int i = 0; i < count; ++i)
        m_faults.emplace_back(fault, delay);
}

void StubOpenLp::setMissing(std::string reference) {
    std::lock_guard lock(m_mutex);
    m_missing = std::move(reference);
}

std::vector<StubOpenLp::Request> StubOpenLp::requests() const {
    std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<std::string> StubOpenLp::lives() const {
    std::lock_guard lock(m_mutex);
    return m_lives;
}

std::vector<std::string> StubOpenLp::displays() const {
    std::lock_guard lock(m_mutex);
    return m_displays;
}

std::string StubOpenLp::selected() const {
    std::lock_guard lock(m_mutex);
    return m_selected;
}

int StubOpenLp::logins() const {
    std::lock_guard lock(m_mutex);
    return m_logins;
}

} // namespace quillon::testing
