#include "model/Base64.h"
#include "model/DateTime.h"
#include "model/Uuid.h"

#include <gtest/gtest.h>

#include <unordered_set>

using namespace std::string_literals;

namespace quillon::model {
namespace {

TEST(Uuid, parsesEitherCaseAndWritesUpperCase) {
    auto id = Uuid::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    for (const char* bad : {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5",
                            "G621E1F8-C36C-495A-93FC-0C247A3E6E5F", "E621E1F8-C36C-495A-93FC_0C247A3E6E5F",
                            "{E621E1F8-C36C-495A-93FC-0C247A3E6E5}"})
        EXPECT_FALSE(Uuid::parse(bad)) << bad;
    std::unordered_set<Uuid> ids;
    for (int i = 0; i < 1000; ++i) {
        Uuid random = Uuid::random();
        EXPECT_EQ(Uuid::parse(random.text()), random);
        ids.insert(random);
    }
    EXPECT_EQ(ids.size(), 1000u);
}

TEST(DateTime, acceptsOnlyWholeSecondUtc) {
    auto time = parseDateTime("2024-02-29T23:59:59Z");
    ASSERT_TRUE(time);
    EXPECT_EQ(formatDateTime(*time), "2024-02-29T23:59:59Z");
    EXPECT_EQ(formatDateTime(DateTime{}), "1970-01-01T00:00:00Z");
    for (const char* bad :
         {"2025-03-09T14:30:00.250Z", "2025-03-09T14:30:00", "2025-03-09 14:30:00Z", "2023-02-29T00:00:00Z",
          "2025-13-01T00:00:00Z", "2025-03-09T24:00:00Z", "2025-3-9T14:30:00Z"})
        EXPECT_FALSE(parseDateTime(bad)) << bad;
}

TEST(Base64, roundTripsAndRejectsDamage) {
    for (std::string bytes :
         {std::string(""), std::string("f"), std::string("fo"), std::string("foo"), "\0\xff\x10rtf"s})
        EXPECT_EQ(decodeBase64(encodeBase64(bytes)), bytes);
    EXPECT_EQ(encodeBase64("foob"), "Zm9vYg==");
    for (const char* bad : {"Zm9vYg=", "Zm9v Yg==", "Zm=vYg==", "Zm9vYg=a", "@@@@"})
        EXPECT_FALSE(decodeBase64(bad)) << bad;
}

} // namespace
} // namespace quillon::model
