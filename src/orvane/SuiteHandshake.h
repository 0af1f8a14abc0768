#pragma once

#include "orvane/SuiteCapability.h"
#include "orvane/SuiteCrypto.h"

#include <chrono>
#include <string_view>

namespace orvane {

/// The challenge-response by which a paired peer proves it holds the pairing secret.
struct SuiteHandshake {
    struct Challenge {
        Bytes nonce;
        std::chrono::system_clock::time_point issuedAt;
        SuiteCapability requested;
    };

    enum class Failure { notPaired, capabilityNotGranted, challengeExpired, replayed, incorrect };

    /// Length of a challenge nonce in bytes.
    static constexpr std::size_t nonceLength = 32;

    /// HMAC-SHA256 keyed by the secret over nonce, the peer identifier's UTF-8 bytes and the
    /// requested capabilities' raw value as 8 little-endian bytes. Both sides compute the same.
    static Bytes answer(const Bytes& secret, const Bytes& nonce, std::string_view peerIdentifier,
                        SuiteCapability requested);
};

/// A short English explanation of a failure, for log lines.
std::string_view describe(SuiteHandshake::Failure failure);

} // namespace orvane
