#pragma once

#include "orvane/SuiteCrypto.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace orvane {

/// A first pairing in progress: the short code the preacher carries to the peer, and the secret
/// both sides derive from it.
struct SuiteMeshBootstrapSession {
    std::string peerName;
    std::string code;
    Bytes salt;
    Bytes secret;
    std::chrono::system_clock::time_point expiresAt;
    /// Proofs against this code that failed so far.
    int failedAnswers = 0;

    /// Wrong answers a code survives: the third ends the session, so a peer guessing has three
    /// chances in a million per code the preacher generates, not a search of the whole space.
    static constexpr int allowedFailedAnswers = 3;

    using RandomSource = std::function<Bytes(std::size_t)>;

    /// A fresh session: a uniformly drawn code, a random salt and the derived secret. `window` is how
    /// long the code stays usable; `applicationIdentifier` is the desk's reverse-DNS identifier.
    static SuiteMeshBootstrapSession start(std::string peerName, std::string_view applicationIdentifier,
                                           std::chrono::system_clock::time_point now,
                                           std::chrono::system_clock::duration window,
                                           const RandomSource& random = randomBytes);

    /// A number in 0..999,999 drawn without modulo bias: 32-bit draws above the largest multiple of
    /// a million are thrown away and drawn again.
    static std::uint32_t drawCode(const RandomSource& random);
    /// Exactly six digits with leading zeros: 42 is "000042".
    static std::string formatCode(std::uint32_t number);
    /// HKDF-SHA256 with the code's UTF-8 bytes as key material, the salt, and the info text
    /// "orvane.suite.pairing." followed by the identifier; 32 bytes. The peer computes the same.
    static Bytes deriveSecret(std::string_view code, const Bytes& salt, std::string_view applicationIdentifier);

    bool isExpired(std::chrono::system_clock::time_point now) const { return now >= expiresAt; }
    /// Counts one failed proof; true when the code is used up and the session must end.
    bool recordFailedAnswer() { return ++failedAnswers >= allowedFailedAnswers; }
};

} // namespace orvane
