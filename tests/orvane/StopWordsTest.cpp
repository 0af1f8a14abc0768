#include "orvane/StopWords.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(StopWords, meaningfulWordsAreLongEnoughAndNotDomainNoise) {
    struct Case {
        std::string word;
        std::size_t minimumLength;
        bool meaningful;
    };
    const Case cases[] = {
        {"grace", 3, true},      {"Grace!", 3, true},      {"GOD", 2, false},    {"Jesus'", 2, false},
        {"sermon", 1, false},    {"verses", 1, false},     {"amen", 1, false},   {"thee", 1, false},
        {"ox", 3, false},        {"ox", 2, true},          {"", 0, true},        {"", 1, false},
        {"...", 1, false},       {"1611", 4, true},        {"Jn3", 3, true},     {"\u00c9lie", 4, true},
        {"\u00c9lie", 5, false}, {"\U0001F64F", 1, false}, {"lord's", 2, false}, {"LORDS", 2, false},
        {"\xff\xfe", 1, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(StopWords::isMeaningful(c.word, c.minimumLength), c.meaningful) << c.word << " " << c.minimumLength;
}

TEST(StopWords, listHoldsTheDomainWords) {
    const auto& words = StopWords::words();
    EXPECT_EQ(words.size(), 195u);
    for (const char* word : {"about", "amen", "bible", "christ", "god", "jesus", "lord", "sermon", "verse", "yourself"})
        EXPECT_TRUE(words.contains(std::string_view(word))) << word;
    // Unlike the tokeniser's list, this one leaves out short function words such as "a" and "is".
    for (const char* word : {"a", "is", "grace", "yourselves"})
        EXPECT_FALSE(words.contains(std::string_view(word))) << word;
}

} // namespace
} // namespace orvane
