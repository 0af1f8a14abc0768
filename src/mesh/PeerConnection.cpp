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

namespace {

std::string plainAddress(const asio::ip::address& address) {
    // The listener takes IPv4 peers on an IPv6 socket; count them by their IPv4 address.
    if (address.is_v6() && address.to_v6().is_v4_mapped())
        return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).to_string();
    return address.to_string();
}

/// What a body that did not decode claimed to be, if that much can be read.
std::string claimedType(std::string_view body) {
    auto first = body.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || body[first] != '{')
        return "Unknown";
    auto json = nlohmann::json::parse(body, nullptr, false);
    if (json.is_object() && json.contains("type") && json["type"].is_string())
        return json["type"].get<std::string>();
    return "Unknown";
}

} // namespace

PeerConnection::PeerConnection(Stream stream, bool secure, Owner& owner, std::uint64_t identifier,
                               ByteBudget& bodyBudget)
    : proofTimer(stream.get_executor()), m_stream(std::move(stream)), m_secure(secure), m_owner(owner),
      m_identifier(identifier), m_handshakeTimer(m_stream.get_executor()), m_bodyBudget(bodyBudget) {
    boost::system::error_code ignored;
    auto endpoint = m_stream.next_layer().remote_endpoint(ignored);
    m_address = ignored ? "unknown" : plainAddress(endpoint.address());
    m_remote = ignored ? "an unknown peer" : m_address + ":" + std::to_string(endpoint.port());
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
    if (m_closed || m_closing)
        return;
    auto self = shared_from_this();
    onStream([&](auto& stream) {
        asio::async_read(stream, asio::buffer(m_header), [self](boost::system::error_code error, std::size_t) {
            if (self->m_closed || self->m_closing)
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
    // Nothing is set aside for the announced length: a header costs four bytes to send, and the
    // memory a body takes must be paid for by the bytes that actually arrive.
    m_expected = length;
    m_body.clear();
    readPiece();
}

bool PeerConnection::reserveFor(std::size_t size) {
    if (size <= m_body.capacity())
        return true;
    std::size_t capacity = std::min(m_expected, std::max({size, 2 * m_body.capacity(), limits::bodyPieceBytes}));
    std::size_t charge = capacity > limits::bodyPieceBytes ? capacity - limits::bodyPieceBytes : 0;
    if (charge > m_charged && !m_bodyBudget.take(charge - m_charged))
        return false;
    m_charged = std::max(charge, m_charged);
    m_body.reserve(capacity);
    return true;
}

void PeerConnection::readPiece() {
    std::size_t have = m_body.size();
    std::size_t piece = std::min(limits::bodyPieceBytes, m_expected - have);
    if (!reserveFor(have + piece)) {
        close("its unfinished messages would take more memory than the desk holds for all peers");
        return;
    }
    m_body.resize(have + piece);
    auto self = shared_from_this();
    onStream([&](auto& stream) {
        stream.async_read_some(
            asio::buffer(m_body.data() + have, piece), [self, have](boost::system::error_code error, std::size_t got) {
                if (self->m_closed || self->m_closing)
                    return;
                if (error) {
                    self->close(error == asio::error::eof ? "the peer closed the connection" : error.message());
                    return;
                }
                self->m_body.resize(have + got);
                if (self->m_body.size() < self->m_expected)
                    return self->readPiece();
                self->bodyComplete();
            });
    });
}

bool PeerConnection::withinRate() {
    auto now = std::chrono::steady_clock::now();
    double seconds = std::chrono::duration<double>(now - m_rateUpdated).count();
    m_rateUpdated = now;
    m_rateAllowance = std::min(limits::messageBurst, m_rateAllowance + seconds * limits::messagesPerSecond);
    if (m_rateAllowance >= 1) {
        m_rateAllowance -= 1;
        return true;
    }
    if (!m_warnedAboutRate) {
        m_warnedAboutRate = true;
        spdlog::warn("Dropping messages from {}: it sends more than {:g} a second", displayName(),
                     limits::messagesPerSecond);
    }
    return false;
}

void PeerConnection::bodyComplete() {
    m_lastHeard = std::chrono::steady_clock::now();
    auto self = shared_from_this();
    if (withinRate()) {
        std::string_view body(m_body.data(), m_body.size());
        auto message = SermonStudioMessage::decode(body);
        if (message)
            m_owner.messageReceived(self, std::move(*message));
        else
            m_owner.bodyDropped(self, claimedType(body));
    }
    releaseBody();
    readHeader();
}

void PeerConnection::releaseBody() {
    m_bodyBudget.give(m_charged);
    m_charged = 0;
    if (m_body.capacity() > limits::bodyPieceBytes)
        std::vector<char>().swap(m_body); // do not keep a 10 MB buffer for a peer that sent one once
    else
        m_body.clear();
    m_expected = 0;
}

void PeerConnection::send(std::string frame) {
    send(std::make_shared<const std::string>(std::move(frame)));
}

void PeerConnection::send(Frame frame) {
    if (m_closed || m_closing)
        return;
    if (m_outgoingBytes + frame->size() > maximumQueuedBytes) {
        // Closed from the bridge's queue rather than here: the caller may be walking the very list of
        // connections that closing removes this one from.
        asio::post(m_stream.get_executor(), [self = shared_from_this()] { self->close("the peer stopped reading"); });
        return;
    }
    m_outgoingBytes += frame->size();
    m_outgoing.push_back(std::move(frame));
    if (m_outgoing.size() == 1)
        writeNext();
}

void PeerConnection::writeNext() {
    auto self = shared_from_this();
    // The handler holds the frame in flight: closing empties the queue while the socket may still
    // be copying from it.
    Frame frame = m_outgoing.front();
    onStream([&](auto& stream) {
        asio::async_write(stream, asio::buffer(*frame), [self, frame](boost::system::error_code error, std::size_t) {
            if (self->m_closed)
                return;
            if (error) {
                self->close(error.message());
                return;
            }
            self->m_outgoingBytes -= self->m_outgoing.front()->size();
            self->m_outgoing.pop_front();
            if (!self->m_outgoing.empty())
                self->writeNext();
            else if (self->m_closing)
                self->close(self->m_closingReason);
        });
    });
}

void PeerConnection::closeAfterSending(const std::string& reason) {
    if (m_closed || m_closing)
        return;
    if (m_outgoing.empty())
        return close(reason);
    m_closing = true;
    m_closingReason = reason;
    m_handshakeTimer.expires_after(std::chrono::seconds{1});
    m_handshakeTimer.async_wait([self = shared_from_this()](boost::system::error_code error) {
        if (!error)
            self->close(self->m_closingReason);
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
    m_bodyBudget.give(m_charged);
    m_charged = 0;
    std::vector<char>().swap(m_body);
    m_owner.connectionClosed(shared_from_this(), reason);
}

} // namespace quillon::mesh
