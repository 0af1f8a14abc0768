#include "export/ExportFilename.h"
#include "export/OutlineNumbering.h"
#include "export/XmlText.h"
#include "platform/AtomicFile.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::exports {

TEST(ExportFilename, makesTitlesSafeAndFallsBackWhenNothingIsLeft) {
    struct Case {
        std::string title;
        std::string expected;
    };
    const std::vector<Case> cases{
        {"Grace & Truth", "Grace & Truth.docx"},
        {"Part 1: <Faith>", "Part 1- -Faith-.docx"},
        {"../../etc/passwd", "-..-etc-passwd.docx"},
        {"  Psalm 23\n", "Psalm 23.docx"},
        {"", "Untitled Sermon.docx"},
        {"   \t", "Untitled Sermon.docx"},
        {"...", "Untitled Sermon.docx"},
        {"a\x01"
         "b",
         "a-b.docx"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ExportFilename::make(c.title, "docx"), c.expected) << c.title;
}

TEST(ExportFilename, keepsAtMost200CharactersAndFitsTheFileSystemWithoutSplittingOne) {
    EXPECT_EQ(ExportFilename::make(std::string(250, 'a'), "md"), std::string(200, 'a') + ".md");
    const std::string thumbsUp = "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD"; // one character of eight bytes
    const std::string shin = "\xD7\xA9";                             // one of two bytes
    struct Case {
        std::string title;
        std::string extension;
        std::string piece; // the character the name is made of
        std::size_t pieces;
    };
    const std::vector<Case> cases{
        {std::string(250, 'a'), "md", "a", 200},
        {[&] {
             std::string t;
             for (int i = 0; i < 210; ++i)
                 t += thumbsUp;
             return t;
         }(),
         "md", thumbsUp, 28},
        {[&] {
             std::string t;
             for (int i = 0; i < 200; ++i)
                 t += shin;
             return t;
         }(),
         "docx", shin, 114},
        {[&] {
             std::string t;
             for (int i = 0; i < 200; ++i)
                 t += shin;
             return t;
         }(),
         "md", shin, 115},
    };
    testing::TemporaryFolder folder;
    for (const auto& c : cases) {
        const std::string name = ExportFilename::make(c.title, c.extension);
        std::string expected;
        for (std::size_t i = 0; i < c.pieces; ++i)
            expected += c.piece;
        EXPECT_EQ(name, expected + "." + c.extension) << c.extension << " " << c.pieces;
        EXPECT_LE(name.size() + platform::temporaryNameExtraBytes, 255u);
        // The name really can be written atomically, temporary name and all.
        EXPECT_NO_THROW(platform::writeFileAtomically(folder / name, "x")) << name.size();
    }
}

TEST(XmlText, escapesAmpersandFirstSoNothingIsDoubled) {
    EXPECT_EQ(escapeXml("&<>\"'"), "&amp;&lt;&gt;&quot;&apos;");
    EXPECT_EQ(escapeXml("&amp;"), "&amp;amp;");
    EXPECT_EQ(escapeXml("Fish & <Loaves>"), "Fish &amp; &lt;Loaves&gt;");
}

TEST(XmlText, dropsWhatXmlCannotCarry) {
    EXPECT_EQ(xmlSafeText("a\x01\x08"
                          "b\tc\n"),
              "ab\tc\n");
    EXPECT_EQ(xmlSafeText("bad \xC3 byte"), "bad \xEF\xBF\xBD byte");
    EXPECT_EQ(xmlSafeText("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"), "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"); // Hebrew stays
    EXPECT_EQ(validUtf8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"); // an encoded surrogate
}

TEST(XmlText, splitsLinesAtEveryKindOfLineEnd) {
    EXPECT_EQ(splitLines("a\r\nb\rc\nd"), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_EQ(splitLines(""), (std::vector<std::string>{""}));
    EXPECT_EQ(oneLine("Grace\r\n\n  and truth\r"), "Grace   and truth");
    EXPECT_EQ(oneLine("\n\n"), "");
}

TEST(OutlineNumbering, writesRomanNumeralsGreedilyAndLettersLikeColumns) {
    const std::vector<std::pair<int, std::string>> numerals{
        {1, "I"}, {4, "IV"}, {9, "IX"}, {14, "XIV"}, {40, "XL"}, {90, "XC"}, {400, "CD"}, {1994, "MCMXCIV"}, {0, ""}};
    for (const auto& [number, numeral] : numerals)
        EXPECT_EQ(romanNumeral(number), numeral) << number;
    const std::vector<std::pair<int, std::string>> letters{{1, "A"}, {26, "Z"}, {27, "AA"}, {53, "BA"}};
    for (const auto& [number, letter] : letters)
        EXPECT_EQ(subTopicLetter(number), letter) << number;
}

} // namespace quillon::exports
