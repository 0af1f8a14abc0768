#pragma once

#include "orvane/SuiteHandshake.h"
#include "orvane/SuitePairing.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>

namespace orvane {

/// Issues challenges and checks their answers; every nonce can be answered once only.
/// Serialised: each operation holds one lock, so any thread may call it.
class SuiteChallengeLedger {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    /// `now` gives the time for issuing; `lifetime` is how long a challenge may be answered.
    explicit SuiteChallengeLedger(Clock now, std::chrono::seconds lifetime = std::chrono::seconds{30});

    /// Drops expired challenges, then creates and remembers a fresh one.
    SuiteHandshake::Challenge issue(SuiteCapability requested);

    /// Nothing when the answer is right; otherwise why it failed. The nonce is spent either way.
    std::optional<SuiteHandshake::Failure> verify(const Bytes& nonce, std::string_view peerIdentifier,
                                                  const Bytes& answer, const SuitePairing& pairing,
                                                  std::chrono::system_clock::time_point now);

    /// Forgets an unanswered challenge, as when its connection closes or is challenged anew; the
    /// nonce is spent, so an answer that still arrives fails like an expired one.
    void withdraw(const Bytes& nonce);

    std::size_t outstandingCount() const;
    /// Nonces remembered as answered. Only those still young enough to be answered are kept: an
    /// older nonce fails as expired whether or not it is remembered.
    std::size_t spentCount() const;

private:
    void dropExpiredLocked(std::chrono::system_clock::time_point now);

    Clock m_now;
    std::chrono::seconds m_lifetime;
    mutable std::mutex m_mutex;
    std::map<Bytes, SuiteHandshake::Challenge> m_outstanding;
    /// Each answered nonce with the time its challenge was issued, pruned once past the lifetime.
    std::map<Bytes, std::chrono::system_clock::time_point> m_spent;
};

} // namespace orvane
