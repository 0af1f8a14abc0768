#include "mesh/VantalinkPsk.h"
#include "orvane/SuiteHandshake.h"
#include "orvane/SuiteMeshBootstrapSession.h"

#include <gtest/gtest.h>

namespace quillon::mesh {
namespace {

orvane::Bytes counting(std::uint8_t first, std::size_t count) {
    orvane::Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(first + i);
    return bytes;
}

// Expected values computed outside this code base, with OpenSSL's command line and Python's hmac:
//   openssl kdf -keylen 32 -kdfopt digest:SHA256 -kdfopt key:000042 -kdfopt hexsalt:000102…1f
//       -kdfopt info:orvane.suite.pairing.io.veltra.qln HKDF
//   openssl dgst -sha256 -mac HMAC -macopt hexkey:<secret>   (over nonce 20…3f, "Brenmoor",
//       05 00 00 00 00 00 00 80)
//   openssl kdf -keylen 8|32 -kdfopt digest:SHA256 -kdfopt hexkey:<secret>
//       -kdfopt info:vantalink-tls-v1-id|vantalink-tls-v1 HKDF
// A sibling that derives these the same way will agree with the desk.
constexpr const char* bootstrapSecret = "14cf92ef103f6644daad9f0ea7c693bbd839ed08e6b0f37e4eec72e86e3308b8";

TEST(PairingVectors, derivationsMatchIndependentlyComputedValues) {
    auto secret = orvane::SuiteMeshBootstrapSession::deriveSecret("000042", counting(0, 32), "io.veltra.qln");
    EXPECT_EQ(orvane::hexEncode(secret), bootstrapSecret);

    auto answer = orvane::SuiteHandshake::answer(secret, counting(0x20, 32), "Brenmoor",
                                                 orvane::SuiteCapability{0x8000000000000005});
    EXPECT_EQ(orvane::hexEncode(answer), "ba5c2179449794d1dfed5a2b1f64297350a59c555699ad70eeac5fb41a569172");

    EXPECT_EQ(VantalinkPsk::identity(secret), "1680b0a6f092c197");
    EXPECT_EQ(orvane::hexEncode(VantalinkPsk::key(secret)),
              "646f41bf06972a091f38fa01011263c18549cc02fd95adc8b2c905e4cf33c97f");
}

} // namespace
} // namespace quillon::mesh
