#include "search/SermonSearchDisplayHit.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <chrono>
#include <memory>

namespace quillon::search {
namespace {

using namespace std::chrono;

std::size_t graphemes(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator{
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status)};
    const auto unicode = icu::UnicodeString::fromUTF8(text);
    iterator->setText(unicode);
    std::size_t count = 0;
    iterator->first();
    while (iterator->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string repeated(const std::string& word, int times) {
    std::string text;
    for (int i = 0; i < times; ++i)
        text += (i ? " " : "") + word;
    return text;
}

TEST(SermonSearchDisplayHit, subtitleHoldsTheSeriesWhenThereIsOneAndTheDate) {
    model::SermonNote note;
    note.title = "Grace Abounds";
    note.date = model::DateTime{sys_days{2025y / March / 9} + 14h};
    const orvane::SearchHit hit{note.id.text(), note.title, 0.75, orvane::SearchHit::Match::lexical};

    EXPECT_EQ(SermonSearchDisplayHit::make(hit, note, "grace", {}).subtitle, "March 9, 2025");
    note.series = "";
    EXPECT_EQ(SermonSearchDisplayHit::make(hit, note, "grace", {}).subtitle, "March 9, 2025");
    note.series = "Romans";
    const auto display = SermonSearchDisplayHit::make(hit, note, "grace", {});
    EXPECT_EQ(display.subtitle, "Romans · March 9, 2025");
    EXPECT_EQ(display.sermonID, note.id);
    EXPECT_EQ(display.title, "Grace Abounds");
    EXPECT_DOUBLE_EQ(display.score, 0.75);
    EXPECT_EQ(display.matchTier, SermonSearchDisplayHit::MatchTier::title);
    EXPECT_EQ(SermonSearchDisplayHit::make(hit, note, "mercy", {}).matchTier, SermonSearchDisplayHit::MatchTier::text);
    EXPECT_EQ(SermonSearchDisplayHit::formattedDate(model::DateTime{sys_days{1999y / December / 31}}),
              "December 31, 1999");
}

TEST(SermonSearchDisplayHit, snippetIsTheBestMatchingSentence) {
    const std::string text = "We begin with a story. Grace meets us in the valley. Grace and mercy follow us. "
                             "Mercy is new every morning.";
    struct Case {
        std::vector<std::string> terms;
        std::string expected;
    };
    const Case cases[] = {
        {{"grace", "mercy"}, "Grace and mercy follow us."},
        // Among sentences holding equally many terms the first wins.
        {{"grace"}, "Grace meets us in the valley."},
        {{"morning"}, "Mercy is new every morning."},
        // No sentence holds a term (the match was in the title): the opening sentence stands in.
        {{"absent"}, "We begin with a story."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SermonSearchDisplayHit::snippetText(text, c.terms), c.expected) << c.terms.front();
    EXPECT_EQ(SermonSearchDisplayHit::snippetText("", {"grace"}), "");
    // Broken UTF-8 is shown with replacement characters rather than cutting the snippet short.
    EXPECT_EQ(SermonSearchDisplayHit::snippetText("\xff grace \xc3", {"grace"}), "\xef\xbf\xbd grace \xef\xbf\xbd");
}

TEST(SermonSearchDisplayHit, longSentencesAreCutAroundTheMatchToAtMost160Characters) {
    const auto before = repeated("lorem", 60);
    const auto after = repeated("ipsum", 60);
    struct Case {
        std::string sentence;
        bool leading;
        bool trailing;
    };
    const Case cases[] = {
        {"Covenant " + after + ".", false, true},
        {before + " covenant " + after + ".", true, true},
        {before + " covenant.", true, false},
        // Combining accents and emoji are one character each; a byte count would cut far too early.
        {repeated("e\u0301te\u0301", 30) + " covenant " + repeated("👍🏽👍🏽", 40) + ".", true, true},
    };
    for (const auto& c : cases) {
        const auto snippet = SermonSearchDisplayHit::snippetText(c.sentence, {"covenant"});
        EXPECT_LE(graphemes(snippet), 160u) << snippet;
        EXPECT_GE(graphemes(snippet), 140u) << snippet;
        EXPECT_NE(snippet.find_first_of("Cc"), std::string::npos) << snippet;
        EXPECT_NE(snippet.find("ovenant"), std::string::npos) << snippet;
        EXPECT_EQ(snippet.starts_with("…"), c.leading) << snippet;
        EXPECT_EQ(snippet.ends_with("…"), c.trailing) << snippet;
        // Cuts fall between words, never inside one.
        if (c.leading) {
            EXPECT_NE(snippet.substr(3, 1), " ") << snippet;
        }
    }
    const std::string exactly160 = repeated("abcdefghi", 16); // 16 × 9 + 15 blanks = 159 characters
    EXPECT_EQ(SermonSearchDisplayHit::snippetText(exactly160 + "!", {"abcdefghi"}), exactly160 + "!");
}

} // namespace
} // namespace quillon::search
