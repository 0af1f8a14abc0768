#include "mesh/ToolAnswer.h"

#include <gtest/gtest.h>

namespace quillon::mesh {
namespace {

TEST(ToolAnswer, brokenTextIsReplacedNotThrown) {
    auto answer = ToolAnswer::found({{{"Title", std::string("bad \xff byte")}}});
    ASSERT_TRUE(answer.result);
    auto decoded = ToolAnswer::decode(*answer.result);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->passages.at(0).text, "bad \xEF\xBF\xBD byte");
}

} // namespace
} // namespace quillon::mesh
