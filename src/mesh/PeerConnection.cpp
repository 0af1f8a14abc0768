#include "mesh/PeerConnection.h"

#include "mesh/MeshSettings.h"
#include "mesh/VantalinkPsk.h"

#include <boost/asio/post.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

namespace quillon::mesh {

namespace asio = boost::asio;

PeerConnection::PeerConnection(Stream stream, bool secure, Owner& owner, std::uint64_t identifier)
    : proofTimer(stream.get_executor()), m_stream(std::move(stream)), m_secure(secure), m_owner(owner),
      m_identifier(identifier), m_handshakeTimer(m_stream.get_executor()) {
    boost::system::error_code ignored;
    auto endpoint = m_stream.next_layer().remote_endpoint(ignored);
    m_remote = ignored ? "an unknown peer" : endpoint.address().to_string() + ":" + std::to_string(endpoint.port());
    m_stream.next_layer().set_option(asio::ip::tcp::no_delay(true), ignored);
}

std::string PeerConnection::displayName() const {
    return m_claim.name().value_or(m_remote);
}

template <class Operation>
void PeerConnection::onStream(Operation&& operation) {
    if (m_secure)
        operation(m_stream);
    else
        operation(m_stream.next_layer());
}

void PeerConnection::start(std::chrono::milliseconds handshakeTimeout) {
    if (!m_secure) {
        m_ready = true;
        m_owner.connectionReady(shared_from_this());
        readHeader();
        return;
    }
    auto self = shared_from_this();
    m_handshakeTimer.expires_after(handshakeTimeout);
    m_handshakeTimer.async_wait([self, handshakeTimeout](boost::system::error_code error) {
        if (error || self->m_ready || self->m_closed)
            return;
        spdlog::warn("{}: the secure handshake did not finish within {} seconds", self->displayName(),
                     secondsText(handshakeTimeout));
        self->close("the secure handshake did not finish within " + secondsText(handshakeTimeout) + " seconds");
    });
    m_stream.async_handshake(asio::ssl::stream_base::server, [self](boost::system::error_code error) {
        self->m_handshakeTimer.cancel();
        if (self->m_closed)
            return;
        if (error) {
            auto explanation = VantalinkPsk::explainFailure(error).value_or(error.message());
            self->close("the secure handshake failed: " + explanation);
            return;
        }
        self->m_pskPeer = VantalinkPsk::pairedPeerOf(self->m_stream.native_handle());
        self->m_ready = true;
        self->m_lastHeard = std::chrono::steady_clock::now();
        self->m_owner.connectionReady(self);
        self->readHeader();
    });
}

void PeerConnection::readHeader() {
    auto self = shared_from_this();
    onStream([&](auto& stream) {
        asio::async_read(stream, asio::buffer(m_header), [self](boost::system::error_code error, std::size_t) {
            if (self->m_closed)
                return;
            if (error) {
                self->close(error == asio::error::eof ? "the peer closed the connection" : error.message());
                return;
            }
            auto length = acceptedFrameLength(self->m_header);
            if (!length) {
                self->close("it announced a frame of a length that is not allowed");
                return;
            }
            self->readBody(*length);
        });
    });
}

void PeerConnection::readBody(std::uint32_t length) {
    m_body.resize(length);
    auto self = shared_from_this();
    onStream([&](auto& stream) {
        asio::async_read(stream, asio::buffer(m_body), [self](boost::system::error_code error, std::size_t) {
            if (self->m_closed)
                return;
            if (error) {
                self->close(error.message());
                return;
            }
            self->m_lastHeard = std::chrono::steady_clock::now();
            auto message = SermonStudioMessage::decode(self->m_body);
            if (message) {
                self->m_owner.messageReceived(self, std::move(*message));
            } else {
                // Name what the body claimed to be, if that much can be read.
                std::string type = "Unknown";
                auto json = self->m_body.find_first_not_of(" \t\r\n") < self->m_body.size() &&
                                    self->m_body[self->m_body.find_first_not_of(" \t\r\n")] == '{'
                                ? nlohmann::json::parse(self->m_body, nullptr, false)
                                : nlohmann::json();
                if (json.is_object() && json.contains("type") && json["type"].is_string())
                    type = json["type"].get<std::string>();
                self->m_owner.bodyDropped(self, type);
            }
            std::string().swap(self->m_body); // do not keep a 10 MB buffer for a peer that sent one once
            if (!self->m_closed)
                self->readHeader();
        });
    });
}

void PeerConnection::send(std::string frame) {
    if (m_closed)
        return;
    if (m_outgoingBytes + frame.size() > maximumQueuedBytes) {
        // Closed from the bridge's queue rather than here: the caller may be walking the very list of
        // connections that closing removes this one from.
        asio::post(m_stream.get_executor(), [self = shared_from_this()] { self->close("the peer stopped reading"); });
        return;
    }
    m_outgoingBytes += frame.size();
    m_outgoing.push_back(std::move(frame));
    if (m_outgoing.size() == 1)
        writeNext();
}

void PeerConnection::writeNext() {
    auto self = shared_from_this();
    onStream([&](auto& stream) {
        asio::async_write(stream, asio::buffer(m_outgoing.front()),
                          [self](boost::system::error_code error, std::size_t) {
                              if (self->m_closed)
                                  return;
                              if (error) {
                                  self->close(error.message());
                                  return;
                              }
                              self->m_outgoingBytes -= self->m_outgoing.front().size();
                              self->m_outgoing.pop_front();
                              if (!self->m_outgoing.empty())
                                  self->writeNext();
                          });
    });
}

void PeerConnection::close(const std::string& reason) {
    if (m_closed)
        return;
    m_closed = true;
    m_handshakeTimer.cancel();
    proofTimer.cancel();
    boost::system::error_code ignored;
    m_stream.next_layer().shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    m_stream.next_layer().close(ignored);
    m_outgoing.clear();
    m_outgoingBytes = 0;
    m_owner.connectionClosed(shared_from_this(), reason);
}

} // namespace quillon::mesh
