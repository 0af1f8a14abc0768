#include "mesh/CalvaneLink.h"

#include <boost/asio/connect.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <spdlog/spdlog.h>

namespace quillon::mesh {

namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;

CalvaneLink::CalvaneLink(asio::io_context& io, std::function<nlohmann::json()> hello, Callbacks callbacks,
                         std::chrono::milliseconds firstRetry, std::chrono::milliseconds retryCeiling)
    : m_io(io), m_hello(std::move(hello)), m_callbacks(std::move(callbacks)), m_firstRetry(firstRetry),
      m_retryCeiling(retryCeiling), m_retryDelay(firstRetry), m_resolver(io), m_retryTimer(io) {}

void CalvaneLink::connectTo(std::string host, std::uint16_t port) {
    if (m_stopped || (host == m_host && port == m_port && (m_socket || m_open)))
        return;
    m_host = std::move(host);
    m_port = port;
    m_retryDelay = m_firstRetry;
    m_retryTimer.cancel();
    connect();
}

void CalvaneLink::connect() {
    if (m_stopped || m_host.empty())
        return;
    auto generation = ++m_generation;
    m_open = false;
    m_outgoing.clear();
    m_socket = std::make_unique<Socket>(m_io);
    auto self = shared_from_this();
    m_resolver.async_resolve(
        m_host, std::to_string(m_port),
        [self, generation](boost::system::error_code error, asio::ip::tcp::resolver::results_type results) {
            if (generation != self->m_generation)
                return;
            if (error)
                return self->fail(error.message());
            asio::async_connect(self->m_socket->next_layer(), results,
                                [self, generation](boost::system::error_code error, const asio::ip::tcp::endpoint&) {
                                    if (generation != self->m_generation)
                                        return;
                                    if (error)
                                        return self->fail(error.message());
                                    self->m_socket->async_handshake(
                                        self->m_host + ":" + std::to_string(self->m_port), "/",
                                        [self, generation](boost::system::error_code error) {
                                            if (generation != self->m_generation)
                                                return;
                                            if (error)
                                                return self->fail(error.message());
                                            self->m_socket->text(true);
                                            self->m_open = true;
                                            self->send(self->m_hello());
                                            self->readNext();
                                        });
                                });
        });
}

void CalvaneLink::readNext() {
    auto self = shared_from_this();
    auto generation = m_generation;
    m_socket->async_read(m_buffer, [self, generation](boost::system::error_code error, std::size_t) {
        if (generation != self->m_generation)
            return;
        if (error)
            return self->fail(error == websocket::error::closed ? "Calvane closed the link" : error.message());
        std::string text = boost::beast::buffers_to_string(self->m_buffer.data());
        self->m_buffer.consume(self->m_buffer.size());
        self->handle(text);
        if (generation == self->m_generation && self->m_open)
            self->readNext();
    });
}

void CalvaneLink::handle(const std::string& text) {
    auto frame = nlohmann::json::parse(text, nullptr, false);
    if (frame.is_discarded() || !frame.is_object() || !frame.contains("kind") || !frame["kind"].is_string()) {
        spdlog::warn("Dropped a frame from Calvane that is not a JSON object with a kind");
        return;
    }
    std::string kind = frame["kind"].get<std::string>();
    if (kind == "linked") {
        m_retryDelay = m_firstRetry;
        if (m_callbacks.linked)
            m_callbacks.linked();
    } else if (kind == "rejected") {
        std::optional<std::string> reason;
        if (frame.contains("reason") && frame["reason"].is_string() && !frame["reason"].get<std::string>().empty())
            reason = frame["reason"].get<std::string>();
        ++m_generation; // the link is over: ignore what the old socket still reports
        m_open = false;
        boost::system::error_code ignored;
        m_socket->next_layer().close(ignored);
        if (m_callbacks.rejected)
            m_callbacks.rejected(reason);
        scheduleRetry();
    } else if (kind == "scripture" || kind == "clear") {
        if (m_callbacks.pushed)
            m_callbacks.pushed(frame);
    } else {
        spdlog::debug("Ignored a {} frame from Calvane", kind);
    }
}

void CalvaneLink::send(const nlohmann::json& frame) {
    if (!m_open)
        return;
    m_outgoing.push_back(frame.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    if (m_outgoing.size() == 1)
        writeNext();
}

void CalvaneLink::writeNext() {
    auto self = shared_from_this();
    auto generation = m_generation;
    m_socket->async_write(asio::buffer(m_outgoing.front()),
                          [self, generation](boost::system::error_code error, std::size_t) {
                              if (generation != self->m_generation)
                                  return;
                              if (error)
                                  return self->fail(error.message());
                              self->m_outgoing.pop_front();
                              if (!self->m_outgoing.empty())
                                  self->writeNext();
                          });
}

void CalvaneLink::fail(const std::string& reason) {
    bool wasOpen = m_open;
    ++m_generation;
    m_open = false;
    if (m_socket) {
        boost::system::error_code ignored;
        m_socket->next_layer().close(ignored);
    }
    if (wasOpen && m_callbacks.lost)
        m_callbacks.lost(reason);
    else
        spdlog::debug("Could not reach Calvane at {}:{}: {}", m_host, m_port, reason);
    scheduleRetry();
}

void CalvaneLink::scheduleRetry() {
    if (m_stopped)
        return;
    auto delay = m_retryDelay;
    m_retryDelay = std::min(m_retryDelay * 2, m_retryCeiling);
    m_retryTimer.expires_after(delay);
    auto self = shared_from_this();
    m_retryTimer.async_wait([self](boost::system::error_code error) {
        if (!error)
            self->connect();
    });
}

void CalvaneLink::stop() {
    m_stopped = true;
    ++m_generation;
    m_open = false;
    m_retryTimer.cancel();
    m_resolver.cancel();
    if (m_socket) {
        boost::system::error_code ignored;
        m_socket->next_layer().close(ignored);
    }
}

} // namespace quillon::mesh
