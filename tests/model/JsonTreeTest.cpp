#include "model/JsonTree.h"
#include "model/SermonCoding.h"
#include "support/JsonDescription.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace quillon::model {
namespace {

using Json = OrderedJSON;

using quillon::testing::describe;

std::string manyMembersWithRepeats() {
    std::string text = "{";
    for (int i = 0; i < 40; ++i)
        text += "\"k" + std::to_string(i % 30) + "\": " + std::to_string(i) + ",";
    return text + "\"last\": [] }";
}

std::string nested(int depth) {
    return std::string(static_cast<std::size_t>(depth), '[') + std::string(static_cast<std::size_t>(depth), ']');
}

// Sermon files are read by JsonTree while records built in memory go through nlohmann: the two
// must agree on every input, accepted or refused, and on every value read.
TEST(JsonTree, acceptsAndReadsExactlyWhatNlohmannDoes) {
    const std::vector<std::string> texts = {
        // accepted
        R"({"a": 1, "b": [true, false, null], "c": {"d": "e"}})", " [ ] ", "{}", "\t\r\n{ }\n",
        R"("\u00e9\ud83d\ude00\/\b\f\n\r\t\"\\")", R"("\u0000 and \u001F")", "\"caf\xC3\xA9 \xF0\x9F\x98\x80\"", "-0",
        "0", "-9223372036854775808", "-9223372036854775809", "18446744073709551615", "18446744073709551616", "1.5e3",
        "-2.5E-2", "1E-400", "3.0", R"({"a": 1, "a": 2, "b": 3, "a": 4})", manyMembersWithRepeats(),
        "\xEF\xBB\xBF{\"bom\": true}", nested(900), R"({"title": "x", "": "empty name"})",
        // refused
        "", " ", "{", "[1,]", R"({"a" 1})", R"({"a": 1,})", "01", "1.", ".5", "-", "+1", "1e", "1e400", "-1e400", "tru",
        "nul", "falsey", R"("abc)", "\"\x01\"", R"("\u12")", R"("\ud800")", R"("\udc00")", R"("\ud800\u0041")",
        R"("\q")", "\"\xC0\x80\"", "\"\xED\xA0\x80\"", "\"\xF4\x90\x80\x80\"", "\"\xE0\x80\x80\"", "\"\xFF\"",
        "\"\xC3\"", "{} x", "[1] [2]", "\xEF\xBB{}", "'a'", "[1 2]", "{1: 2}", "[\"a\"\0]"s};
    for (const std::string& text : texts) {
        std::optional<Json> expected;
        try {
            expected = Json::parse(text);
        } catch (const std::exception&) {
        }
        std::optional<JsonTree> tree;
        try {
            tree.emplace(JsonTree::parse(text));
        } catch (const DecodingError&) {
        }
        ASSERT_EQ(tree.has_value(), expected.has_value()) << text;
        if (expected) {
            EXPECT_EQ(describe(tree->root()), describe(*expected)) << text;
        }
    }
}

TEST(JsonTree, refusesNestingThatWouldExhaustTheStack) {
    EXPECT_NO_THROW(JsonTree::parse(nested(JsonTree::maximumDepth)));
    EXPECT_THROW(JsonTree::parse(nested(JsonTree::maximumDepth + 1)), DecodingError);
    EXPECT_THROW(JsonTree::parse(std::string(100'000, '[')), DecodingError);
}

TEST(JsonTree, findsTheLastValueOfARepeatedMember) {
    const std::string text = R"({"a": 1, "b": 2, "a": "last"})";
    JsonTree tree = JsonTree::parse(text);
    ASSERT_TRUE(tree.root().find("a"));
    EXPECT_EQ(tree.root().find("a")->text(), "last");
    EXPECT_EQ(tree.root().size(), 2u);
    EXPECT_FALSE(tree.root().find("c"));
}

TEST(JsonTree, sermonFilesDecodeAsFromTheDocument) {
    const std::string sermon = R"({
  "id": "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "title": "First", "date": "2025-03-09T14:30:00Z",
  "speaker": "Ann \"A\" Lee\n", "topics": [], "notes": "caf\u00e9", "createdAt": "2025-03-01T08:00:00Z",
  "modifiedAt": "2025-03-02T09:15:30Z", "title": "Second",
  "mood": {"a": [1, -2, 18446744073709551615, 2.5, true, null, "x"], "a": {}}, "z": [])";
    for (const std::string& text : {sermon + "}", sermon + ", \"tags\": \"x\"}", sermon + ", \"topics\": {}}"}) {
        std::optional<SermonNote> expected;
        try {
            expected = decodeSermonNote(Json::parse(text));
        } catch (const DecodingError&) {
        }
        if (expected)
            EXPECT_EQ(decodeSermonFile(text), *expected) << text;
        else
            EXPECT_THROW(decodeSermonFile(text), DecodingError) << text;
    }
    EXPECT_EQ(decodeSermonFile(sermon + "}").title, "Second");
}

} // namespace
} // namespace quillon::model
