#include "orvane/SuiteMeshBootstrapSession.h"

#include <fmt/format.h>

#include <stdexcept>

namespace orvane {

namespace {
constexpr std::uint32_t codeSpace = 1'000'000;
constexpr std::size_t saltLength = 32;
constexpr std::size_t secretLength = 32;
} // namespace

std::uint32_t SuiteMeshBootstrapSession::drawCode(const RandomSource& random) {
    // 2^32 - (2^32 mod 10^6): every residue below a million is hit equally often below this bound.
    constexpr std::uint64_t bound = (std::uint64_t{1} << 32) - ((std::uint64_t{1} << 32) % codeSpace);
    for (;;) {
        Bytes bytes = random(4);
        if (bytes.size() != 4)
            throw std::runtime_error("the random source gave the wrong number of bytes");
        std::uint32_t value = std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
                              std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
        if (value < bound)
            return value % codeSpace;
    }
}

std::string SuiteMeshBootstrapSession::formatCode(std::uint32_t number) {
    return fmt::format("{:06}", number % codeSpace);
}

Bytes SuiteMeshBootstrapSession::deriveSecret(std::string_view code, const Bytes& salt,
                                              std::string_view applicationIdentifier) {
    std::string info = "orvane.suite.pairing.";
    info += applicationIdentifier;
    return hkdfSha256(bytesOf(code), salt, bytesOf(info), secretLength);
}

SuiteMeshBootstrapSession SuiteMeshBootstrapSession::start(std::string peerName, std::string_view applicationIdentifier,
                                                           std::chrono::system_clock::time_point now,
                                                           std::chrono::system_clock::duration window,
                                                           const RandomSource& random) {
    SuiteMeshBootstrapSession session;
    session.peerName = std::move(peerName);
    session.code = formatCode(drawCode(random));
    session.salt = random(saltLength);
    session.secret = deriveSecret(session.code, session.salt, applicationIdentifier);
    session.expiresAt = now + window;
    return session;
}

} // namespace orvane
