#include "orvane/SuiteChallengeLedger.h"

namespace orvane {

SuiteChallengeLedger::SuiteChallengeLedger(Clock now, std::chrono::seconds lifetime)
    : m_now(std::move(now)), m_lifetime(lifetime) {}

SuiteHandshake::Challenge SuiteChallengeLedger::issue(SuiteCapability requested) {
    std::lock_guard lock(m_mutex);
    auto now = m_now();
    dropExpiredLocked(now);
    SuiteHandshake::Challenge challenge{randomBytes(SuiteHandshake::nonceLength), now, requested};
    m_outstanding[challenge.nonce] = challenge;
    return challenge;
}

std::optional<SuiteHandshake::Failure> SuiteChallengeLedger::verify(const Bytes& nonce, std::string_view peerIdentifier,
                                                                    const Bytes& answer, const SuitePairing& pairing,
                                                                    std::chrono::system_clock::time_point now) {
    using Failure = SuiteHandshake::Failure;
    std::lock_guard lock(m_mutex);
    dropExpiredLocked(now);
    // An unknown nonce and a spent one look the same as an expired one, so a prober cannot tell them apart.
    if (m_spent.count(nonce))
        return Failure::challengeExpired;
    auto found = m_outstanding.find(nonce);
    if (found == m_outstanding.end())
        return Failure::challengeExpired;
    // Spend the nonce before judging the answer: a wrong first answer must not leave room for a second.
    SuiteHandshake::Challenge challenge = found->second;
    m_outstanding.erase(found);
    m_spent.emplace(nonce, challenge.issuedAt);
    if (now - challenge.issuedAt > m_lifetime)
        return Failure::challengeExpired;
    if (!pairing.capabilities.contains(challenge.requested))
        return Failure::capabilityNotGranted;
    Bytes expected = SuiteHandshake::answer(pairing.secret, nonce, peerIdentifier, challenge.requested);
    if (!constantTimeEqual(expected, answer))
        return Failure::incorrect;
    return std::nullopt;
}

void SuiteChallengeLedger::withdraw(const Bytes& nonce) {
    std::lock_guard lock(m_mutex);
    auto found = m_outstanding.find(nonce);
    if (found == m_outstanding.end())
        return;
    m_spent.emplace(nonce, found->second.issuedAt);
    m_outstanding.erase(found);
}

std::size_t SuiteChallengeLedger::spentCount() const {
    std::lock_guard lock(m_mutex);
    return m_spent.size();
}

std::size_t SuiteChallengeLedger::outstandingCount() const {
    std::lock_guard lock(m_mutex);
    return m_outstanding.size();
}

void SuiteChallengeLedger::dropExpiredLocked(std::chrono::system_clock::time_point now) {
    std::erase_if(m_outstanding, [&](const auto& entry) { return now - entry.second.issuedAt > m_lifetime; });
    // A spent nonce past the lifetime would fail as expired anyway, so remembering it protects nothing.
    std::erase_if(m_spent, [&](const auto& entry) { return now - entry.second > m_lifetime; });
}

} // namespace orvane
