#include "orvane/UnicodeText.h"
#include "orvane/CompoundWordBreaking.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/QueryExpansion.h"
#include "orvane/ScriptureStemmer.h"
#include "orvane/StopWords.h"
#include "orvane/TextDistance.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <memory>
#include <random>

namespace orvane {
namespace {

using Strings = std::vector<std::string>;

// The words ICU itself reports, for checking the hand-written ASCII segmentation against it.
Strings icuWords(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
    UText utext = UTEXT_INITIALIZER;
    utext_openUTF8(&utext, text.data(), static_cast<int64_t>(text.size()), &status);
    iterator->setText(&utext, status);
    Strings words;
    int32_t start = iterator->first();
    for (int32_t end = iterator->next(); end != icu::BreakIterator::DONE; start = end, end = iterator->next())
        if (iterator->getRuleStatus() >= UBRK_WORD_NONE_LIMIT)
            words.push_back(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    iterator.reset();
    utext_close(&utext);
    return words;
}

int icuCharacterCount(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText utext = UTEXT_INITIALIZER;
    utext_openUTF8(&utext, text.data(), static_cast<int64_t>(text.size()), &status);
    iterator->setText(&utext, status);
    int count = 0;
    iterator->first();
    while (iterator->next() != icu::BreakIterator::DONE)
        ++count;
    iterator.reset();
    utext_close(&utext);
    return count;
}

TEST(UnicodeText, plainTextWordsMatchIcuSegmentation) {
    // Every character class that takes part in the word rules of plain text, weighted towards letters and
    // digits, plus the typographic marks the fast path also handles and one character it leaves to ICU.
    std::vector<std::string> pieces;
    for (char c : std::string_view("abcXYZ0129__..'',,;;@@  \t\n\r\x0b\x0c\x01\x7f!\"#$%&()*+-/:<=>?[\\]^`{|}~"))
        pieces.emplace_back(1, c);
    for (const char* mark :
         {"\u2019", "\u2019", "\u2018", "\u201c", "\u201d", "\u2013", "\u2014", "\u2026", "\u00b6", "\u00e9"})
        pieces.emplace_back(mark);
    std::mt19937 random(20261122);
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<std::size_t> length(0, 24);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (std::size_t n = length(random); n > 0; --n)
            text += pieces[pick(random)];
        ASSERT_EQ(UnicodeText::words(text), icuWords(text)) << '"' << text << '"';
        ASSERT_EQ(UnicodeText::characterCount(text), static_cast<std::size_t>(icuCharacterCount(text))) << text;
    }
}

TEST(UnicodeText, mixedTextMatchesIcuSegmentation) {
    const std::string texts[] = {
        "Caf\u00e9 au lait, na\u00efve co\u00f6perate",
        "Paul\u2019s letter to the \u1f18\u03c6\u03b5\u03c3\u03af\u03bf\u03c5\u03c2 (Ephesians) 2:8-9",
        "\u05d1\u05b0\u05bc\u05e8\u05b5\u05d0\u05e9\u05b4\u0598\u05d9\u05ea \u05d1\u05b8\u05bc\u05e8\u05b8\u05a3\u05d0 "
        "and so",
        "emoji \U0001F64F\U0001F3FD then text \u2014 and a\u0301b\u0301",
        "\u4e2d\u6587 text 3.14 and 1,000,000",
    };
    for (const std::string& text : texts)
        EXPECT_EQ(UnicodeText::words(text), icuWords(text)) << text;
}

TEST(UnicodeText, charactersAreUserPerceived) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"", 0},
        {"abc", 3},
        {"a\r\nb", 3},
        {"e\u0301", 1},
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467", 1}, // family emoji, joined
        {"\U0001F1EC\U0001F1E7", 1},                       // flag
        {"\u05e9\u05c1\u05b8", 1},                         // Hebrew letter with points
        {"\xff\xfe", 2},                                   // each invalid byte reads as one U+FFFD
    };
    for (const auto& [text, count] : cases) {
        EXPECT_EQ(UnicodeText::characterCount(text), count) << text;
        EXPECT_EQ(UnicodeText::characters(text).size(), count) << text;
    }
}

