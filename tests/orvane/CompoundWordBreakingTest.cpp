#include "orvane/CompoundWordBreaking.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(CompoundWordBreaking, breaksBeforeCamelCaseWordsLongEnoughOnBothSides) {
    const std::string zwsp = "\u200B";
    const std::pair<std::string, std::string> cases[] = {
        {"SermonNotes", "Sermon" + zwsp + "Notes"},
        {"PDFExport", "PDF" + zwsp + "Export"},
        {"iOS", "iOS"},
        {"A", "A"},
        {"", ""},
        {"aB", "aB"},
        // The part after the break needs two characters before a space or the end.
        {"SermonN", "SermonN"},
        {"SermonN otes", "SermonN otes"},
        {"Big SermonNotes", "Big Sermon" + zwsp + "Notes"},
        // A break already present is not doubled, and restarts the count.
        {"Sermon" + zwsp + "Notes", "Sermon" + zwsp + "Notes"},
        {"ThisIsWordyText", "This" + zwsp + "Is" + zwsp + "Wordy" + zwsp + "Text"},
        {"\u00c9glise\u00c9tat", "\u00c9glise" + zwsp + "\u00c9tat"},
        {"URL", "URL"},
        {"\U0001F64FPrayerTime", "\U0001F64FPrayer" + zwsp + "Time"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(CompoundWordBreaking::insertingBreaks(text), expected) << text;
        EXPECT_EQ(CompoundWordBreaking::removingBreaks(CompoundWordBreaking::insertingBreaks(text)),
                  CompoundWordBreaking::removingBreaks(text))
            << text;
    }
}

TEST(CompoundWordBreaking, removingBreaksDropsEveryZeroWidthSpace) {
    EXPECT_EQ(CompoundWordBreaking::removingBreaks("\u200BA\u200B\u200Bb\u200B"), "Ab");
    EXPECT_EQ(CompoundWordBreaking::removingBreaks(""), "");
    EXPECT_EQ(CompoundWordBreaking::removingBreaks("\xff\xe2\x80"), "\xff\xe2\x80");
    EXPECT_NO_THROW(CompoundWordBreaking::insertingBreaks("\xff\xfe"
                                                          "AbcDef"));
}

} // namespace
} // namespace orvane
