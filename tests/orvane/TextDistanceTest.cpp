#include "orvane/TextDistance.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(TextDistance, distanceIsOptimalStringAlignmentOverCharacters) {
    struct Case {
        std::string a, b;
        std::size_t distance;
    };
    const Case cases[] = {
        {"", "", 0},
        {"", "abc", 3},
        {"abc", "", 3},
        {"ab", "ba", 1},
        // A transposed pair is not edited again, unlike the unrestricted Damerau distance (2).
        {"ca", "abc", 3},
        {"kitten", "sitting", 3},
        {"forgivness", "forgiveness", 1},
        {"grate", "grace", 1},
        {"Grace", "grace", 1}, // case matters; callers normalise first
        {"caf\u00e9", "cafe", 1},
        {"caf\u00e9", "cafe\u0301", 0}, // canonically equivalent spellings are the same character
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467", "\U0001F468", 1},
        {"a\r\nb", "ab", 1},
        {"\u05e9\u05dc\u05d5\u05dd", "\u05e9\u05dc\u05dd", 1},
        {"\xff\xfe", "ab", 2},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TextDistance::distance(c.a, c.b), c.distance) << c.a << " / " << c.b;
        EXPECT_EQ(TextDistance::distance(c.b, c.a), c.distance) << c.b << " / " << c.a;
    }
}

TEST(TextDistance, similarityScalesByTheLongerText) {
    EXPECT_DOUBLE_EQ(TextDistance::similarity("", ""), 1.0);
    EXPECT_DOUBLE_EQ(TextDistance::similarity("abc", ""), 0.0);
    EXPECT_DOUBLE_EQ(TextDistance::similarity("grace", "grate"), 0.8);
    EXPECT_DOUBLE_EQ(TextDistance::similarity("forgivness", "forgiveness"), 1.0 - 1.0 / 11.0);
    EXPECT_DOUBLE_EQ(TextDistance::similarity("e\u0301t\u00e9", "ete"), 1.0 / 3.0);
}

TEST(TextDistance, normalisedFoldsAndJoinsLetterAndDigitRuns) {
    const std::pair<std::string, std::string> cases[] = {
        {"  Hello,   World!! ", "hello world"},
        {"\u00c9PH\u00c8SE 2:8\u20139", "ephese 2 8 9"},
        {"Paul's", "paul s"},
        {"--", ""},
        {"", ""},
        {"\U0001F64F pray \U0001F64F", "pray"},
        {"\u0663\u0664 \u05e9\u05dc\u05d5\u05dd", "\u0663\u0664 \u05e9\u05dc\u05d5\u05dd"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(TextDistance::normalised(text), expected) << text;
}

TEST(TextDistance, closestMatchPrefersEqualThenEarliestBest) {
    const std::vector<std::string> books = {"Genesis", "Exodus", "Leviticus", "Numbers", "Deuteronomy"};
    EXPECT_EQ(TextDistance::closestMatch("  EXODUS ", books, 0.9), "Exodus");
    EXPECT_EQ(TextDistance::closestMatch("Exodos", books, 0.6), "Exodus");
    EXPECT_EQ(TextDistance::closestMatch("Exodos", books, 0.9), std::nullopt);
    EXPECT_EQ(TextDistance::closestMatch("!!", books, 0.0), std::nullopt);
    EXPECT_EQ(TextDistance::closestMatch("Genesis", {}, 0.0), std::nullopt);
    // Equal similarity: the earlier candidate wins.
    EXPECT_EQ(TextDistance::closestMatch("grate", {"grape", "grace"}, 0.5), "grape");
    // An equal normalised form wins at once, even after a close one.
    EXPECT_EQ(TextDistance::closestMatch("grace", {"grac", "Gr\u00e2ce"}, 0.5), "Gr\u00e2ce");
}

} // namespace
} // namespace orvane
