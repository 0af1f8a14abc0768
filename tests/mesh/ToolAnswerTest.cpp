#include "mesh/ToolAnswer.h"

#include <gtest/gtest.h>

namespace quillon::mesh {
namespace {

TEST(ToolAnswer, passagesTravelAsJsonTextAndComeBackUnchanged) {
    const std::vector<orvane::ToolResult> results = {
        orvane::ToolResult::empty(),
        {{{"Grace upon Grace", "Grace and truth came through Jesus Christ."}, {"John 3:16 (KJV)", ""}}},
        {{{"Quotes \"and\" \\ slashes", "Line one\nline two — “curly”"}}},
    };
    for (const auto& result : results) {
        auto answer = ToolAnswer::found(result);
        ASSERT_TRUE(answer.result);
        EXPECT_FALSE(answer.error);
        EXPECT_EQ(ToolAnswer::decode(*answer.result), result) << *answer.result;
    }
    EXPECT_EQ(*ToolAnswer::found(orvane::ToolResult::empty()).result, R"({"passages":[]})");
}

TEST(ToolAnswer, brokenTextIsReplacedNotThrown) {
    auto answer = ToolAnswer::found({{{"Title", std::string("bad \xff byte")}}});
    auto decoded = ToolAnswer::decode(*answer.result);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->passages.at(0).text, "bad \xEF\xBF\xBD byte");
}

TEST(ToolAnswer, decodeRefusesWhatIsNotAListOfPassages) {
    for (const char* text : {"", "not json", "[]", R"({"passages":{}})", R"({"passages":[{"source":"a"}]})",
                             R"({"passages":[{"source":1,"text":"b"}]})", R"({"passages":["a"]})"})
        EXPECT_FALSE(ToolAnswer::decode(text)) << text;
}

} // namespace
} // namespace quillon::mesh
