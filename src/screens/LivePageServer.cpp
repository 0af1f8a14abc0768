#include "screens/LivePageServer.h"

#include "screens/LivePageConnection.h"
#include "screens/LivePageHtml.h"
#include "screens/LivePageTheme.h"

#include <boost/asio/ip/address.hpp>
#include <boost/asio/post.hpp>
#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

namespace quillon::screens {

namespace asio = boost::asio;
using asio::ip::tcp;

LivePageServer::LivePageServer(LivePageOptions options)
    : m_options(std::move(options)), m_acceptor(m_io), m_keepAliveTimer(m_io) {}

LivePageServer::~LivePageServer() {
    stop();
}

bool LivePageServer::start() {
    if (m_started)
        return true;
    const std::string host = m_options.address == "localhost" ? "127.0.0.1" : m_options.address;
    boost::system::error_code error;
    auto address = asio::ip::make_address(host, error);
    if (!error) {
        tcp::endpoint endpoint(address, m_options.port);
        m_acceptor.open(endpoint.protocol(), error);
        if (!error)
            m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
        if (!error)
            m_acceptor.bind(endpoint, error);
        if (!error)
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
    }
    if (error) {
        m_failure =
            "could not listen on " + m_options.address + ":" + std::to_string(m_options.port) + ": " + error.message();
        spdlog::error("The live page {}", m_failure);
        m_acceptor.close(error);
        return false;
    }
    m_port = m_acceptor.local_endpoint().port();
    m_started = true;
    m_work.emplace(m_io.get_executor());
    acceptNext();
    scheduleKeepAlive();
    m_thread = std::thread([this] { m_io.run(); });
    spdlog::info("The live page is served at {}", url());
    return true;
}

void LivePageServer::stop() {
    if (!m_started)
        return;
    m_started = false;
    // Closing everything on the server's thread lets run() end once the aborted handlers have
    // released their connections, so none outlives the server.
    asio::post(m_io, [this] {
        m_stopping = true;
        boost::system::error_code ignored;
        m_acceptor.close(ignored);
        m_keepAliveTimer.cancel();
        auto open = m_open;
        for (auto& [identifier, weak] : open)
            if (auto connection = weak.lock())
                connection->close();
    });
    m_work.reset();
    if (m_thread.joinable())
        m_thread.join();
}

void LivePageServer::acceptNext() {
    m_acceptor.async_accept([this](boost::system::error_code error, tcp::socket socket) {
        if (m_stopping || !m_acceptor.is_open())
            return;
        if (error) {
            spdlog::debug("The live page could not accept a connection: {}", error.message());
            return acceptNext();
        }
        auto connection =
            std::make_shared<LivePageConnection>(*this, std::move(socket), m_nextIdentifier++, m_connectionCount);
        if (m_open.size() >= m_options.maximumConnections) {
            connection->refuse();
        } else {
            m_open[connection->identifier()] = connection;
            connection->start();
        }
        acceptNext();
    });
}

void LivePageServer::show(const mesh::LiveScripture& scripture) {
    publish(scripture);
}

void LivePageServer::clear() {
    publish(std::nullopt);
}

void LivePageServer::publish(std::optional<mesh::LiveScripture> live) {
    auto event = std::make_shared<const std::string>(passageEvent(live));
    {
        std::lock_guard lock(m_liveMutex);
        m_live = std::move(live);
    }
    if (!m_started)
        return;
    asio::post(m_io, [this, event] {
        auto streams = m_streams;
        for (auto& [identifier, weak] : streams)
            if (auto connection = weak.lock())
                connection->push(event);
    });
}

void LivePageServer::scheduleKeepAlive() {
    m_keepAliveTimer.expires_after(m_keepAliveInterval);
    m_keepAliveTimer.async_wait([this](boost::system::error_code error) {
        if (error || m_stopping)
            return;
        auto comment = std::make_shared<const std::string>(": keep-alive\n\n");
        auto streams = m_streams;
        for (auto& [identifier, weak] : streams)
            if (auto connection = weak.lock())
                connection->push(comment);
        scheduleKeepAlive();
    });
}

bool LivePageServer::tokenAccepted(std::string_view target) const {
    if (m_options.token.empty())
        return true;
    auto query = target.find('?');
    if (query == std::string_view::npos)
        return false;
    std::string_view rest = target.substr(query + 1);
    while (!rest.empty()) {
        auto end = rest.find('&');
        std::string_view pair = rest.substr(0, end);
        if (pair.substr(0, 6) == "token=") {
            std::string_view given = pair.substr(6);
            // Compared without an early exit so the time taken tells nothing about the token.
            if (given.size() != m_options.token.size())
                return false;
            unsigned char difference = 0;
            for (std::size_t i = 0; i < given.size(); ++i)
                difference |= static_cast<unsigned char>(given[i] ^ m_options.token[i]);
            return difference == 0;
        }
        if (end == std::string_view::npos)
            break;
        rest = rest.substr(end + 1);
    }
    return false;
}

std::string LivePageServer::page(std::string_view path) const {
    if (path == "/live.json") {
        auto current = live();
        nlohmann::json json = nlohmann::json::object();
        if (current)
            json = {{"reference", current->reference}, {"version", current->version}, {"text", current->text}};
        return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    if (path != "/" && path != "/lower-third" && path != "/confidence")
        return {};
    const auto theme = m_options.themeFile.empty() ? LivePageTheme{} : LivePageTheme::load(m_options.themeFile);
    return renderLivePage(theme, path == "/confidence" ? LivePageLayout::confidence : LivePageLayout::lowerThird,
                          live());
}

std::optional<mesh::LiveScripture> LivePageServer::live() const {
    std::lock_guard lock(m_liveMutex);
    return m_live;
}

void LivePageServer::subscribe(const std::shared_ptr<LivePageConnection>& connection) {
    m_streams[connection->identifier()] = connection;
    m_streamCount = m_streams.size();
    connection->push(std::make_shared<const std::string>(passageEvent(live())));
}

void LivePageServer::forget(std::uint64_t identifier) {
    m_streams.erase(identifier);
    m_open.erase(identifier);
    m_streamCount = m_streams.size();
}

std::string LivePageServer::url() const {
    std::string host = m_options.address;
    if (host.find(':') != std::string::npos)
        host = "[" + host + "]";
    std::string result = "http://" + host + ":" + std::to_string(m_port) + "/";
    if (!m_options.token.empty())
        result += "?token=" + m_options.token;
    return result;
}

OutletState LivePageServer::state() const {
    if (!m_failure.empty())
        return {"off", m_failure, true, m_options.address + ":" + std::to_string(m_options.port), m_failure};
    if (!m_started)
        return {"off", {}, false, {}, {}};
    return {"serving", url() + " (" + std::to_string(connectionCount()) + " open)", false, url(), {}};
}

} // namespace quillon::screens
