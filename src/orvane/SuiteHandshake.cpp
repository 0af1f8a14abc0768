#include "orvane/SuiteHandshake.h"

namespace orvane {

Bytes SuiteHandshake::answer(const Bytes& secret, const Bytes& nonce, std::string_view peerIdentifier,
                             SuiteCapability requested) {
    Bytes message = nonce;
    message.insert(message.end(), peerIdentifier.begin(), peerIdentifier.end());
    // Little-endian by construction, so the answer does not depend on the host's byte order.
    for (int shift = 0; shift < 64; shift += 8)
        message.push_back(static_cast<std::uint8_t>((requested.rawValue >> shift) & 0xff));
    return hmacSha256(secret, message);
}

std::string_view describe(SuiteHandshake::Failure failure) {
    switch (failure) {
    case SuiteHandshake::Failure::notPaired:
        return "no pairing is on file";
    case SuiteHandshake::Failure::capabilityNotGranted:
        return "the pairing does not grant what was requested";
    case SuiteHandshake::Failure::challengeExpired:
        return "the challenge expired or is unknown";
    case SuiteHandshake::Failure::replayed:
        return "the challenge was already answered";
    case SuiteHandshake::Failure::incorrect:
        return "the answer is incorrect";
    } // no default case, so the compiler can warn about missing cases
    return "unknown failure";
}

} // namespace orvane
