#include "orvane/SuiteChallengeLedger.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using namespace std::chrono_literals;
using Failure = SuiteHandshake::Failure;

struct LedgerFixture {
    std::chrono::system_clock::time_point now = std::chrono::sys_days{std::chrono::year{2025} / 3 / 9};
    SuiteChallengeLedger ledger{[this] { return now; }};
    SuitePairing pairing{"Brenmoor", SuiteCapability::grantedAtPairing(), randomBytes(32), now};

    Bytes rightAnswer(const SuiteHandshake::Challenge& challenge) const {
        return SuiteHandshake::answer(pairing.secret, challenge.nonce, "Brenmoor", challenge.requested);
    }
};

TEST(SuiteChallengeLedger, answerIsHmacOverNonceNameAndLittleEndianCapabilities) {
    Bytes secret(32, 7), nonce(32, 9);
    Bytes message = nonce;
    for (char c : std::string("Brenmoor"))
        message.push_back(static_cast<std::uint8_t>(c));
    for (std::uint8_t b : {0x05, 0, 0, 0, 0, 0, 0, 0x80})
        message.push_back(b);
    EXPECT_EQ(SuiteHandshake::answer(secret, nonce, "Brenmoor", SuiteCapability{0x8000000000000005}),
              hmacSha256(secret, message));
}

TEST(SuiteChallengeLedger, verifiesInTheFixedOrderOfChecks) {
    struct Case {
        const char* name;
        SuiteCapability requested;
        std::chrono::seconds delay;
        bool tamper;
        std::optional<Failure> expected;
    };
    const SuiteCapability beyond{1u << 20};
    for (const Case& c : {
             Case{"right answer in time", SuiteCapability::receiveScripture(), 0s, false, std::nullopt},
             Case{"right answer at 30 s", SuiteCapability::receiveScripture(), 30s, false, std::nullopt},
             Case{"answer after 31 s", SuiteCapability::receiveScripture(), 31s, false, Failure::challengeExpired},
             Case{"late and wrong is still expired", SuiteCapability::receiveScripture(), 31s, true,
                  Failure::challengeExpired},
             Case{"capability not granted", beyond, 0s, false, Failure::capabilityNotGranted},
             Case{"ungranted before incorrect", beyond, 0s, true, Failure::capabilityNotGranted},
             Case{"wrong answer", SuiteCapability::driveScripture(), 0s, true, Failure::incorrect},
         }) {
        LedgerFixture f;
        auto challenge = f.ledger.issue(c.requested);
        EXPECT_EQ(challenge.nonce.size(), 32u);
        Bytes answer = f.rightAnswer(challenge);
        if (c.tamper)
            answer[0] ^= 1;
        f.now += c.delay;
        // The ledger's own expiry sweep must not remove the challenge before step 4 looks at it,
        // except when it really is older than the lifetime.
        EXPECT_EQ(f.ledger.verify(challenge.nonce, "Brenmoor", answer, f.pairing, f.now), c.expected) << c.name;
    }
}

TEST(SuiteChallengeLedger, aNonceCanBeAnsweredOnceEvenAfterAWrongAnswer) {
    LedgerFixture f;
    auto challenge = f.ledger.issue(SuiteCapability::receiveScripture());
    Bytes wrong = f.rightAnswer(challenge);
    wrong.back() ^= 0x80;
    EXPECT_EQ(f.ledger.verify(challenge.nonce, "Brenmoor", wrong, f.pairing, f.now), Failure::incorrect);
    EXPECT_EQ(f.ledger.verify(challenge.nonce, "Brenmoor", f.rightAnswer(challenge), f.pairing, f.now),
              Failure::challengeExpired);

    auto second = f.ledger.issue(SuiteCapability::receiveScripture());
    EXPECT_EQ(f.ledger.verify(second.nonce, "Brenmoor", f.rightAnswer(second), f.pairing, f.now), std::nullopt);
    EXPECT_EQ(f.ledger.verify(second.nonce, "Brenmoor", f.rightAnswer(second), f.pairing, f.now),
              Failure::challengeExpired);
    EXPECT_EQ(f.ledger.verify(randomBytes(32), "Brenmoor", {}, f.pairing, f.now), Failure::challengeExpired);
}

TEST(SuiteChallengeLedger, answerBoundToThePeerName) {
    LedgerFixture f;
    auto challenge = f.ledger.issue(SuiteCapability::receiveScripture());
    EXPECT_EQ(f.ledger.verify(challenge.nonce, "Calvane", f.rightAnswer(challenge), f.pairing, f.now),
              Failure::incorrect);
}

TEST(SuiteChallengeLedger, issuingDropsExpiredChallenges) {
    LedgerFixture f;
    f.ledger.issue(SuiteCapability::receiveScripture());
    f.ledger.issue(SuiteCapability::receiveScripture());
    f.now += 31s;
    f.ledger.issue(SuiteCapability::receiveScripture());
    EXPECT_EQ(f.ledger.outstandingCount(), 1u);
}

TEST(SuiteChallengeLedger, remembersSpentNoncesOnlyWhileTheyCouldStillBeAnswered) {
    LedgerFixture f;
    Bytes wrong(32, 0);
    for (int i = 0; i < 100; ++i) {
        auto challenge = f.ledger.issue(SuiteCapability::receiveScripture());
        f.ledger.verify(challenge.nonce, "Brenmoor", wrong, f.pairing, f.now);
    }
    auto withdrawn = f.ledger.issue(SuiteCapability::receiveScripture());
    f.ledger.withdraw(withdrawn.nonce);
    EXPECT_EQ(f.ledger.spentCount(), 101u);
    EXPECT_EQ(f.ledger.outstandingCount(), 0u);
    // A withdrawn challenge cannot be answered, right or wrong.
    EXPECT_EQ(f.ledger.verify(withdrawn.nonce, "Brenmoor", f.rightAnswer(withdrawn), f.pairing, f.now),
              Failure::challengeExpired);

    f.now += 31s;
    auto fresh = f.ledger.issue(SuiteCapability::receiveScripture());
    EXPECT_EQ(f.ledger.spentCount(), 0u);
    EXPECT_EQ(f.ledger.verify(fresh.nonce, "Brenmoor", f.rightAnswer(fresh), f.pairing, f.now), std::nullopt);
    EXPECT_EQ(f.ledger.spentCount(), 1u);
}

} // namespace
} // namespace orvane
