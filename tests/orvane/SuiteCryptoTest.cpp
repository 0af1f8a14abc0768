#include "orvane/SuiteCrypto.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

Bytes hex(std::string_view text) {
    return hexDecode(text).value();
}

TEST(SuiteCrypto, hkdfAndHmacMatchTheirPublishedTestVectors) {
    // RFC 5869 test case 1.
    EXPECT_EQ(
        hexEncode(hkdfSha256(Bytes(22, 0x0b), hex("000102030405060708090a0b0c"), hex("f0f1f2f3f4f5f6f7f8f9"), 42)),
        "3cb25f25faacd57a90434f64d0362f2a2d2d0a90cf1a5a4c5db02d56ecc4c5bf34007208d5b887185865");
    // RFC 5869 test case 3: empty salt and info.
    EXPECT_EQ(hexEncode(hkdfSha256(Bytes(22, 0x0b), {}, {}, 42)),
              "8da4e775a563c18f715f802a063c5a31b8a11f5c5ee1879ec3454e5f3c738d2d9d201395faa4b61a96c8");
    // Empty key material, which HKDF allows and OpenSSL refuses: RFC 5869 computed by hand.
    EXPECT_EQ(hexEncode(hkdfSha256({}, hex("000102030405060708090a0b0c"), hex("f0f1f2f3f4f5f6f7f8f9"), 42)),
              "4dd449ba1911c57d79603e7e902452f79601b5e4d7b235ce0e11a7789a17766099725013cd1c97a52d03");
    // RFC 4231 test case 2.
    EXPECT_EQ(hexEncode(hmacSha256(bytesOf("Jefe"), bytesOf("what do ya want for nothing?"))),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

TEST(SuiteCrypto, base64AndHexRoundTripAndRejectBadText) {
    for (const Bytes& bytes : {Bytes{}, Bytes{0}, Bytes{0xff, 0x01}, Bytes{1, 2, 3}, randomBytes(32)}) {
        EXPECT_EQ(base64Decode(base64Encode(bytes)), bytes);
        EXPECT_EQ(hexDecode(hexEncode(bytes)), bytes);
    }
    EXPECT_EQ(base64Encode(bytesOf("hi")), "aGk=");
    for (std::string_view bad : {"abc", "a b=", "****", "aGk"})
        EXPECT_FALSE(base64Decode(bad)) << bad;
    for (std::string_view bad : {"abc", "zz", "0g"})
        EXPECT_FALSE(hexDecode(bad)) << bad;
}

TEST(SuiteCrypto, constantTimeEqualComparesLengthAndContent) {
    EXPECT_TRUE(constantTimeEqual({1, 2, 3}, {1, 2, 3}));
    EXPECT_FALSE(constantTimeEqual({1, 2, 3}, {1, 2, 4}));
    EXPECT_FALSE(constantTimeEqual({1, 2, 3}, {1, 2}));
    EXPECT_NE(randomBytes(32), randomBytes(32));
}

} // namespace
} // namespace orvane
