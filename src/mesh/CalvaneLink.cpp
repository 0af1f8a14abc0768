#include "mesh/CalvaneLink.h"

#include "mesh/MeshLimits.h"
#include "mesh/MeshSettings.h"

#include <boost/asio/connect.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <spdlog/spdlog.h>

namespace quillon::mesh {

namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;

CalvaneLink::CalvaneLink(asio::io_context& io, std::function<nlohmann::json()> hello, Callbacks callbacks,
                         Timing timing)
    : m_io(io), m_hello(std::move(hello)), m_callbacks(std::move(callbacks)), m_timing(timing),
      m_retryDelay(timing.firstRetry), m_resolver(io), m_retryTimer(io), m_deadline(io) {}

void CalvaneLink::connectTo(std::string host, std::uint16_t port) {
    if (m_stopped || (host == m_host && port == m_port && (m_socket || m_open)))
        return;
    m_host = std::move(host);
    m_port = port;
    m_retryDelay = m_timing.firstRetry;
    m_retryTimer.cancel();
    connect();
}

void CalvaneLink::armDeadline() {
    // Covers resolving, connecting, the upgrade and Calvane's "linked": a host that accepts and
    // then says nothing must not leave the link hung with no retry.
    auto generation = m_generation;
    m_deadline.expires_after(m_timing.handshakeTimeout);
    auto self = shared_from_this();
    m_deadline.async_wait([self, generation](boost::system::error_code error) {
        if (error || generation != self->m_generation || self->m_linked)
            return;
        self->fail("Calvane did not link within " + secondsText(self->m_timing.handshakeTimeout) + " seconds");
    });
}

void CalvaneLink::connect() {
    if (m_stopped || m_host.empty())
        return;
    auto generation = ++m_generation;
    m_open = false;
    m_linked = false;
    m_outgoing.clear();
    m_outgoingBytes = 0;
    closeSocket();
    m_socket = std::make_unique<Socket>(m_io);
    m_socket->read_message_max(maximumFrameLength);
    armDeadline();
    auto self = shared_from_this();
    m_resolver.async_resolve(
        m_host, std::to_string(m_port),
        [self, generation](boost::system::error_code error, asio::ip::tcp::resolver::results_type results) {
            if (generation != self->m_generation)
                return;
            if (error)
                return self->fail(error.message());
            asio::async_connect(
                self->m_socket->next_layer(), results,
                [self, generation](boost::system::error_code error, const asio::ip::tcp::endpoint&) {
                    if (generation != self->m_generation)
                        return;
                    if (error)
                        return self->fail(error.message());
                    websocket::stream_base::timeout timeout{self->m_timing.handshakeTimeout, self->m_timing.idleTimeout,
                                                            true};
                    self->m_socket->set_option(timeout);
                    self->m_socket->async_handshake(
                        self->m_host + ":" + std::to_string(self->m_port), "/",
                        [self, generation](boost::system::error_code error) {
                            if (generation != self->m_generation)
                                return;
                            if (error)
                                return self->fail(error.message());
                            self->m_socket->text(true);
                            self->m_open = true;
                            self->write(self->m_hello().dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
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
        if (error == boost::beast::error::timeout)
            return self->fail("Calvane was silent for " + secondsText(self->m_timing.idleTimeout) + " seconds");
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
        // Only the first "linked" of a link counts: repeating it must not make the desk send again.
        if (m_linked)
            return;
        m_linked = true;
        m_deadline.cancel();
        m_retryDelay = m_timing.firstRetry;
        if (m_callbacks.linked)
            m_callbacks.linked();
    } else if (kind == "rejected") {
        std::optional<std::string> reason;
        if (frame.contains("reason") && frame["reason"].is_string() && !frame["reason"].get<std::string>().empty())
            reason = frame["reason"].get<std::string>();
        ++m_generation; // the link is over: ignore what the old socket still reports
        m_open = false;
        m_linked = false;
        m_deadline.cancel();
        closeSocket();
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
    if (!m_open || !m_linked)
        return;
    write(frame.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void CalvaneLink::write(std::string text) {
    if (m_outgoingBytes + text.size() > limits::queuedBytesPerPeer) {
        // Failing here would re-enter the caller's callbacks; leave it to the queue.
        auto self = shared_from_this();
        auto generation = m_generation;
        asio::post(m_io, [self, generation] {
            if (generation == self->m_generation)
                self->fail("Calvane stopped reading");
        });
        return;
    }
    m_outgoingBytes += text.size();
    m_outgoing.push_back(std::move(text));
    if (m_outgoing.size() == 1)
        writeNext();
}

void CalvaneLink::writeNext() {
    auto self = shared_from_this();
    auto generation = m_generation;
    // The write in flight owns its text: a failure empties the queue while the socket may still
    // be copying from the frame. The queue keeps an empty place for it, so `write` knows a write
    // is under way.
    auto frame = std::make_shared<std::string>(std::move(m_outgoing.front()));
    m_socket->async_write(asio::buffer(*frame),
                          [self, generation, frame](boost::system::error_code error, std::size_t) {
                              if (generation != self->m_generation)
                                  return;
                              if (error)
                                  return self->fail(error.message());
                              self->m_outgoingBytes -= frame->size();
                              self->m_outgoing.pop_front();
                              if (!self->m_outgoing.empty())
                                  self->writeNext();
                          });
}

void CalvaneLink::fail(const std::string& reason) {
    bool wasLinked = m_linked;
    ++m_generation;
    m_open = false;
    m_linked = false;
    m_deadline.cancel();
    m_outgoing.clear();
    m_outgoingBytes = 0;
    closeSocket();
    if (wasLinked && m_callbacks.lost)
        m_callbacks.lost(reason);
    else
        spdlog::info("Could not link with Calvane at {}:{}: {}", m_host, m_port, reason);
    scheduleRetry();
}

void CalvaneLink::closeSocket() {
    if (!m_socket)
        return;
    // The stream's own timer would otherwise wait out the idle timeout and keep the desk's
    // network thread from finishing when it stops.
    m_socket->set_option(
        websocket::stream_base::timeout{websocket::stream_base::none(), websocket::stream_base::none(), false});
    boost::system::error_code ignored;
    m_socket->next_layer().close(ignored);
}

void CalvaneLink::scheduleRetry() {
    if (m_stopped)
        return;
    auto delay = m_retryDelay;
    m_retryDelay = std::min(m_retryDelay * 2, m_timing.retryCeiling);
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
    m_linked = false;
    m_retryTimer.cancel();
    m_deadline.cancel();
    m_resolver.cancel();
    closeSocket();
}

} // namespace quillon::mesh
