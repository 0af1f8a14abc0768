#include "orvane/SuiteMeshBootstrapSession.h"

#include <gtest/gtest.h>

#include <deque>

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// Hands out scripted 32-bit draws (big-endian) and zero bytes for anything else.
struct ScriptedRandom {
    std::deque<std::uint32_t> draws;
    Bytes operator()(std::size_t count) {
        if (count != 4 || draws.empty())
            return Bytes(count, 0);
        std::uint32_t v = draws.front();
        draws.pop_front();
        return {static_cast<std::uint8_t>(v >> 24), static_cast<std::uint8_t>(v >> 16),
                static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)};
    }
};

TEST(SuiteMeshBootstrapSession, codesAreSixDigitsWithoutModuloBias) {
    struct Case {
        std::deque<std::uint32_t> draws;
        std::string expected;
    };
    for (const Case& c : {
             Case{{42}, "000042"},
             Case{{0}, "000000"},
             Case{{999'999}, "999999"},
             Case{{1'000'042}, "000042"},
             // 4,294,000,000 is the first draw at or above the last whole million below 2^32: drawn again.
             Case{{4'294'000'000u, 7}, "000007"},
             Case{{0xffffffffu, 4'293'999'999u}, "999999"},
         }) {
        ScriptedRandom random{c.draws};
        EXPECT_EQ(SuiteMeshBootstrapSession::formatCode(SuiteMeshBootstrapSession::drawCode(std::ref(random))),
                  c.expected);
        EXPECT_TRUE(random.draws.empty());
    }
}

TEST(SuiteMeshBootstrapSession, secretIsHkdfOfCodeSaltAndIdentifier) {
    auto now = std::chrono::system_clock::time_point{} + 1000h;
    ScriptedRandom random{{123456}};
    auto session = SuiteMeshBootstrapSession::start("Brenmoor", "io.veltra.qln", now, 120s, std::ref(random));
    EXPECT_EQ(session.code, "123456");
    EXPECT_EQ(session.salt, Bytes(32, 0));
    EXPECT_EQ(session.secret,
              hkdfSha256(bytesOf("123456"), Bytes(32, 0), bytesOf("orvane.suite.pairing.io.veltra.qln"), 32));
    EXPECT_NE(session.secret, SuiteMeshBootstrapSession::deriveSecret("123457", session.salt, "io.veltra.qln"));
    EXPECT_NE(session.secret, SuiteMeshBootstrapSession::deriveSecret("123456", session.salt, "io.veltra.other"));
    EXPECT_FALSE(session.isExpired(now + 119s));
    EXPECT_TRUE(session.isExpired(now + 120s));
}

} // namespace
} // namespace orvane
