#include "mesh/VantalinkPsk.h"

#include <openssl/err.h>
#include <openssl/proverr.h>
#include <openssl/ssl.h>

#include <boost/asio/ssl/error.hpp>

#include <algorithm>
#include <cstring>

namespace quillon::mesh {

namespace {

// Where each connection keeps the paired peer its identity matched.
int pairedPeerSlot() {
    static const int slot =
        SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, [](void*, void* data, CRYPTO_EX_DATA*, int, long, void*) {
            delete static_cast<std::string*>(data);
        });
    return slot;
}

// Asio keeps its own verify callback in the context's app data, so the resolver needs a slot of its own.
int resolverSlot() {
    static const int slot = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
    return slot;
}

unsigned int serverCallback(SSL* ssl, const char* identity, unsigned char* psk, unsigned int maxLength) {
    auto* resolver =
        static_cast<const VantalinkPsk::Resolver*>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(ssl), resolverSlot()));
    if (!resolver || !identity)
        return 0;
    std::optional<VantalinkPsk::Match> match;
    try {
        match = (*resolver)(identity);
    } catch (...) {
        return 0; // an exception must not cross OpenSSL's C frames
    }
    // Returning 0 makes OpenSSL answer with the "unknown PSK identity" alert.
    if (!match || match->key.empty() || match->key.size() > maxLength)
        return 0;
    std::copy(match->key.begin(), match->key.end(), psk);
    if (match->pairedPeer)
        SSL_set_ex_data(ssl, pairedPeerSlot(), new std::string(*match->pairedPeer));
    return static_cast<unsigned int>(match->key.size());
}

struct ClientPsk {
    std::string identity;
    orvane::Bytes key;
};

int clientSlot() {
    static const int slot = SSL_CTX_get_ex_new_index(
        0, nullptr, nullptr, nullptr,
        [](void*, void* data, CRYPTO_EX_DATA*, int, long, void*) { delete static_cast<ClientPsk*>(data); });
    return slot;
}

unsigned int clientCallback(SSL* ssl, const char*, char* identity, unsigned int maxIdentityLength, unsigned char* psk,
                            unsigned int maxPskLength) {
    auto* values = static_cast<ClientPsk*>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(ssl), clientSlot()));
    if (!values || values->identity.size() + 1 > maxIdentityLength || values->key.size() > maxPskLength)
        return 0;
    std::memcpy(identity, values->identity.c_str(), values->identity.size() + 1);
    std::copy(values->key.begin(), values->key.end(), psk);
    return static_cast<unsigned int>(values->key.size());
}

void restrictToPskSuite(SSL_CTX* context) {
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_max_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_cipher_list(context, VantalinkPsk::cipherSuite);
}

} // namespace

std::string VantalinkPsk::identity(const orvane::Bytes& pairingSecret) {
    return orvane::hexEncode(orvane::hkdfSha256(pairingSecret, {}, orvane::bytesOf(identityLabel), 8));
}

orvane::Bytes VantalinkPsk::key(const orvane::Bytes& pairingSecret) {
    return orvane::hkdfSha256(pairingSecret, {}, orvane::bytesOf(keyLabel), 32);
}

std::string VantalinkPsk::unpairedIdentity(std::string_view peerName) {
    return std::string(unpairedPrefix) + std::string(peerName);
}

orvane::Bytes VantalinkPsk::unpairedKey(std::string_view identity) {
    return orvane::hkdfSha256(orvane::bytesOf(identity), {}, orvane::bytesOf(keyLabel), 32);
}

void VantalinkPsk::configureServer(boost::asio::ssl::context& context, const Resolver& resolver) {
    SSL_CTX* native = context.native_handle();
    restrictToPskSuite(native);
    SSL_CTX_set_ex_data(native, resolverSlot(), const_cast<Resolver*>(&resolver));
    SSL_CTX_set_psk_server_callback(native, serverCallback);
}

void VantalinkPsk::configureClient(boost::asio::ssl::context& context, std::string identity, orvane::Bytes key) {
    SSL_CTX* native = context.native_handle();
    restrictToPskSuite(native);
    SSL_CTX_set_ex_data(native, clientSlot(), new ClientPsk{std::move(identity), std::move(key)});
    SSL_CTX_set_psk_client_callback(native, clientCallback);
}

std::optional<std::string> VantalinkPsk::pairedPeerOf(void* nativeHandle) {
    auto* peer = static_cast<std::string*>(SSL_get_ex_data(static_cast<SSL*>(nativeHandle), pairedPeerSlot()));
    if (!peer)
        return std::nullopt;
    return *peer;
}

std::optional<std::string> VantalinkPsk::explainFailure(const boost::system::error_code& error) {
    if (error.category() != boost::asio::error::get_ssl_category())
        return std::nullopt;
    auto code = static_cast<unsigned long>(error.value());
    // With a wrong key the record layer's AEAD check fails inside the provider, before TLS names it.
    if (ERR_GET_LIB(code) == ERR_LIB_PROV && ERR_GET_REASON(code) == PROV_R_CIPHER_OPERATION_FAILED)
        return "the pairing key does not match (bad MAC)";
    if (ERR_GET_LIB(code) != ERR_LIB_SSL)
        return std::nullopt;
    switch (ERR_GET_REASON(code)) {
    case SSL_R_PSK_IDENTITY_NOT_FOUND:
    case SSL_R_TLSV1_ALERT_UNKNOWN_PSK_IDENTITY:
        return "the other device does not recognize this pairing (unknown PSK identity)";
    case SSL_R_DECRYPTION_FAILED_OR_BAD_RECORD_MAC:
    case SSL_R_DECRYPTION_FAILED:
    case SSL_R_SSLV3_ALERT_BAD_RECORD_MAC:
    case SSL_R_TLSV1_ALERT_DECRYPT_ERROR:
    case SSL_R_DIGEST_CHECK_FAILED:
        return "the pairing key does not match (bad MAC)";
    case SSL_R_NO_SHARED_CIPHER:
    case SSL_R_SSLV3_ALERT_HANDSHAKE_FAILURE:
    case SSL_R_UNSUPPORTED_PROTOCOL:
    case SSL_R_TLSV1_ALERT_PROTOCOL_VERSION:
    case SSL_R_WRONG_VERSION_NUMBER:
        return "no shared encryption settings (handshake failure)";
    default:
        return std::nullopt;
    }
}

} // namespace quillon::mesh
