#include "store/ByteCountFormatter.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(ByteCountFormatter, writesSizesAsAPersonReadsThem) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {340'400, "340 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {12'540'000, "12.5 MB"},
        {1'200'000'000, "1.2 GB"},
        {999'960'000, "1 GB"},
        {3'000'000'000'000, "3 TB"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(quillon::store::formatByteCount(bytes), text) << bytes;
}

} // namespace
