#include "scripture/ParsedBibleReference.h"

#include <gtest/gtest.h>

using namespace quillon::scripture;

TEST(ParsedBibleReference, keepsTheFirstAndLastVerseAndExpandsBackWithinTheChapter) {
    struct Row {
        const char* typed;
        ParsedBibleReference compact;
        const char* printed;
    };
    for (const Row& row : {
             Row{"John 3:16", {"John", 3, 16, std::nullopt}, "John 3:16"},
             Row{"John 3:16-18, 20", {"John", 3, 16, 20}, "John 3:16-20"},
             Row{"ps 23", {"Psalms", 23, std::nullopt, std::nullopt}, "Psalms 23"},
             Row{"Jude 3", {"Jude", 1, 3, std::nullopt}, "Jude 1:3"},
             Row{"John 3:18-16", {"John", 3, 16, 18}, "John 3:16-18"},
         }) {
        auto compact = ParsedBibleReference::parse(row.typed);
        ASSERT_TRUE(compact.has_value()) << row.typed;
        EXPECT_EQ(*compact, row.compact) << row.typed;
        EXPECT_EQ(compact->description(), row.printed) << row.typed;
    }
    EXPECT_FALSE(ParsedBibleReference::parse("Xyzzy 1").has_value());

    EXPECT_EQ(ParsedBibleReference({"Psalms", 119, 175, 1000}).reference()->verses, (std::vector<int>{175, 176}));
    EXPECT_EQ(ParsedBibleReference({"John", 3, 16, std::nullopt}).reference()->verses, (std::vector<int>{16}));
    EXPECT_FALSE(ParsedBibleReference({"John", 3, 16, 15}).reference().has_value());
    EXPECT_FALSE(ParsedBibleReference({"John", 3, std::nullopt, 15}).reference().has_value());
    EXPECT_FALSE(ParsedBibleReference({"John", 22, 1, std::nullopt}).reference().has_value());
    EXPECT_FALSE(ParsedBibleReference({"John", 3, 0, std::nullopt}).reference().has_value());
    EXPECT_FALSE(ParsedBibleReference({"Nowhere", 1, 1, std::nullopt}).reference().has_value());
    EXPECT_FALSE(ParsedBibleReference({"John", 3, 1, 2000000000}).reference()->verses->size() > 36);
}