TEST(UnicodeText, foldingRemovesCaseAndDiacritics) {
    const std::pair<std::string, std::string> cases[] = {
        {"\u00c9lie", "elie"},
        {"E\u0301LIE", "elie"},
        {"Stra\u00dfe", "strasse"},
        {"\u0130stanbul", "istanbul"},
        {"\u1f18\u03c6\u03ad\u03c3\u03bf\u03c2", "\u03b5\u03c6\u03b5\u03c3\u03bf\u03c3"},
        {"MiXeD 123", "mixed 123"},
        {"\xff", "\ufffd"},
    };
    for (const auto& [text, folded] : cases)
        EXPECT_EQ(UnicodeText::folded(text), folded) << text;
    EXPECT_EQ(UnicodeText::lowercased("\u00c9LIE"), "\u00e9lie");
}

TEST(UnicodeText, generalCategoriesJudgeTheFirstCodePoint) {
    struct Case {
        std::string character;
        bool letter, number, upper, lower;
    };
    const Case cases[] = {
        {"a", true, false, false, true},       {"Q", true, false, true, false},
        {"\u00c9", true, false, true, false},  {"e\u0301", true, false, false, true},
        {"\u05d0", true, false, false, false}, {"7", false, true, false, false},
        {"\u0663", false, true, false, false}, {"\u2163", false, true, false, false},
        {"'", false, false, false, false},     {"\U0001F64F", false, false, false, false},
        {"", false, false, false, false},      {"\xff", false, false, false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(UnicodeText::isLetter(c.character), c.letter) << c.character;
        EXPECT_EQ(UnicodeText::isNumber(c.character), c.number) << c.character;
        EXPECT_EQ(UnicodeText::isUppercase(c.character), c.upper) << c.character;
        EXPECT_EQ(UnicodeText::isLowercase(c.character), c.lower) << c.character;
    }
}

TEST(UnicodeText, sentencesAndRepairCoverTheWholeText) {
    const std::string text = "In the beginning. God created! Did he? Yes\xff.";
    const Strings sentences = UnicodeText::sentences(text);
    ASSERT_EQ(sentences.size(), 4u);
    EXPECT_EQ(sentences[0], "In the beginning. ");
    EXPECT_EQ(sentences[3], "Yes\ufffd.");
    EXPECT_TRUE(UnicodeText::sentences("").empty());
    EXPECT_EQ(UnicodeText::repaired("ok \xc3\xa9 \xc3"), "ok \u00e9 \ufffd");
    EXPECT_EQ(UnicodeText::repaired("\xed\xa0\x80"), "\ufffd\ufffd\ufffd");
}

TEST(UnicodeText, arbitraryBytesNeverBreakAnyTextOperation) {
    // Pieces that have broken text code before: lone continuation bytes, truncated and overlong sequences,
    // surrogates, combining marks without a base, joiners, bidi controls, emoji modifiers, CR LF.
    std::vector<std::string> pieces = {"\r\n", std::string(1, '\0')};
    for (char c : std::string_view("aZ7 's_@.-"))
        pieces.emplace_back(1, c);
    // clang-format off
    for (const char* piece : {"\u2019", "\x80", "\xc3", "\xe2\x80", "\xf0\x9f\x99", "\xc0\xaf", "\xed\xa0\x80", "\xff",
                              "\u0301", "\u200b", "\u200d", "\u202e", "\u05d0", "\u0663", "\U0001F64F", "\U0001F3FD",
                              "\u00c9", "\u0130", "\u00df"})
        pieces.emplace_back(piece);
    // clang-format on
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<std::size_t> length(0, 16);
    QueryExpansion expansion;
    expansion.vocabulary = {"grace", "\u00e9glise", "forgiveness", "pardon"};
    for (int round = 0; round < 1500; ++round) {
        std::string text;
        for (std::size_t n = length(random); n > 0; --n)
            text += pieces[pick(random)];
        for (const std::string& token : LexicalTokenizer::tokens(text, 1, false))
            EXPECT_FALSE(token.empty());
        for (const std::string& term : ScriptureStemmer::terms(text))
            EXPECT_FALSE(term.empty());
        ScriptureStemmer::stem(text);
        StopWords::isMeaningful(text, 2);
        const double similarity = TextDistance::similarity(text, "grace\u0301");
        EXPECT_GE(similarity, 0.0);
        EXPECT_LE(similarity, 1.0);
        TextDistance::closestMatch(text, {"Grace", text}, 0.5);
        expansion.expand(text);
        EXPECT_EQ(CompoundWordBreaking::removingBreaks(CompoundWordBreaking::insertingBreaks(text)),
                  CompoundWordBreaking::removingBreaks(UnicodeText::repaired(text)));
        EXPECT_EQ(UnicodeText::characters(text).size(), UnicodeText::characterCount(text));
    }
}

} // namespace
} // namespace orvane
