#include "orvane/LexicalTokenizer.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace orvane {
namespace {

using Tokens = std::vector<std::string>;

TEST(LexicalTokenizer, tokensFollowTheFoldingLengthAndStopWordRules) {
    struct Case {
        std::string text;
        std::size_t minimumLength;
        bool removingStopWords;
        Tokens expected;
    };
    const Case cases[] = {
        // Digit-only tokens survive even at one character; "I" is too short; "and" is a stop word.
        {"1 Cor 13 and I", 2, true, {"1", "cor", "13"}},
        {"1 Cor 13 and I", 1, false, {"1", "cor", "13", "and", "i"}},
        {"Paul\u2019s letter, Paul's joy", 2, true, {"paul", "letter", "paul", "joy"}},
        {"\u201cThe LORD\u2019S day\u201d \u2014 can\u2019t \u00b6 it\u2019s", 2, true, {"lord", "day", "can\u2019t"}},
        {"\u2018Tis 3\u201916 x\u2019s", 1, false, {"tis", "3\u201916", "x"}},
        {"\u00c9ph\u00e8se Ephese", 2, true, {"ephese", "ephese"}},
        // Contractions stay whole and are found in the stop list.
        {"I can't, you won't; we'll pray.", 2, true, {"pray"}},
        // The possessive rule needs three characters first: "'s" alone is dropped as too short, "x's" becomes "x".
        {"x's", 1, false, {"x"}},
        {"The LORD is my shepherd", 3, true, {"lord", "shepherd"}},
        {"grace grace GRACE", 2, false, {"grace", "grace", "grace"}},
        {"John 3:16 and 1611", 2, true, {"john", "3", "16", "1611"}},
        {"", 2, true, {}},
        {"  ,;!? -- ", 1, false, {}},
        // Numbers in other scripts are numbers too.
        {"\u0663\u0664 \u0661", 2, true, {"\u0663\u0664", "\u0661"}},
        {"\u05e9\u05dc\u05d5\u05dd world", 2, true, {"\u05e9\u05dc\u05d5\u05dd", "world"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(LexicalTokenizer::tokens(c.text, c.minimumLength, c.removingStopWords), c.expected) << c.text;
}

TEST(LexicalTokenizer, stopListHoldsTheCommonFunctionWords) {
    const auto& stops = LexicalTokenizer::stopWords();
    EXPECT_EQ(stops.size(), 174u);
    for (const char* word : {"a", "aren't", "yourselves", "let's", "ought", "cannot", "why's"})
        EXPECT_TRUE(stops.contains(std::string_view(word))) << word;
    for (const char* word : {"god", "lord", "amen", "thee"})
        EXPECT_FALSE(stops.contains(std::string_view(word))) << word;
}

TEST(LexicalTokenizer, anyBytesGiveTokensWithoutCrashing) {
    const std::string inputs[] = {
        "\xff\xfe\xfd",
        "abc\xc3",                // truncated sequence at the end
        "\xed\xa0\x80 surrogate", // encoded surrogate
        "\xc0\xaf overlong",      // overlong slash
        "praise \xf0\x9f\x99\x8f\xf0\x9f\x8f\xbd hands",
        "e\u0301\u0301\u0301 \u0301\u0301 zalgo",
        "\u202e\u0645\u0631\u062d\u0628\u0627 abc",
        "nul\0inside"s,
        "\u200b\u200d\ufeff",
    };
    for (const std::string& input : inputs) {
        const Tokens tokens = LexicalTokenizer::tokens(input, 1, false);
        for (const std::string& token : tokens)
            EXPECT_FALSE(token.empty());
    }
    EXPECT_EQ(LexicalTokenizer::tokens("praise \xf0\x9f\x99\x8f hands", 2, true), (Tokens{"praise", "hands"}));
    EXPECT_EQ(LexicalTokenizer::tokens("abc\xff"
                                       "def",
                                       2, true)
                  .size(),
              2u);
}

TEST(LexicalTokenizer, tokenisingInsideAVisitorLeavesTheOuterTextWhole) {
    const std::string outer = "\u00c9glise,de,Dieu,\u00e0,Corinthe";
    std::vector<std::string> seen;
    LexicalTokenizer::forEachToken(outer, 2, false, [&](std::string_view token) {
        seen.emplace_back(token);
        LexicalTokenizer::tokens("na\u00efve inner text", 2, false);
    });
    EXPECT_EQ(seen, (Tokens{"eglise", "de", "dieu", "corinthe"}));
}

} // namespace
} // namespace orvane
