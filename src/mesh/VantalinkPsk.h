#pragma once

#include "orvane/SuiteCrypto.h"

#include <boost/asio/ssl/context.hpp>
#include <boost/system/error_code.hpp>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::mesh {

/// TLS 1.2 with a pre-shared key (PSK-AES128-GCM-SHA256) for secure Vantalink links.
///
/// Both values come from HKDF-SHA256 over the pairing secret. For a sibling to match: the label
/// goes in HKDF's *info* parameter, the salt is empty (RFC 5869's hash-length zeros), and the
/// input key material is the 32-byte pairing secret.
struct VantalinkPsk {
    static constexpr const char* identityLabel = "vantalink-tls-v1-id";
    static constexpr const char* keyLabel = "vantalink-tls-v1";
    static constexpr const char* unpairedPrefix = "vantalink-unpaired|";
    static constexpr const char* cipherSuite = "PSK-AES128-GCM-SHA256";

    /// Lower-case hex of 8 bytes derived with the identity label.
    static std::string identity(const orvane::Bytes& pairingSecret);
    /// 32 bytes derived with the key label.
    static orvane::Bytes key(const orvane::Bytes& pairingSecret);

    /// "vantalink-unpaired|<peer name>": how a peer without a pairing introduces itself.
    static std::string unpairedIdentity(std::string_view peerName);
    /// The key for an unpaired identity: HKDF of the identity text itself with the key label.
    /// Such a link is encrypted but proves nothing; the peer must still pair or prove a pairing.
    static orvane::Bytes unpairedKey(std::string_view identity);

    /// What the server callback learned about the identity a client offered.
    struct Match {
        orvane::Bytes key;
        /// The paired peer whose derived identity matched; nothing for an unpaired identity.
        std::optional<std::string> pairedPeer;
    };
    using Resolver = std::function<std::optional<Match>(std::string_view identity)>;

    /// A server context that accepts only TLS 1.2 with the PSK suite and asks `resolver` for each
    /// offered identity. The resolver must outlive the context.
    static void configureServer(boost::asio::ssl::context& context, const Resolver& resolver);
    /// A client context offering `identity` with `key` (tests and tools).
    static void configureClient(boost::asio::ssl::context& context, std::string identity, orvane::Bytes key);

    /// The paired peer recorded by the server callback for one connection (SSL*), if any.
    static std::optional<std::string> pairedPeerOf(void* nativeHandle);

    /// One of the three explanations for a failed handshake, or nothing for other errors.
    static std::optional<std::string> explainFailure(const boost::system::error_code& error);
};

} // namespace quillon::mesh
