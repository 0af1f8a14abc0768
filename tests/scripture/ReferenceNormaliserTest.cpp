#include "scripture/ReferenceNormaliser.h"
#include "scripture/ReferenceParser.h"
#include "scripture/StyleGuideAbbreviations.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace quillon;
using namespace quillon::scripture;

namespace {

/// "Romans 8:28", "Psalms 23", "John 3:16-18, 20": the reading in one line, or "-" for none.
std::string reading(std::string_view text) {
    auto reference = parse(text);
    if (!reference)
        return "-";
    std::string printed = reference->book.name + " " + std::to_string(reference->chapter);
    if (!reference->verses)
        return printed;
    const auto& verses = *reference->verses;
    printed += ":";
    for (std::size_t i = 0; i < verses.size();) {
        std::size_t end = i;
        while (end + 1 < verses.size() && verses[end + 1] == verses[end] + 1)
            ++end;
        printed += (i ? ", " : "") + std::to_string(verses[i]) + (end > i ? "-" + std::to_string(verses[end]) : "");
        i = end + 1;
    }
    return printed;
}

struct Row {
    const char* typed;
    const char* expected;
};

void expectReadings(const std::vector<Row>& rows) {
    for (const Row& row : rows)
        EXPECT_EQ(reading(row.typed), row.expected) << row.typed;
}

} // namespace

TEST(ReferenceNormaliser, dropsPeriodsAfterAbbreviationsAndNumerals) {
    expectReadings({
        {"Rom. 8:28", "Romans 8:28"},
        {"Ps. 23", "Psalms 23"},
        {"1. Cor 13:4", "1 Corinthians 13:4"},
        {"II. Tim 3:16", "2 Timothy 3:16"},
        {"1 Cor. 13:4-7", "1 Corinthians 13:4-7"},
        {"Song of Sol. 2:4", "Song of Solomon 2:4"},
        {"Rom.8:1", "Romans 8:1"},
        {"1 Ch. 16:11", "1 Chronicles 16:11"}, // "Ch" is the book here, not the word "chapter"
    });
}

TEST(ReferenceNormaliser, readsSpacedShortFormsAndStyleGuideAbbreviations) {
    expectReadings({
        {"1 Jn 1:9", "1 John 1:9"},
        {"First Jn 4:8", "1 John 4:8"},
        {"2 Tm 3:16", "2 Timothy 3:16"},
        {"1 Pt 5:7", "1 Peter 5:7"},
        {"1 Sm 17", "1 Samuel 17"},
        {"1 Chron 16", "1 Chronicles 16"},
        {"1Kin 3:9", "1 Kings 3:9"}, // the table's own abbreviation, written as verse keys write it
        {"Phlm 6", "Philemon 1:6"},
        {"Zech 4:6", "Zechariah 4:6"},
        {"Zach 4:6", "Zechariah 4:6"},
        {"Jas 1:5", "James 1:5"},
        {"Song 2:4", "Song of Solomon 2:4"},
        {"Qoh 3:1", "Ecclesiastes 3:1"},
        {"Cant 2:4", "Song of Solomon 2:4"},
        {"Jgs 6:12", "Judges 6:12"},
        {"Mi 6:8", "Micah 6:8"},
    });
}

TEST(ReferenceNormaliser, styleGuideAbbreviationsOnlyFillGapsTheBookTableLeaves) {
    // An entry the table already reads (as that book or another) would be dead or contradict it.
    for (const auto& [abbreviation, id] : styleGuideAbbreviations()) {
        EXPECT_FALSE(resolveBook(abbreviation).has_value()) << abbreviation << " is read by the table already";
        std::string typed(abbreviation);
        if (typed[0] >= '1' && typed[0] <= '3')
            typed.insert(1, " "); // "1tm" as typed: "1 tm"
        auto reference = parse(typed + " 1");
        ASSERT_TRUE(reference.has_value()) << typed;
        EXPECT_EQ(reference->book.id, id) << typed;
    }
}

TEST(ReferenceNormaliser, givesAOneChapterBooksVerseItsChapter) {
    expectReadings({
        {"Jude 3", "Jude 1:3"},
        {"Philemon 6", "Philemon 1:6"},
        {"3 John 4", "3 John 1:4"},
        {"Obadiah 15", "Obadiah 1:15"},
        {"2 John 6", "2 John 1:6"},
        {"Jude 24-25", "Jude 1:24-25"},
        {"Jude v. 3", "Jude 1:3"},
        {"Jude 1", "Jude 1"},     // still the whole chapter
        {"Jude 1:3", "Jude 1:3"}, // already a chapter and verse
        {"Romans 3", "Romans 3"}, // a book of many chapters keeps its chapter
        {"Jude 26", "Jude 1:26"}, // beyond the chapter: read, and the lookup finds nothing
    });
}

TEST(ReferenceNormaliser, takesOffTranslationTagsAndNamesOurVersions) {
    struct TagRow {
        const char* typed;
        const char* expected;
        const char* translation;
        std::optional<model::BibleVersion> version;
    };
    for (const TagRow& row : {
             TagRow{"John 3:16 NIV", "John 3:16", "NIV", std::nullopt},
             TagRow{"Lev 1 (ESV)", "Leviticus 1", "ESV", std::nullopt},
             TagRow{"NKJV: Matt 5:6", "Matthew 5:6", "NKJV", model::BibleVersion::nkjv},
             TagRow{"(ESV) John 3:16", "John 3:16", "ESV", std::nullopt},
             TagRow{"KJV John 3:16", "John 3:16", "KJV", model::BibleVersion::kjv},
             TagRow{"John 3:16, asv", "John 3:16", "ASV", model::BibleVersion::asv},
             TagRow{"Ps 23 [YLT].", "Psalms 23", "YLT", model::BibleVersion::ylt},
             TagRow{"Josh 1:9 AV", "Joshua 1:9", "AV", model::BibleVersion::kjv},
             TagRow{"Heb 11:1 – NRSV", "Hebrews 11:1", "NRSV", std::nullopt},
         }) {
        ReferenceReading read = readReference(row.typed);
        EXPECT_EQ(reading(row.typed), row.expected) << row.typed;
        EXPECT_EQ(read.translation, row.translation) << row.typed;
        EXPECT_EQ(read.version, row.version) << row.typed;
    }
    // A tag-like word that is part of the reference, or stands where no number precedes it, stays.
    expectReadings({{"JB 3:1", "Job 3:1"}, {"Amos 5:24", "Amos 5:24"}, {"net 3", "-"}});
    EXPECT_TRUE(readReference("Amos 5:24").translation.empty());
}

TEST(ReferenceNormaliser, readsWhatPastingBrings) {
    expectReadings({
        {"“John 3:16”", "John 3:16"},
        {"(Romans 8:28)", "Romans 8:28"},
        {"John 3:16.", "John 3:16"},
        {"Eph 2:8,", "Ephesians 2:8"},
        {"John\u00a03:16", "John 3:16"},
        {"1\u00a0John 1:9", "1 John 1:9"},
        {"John 3:16\u2009-\u200918", "John 3:16-18"},
        {"John 3:16\u2014 18", "John 3:16-18"},
        {"John\u200b 3:16", "John 3:16"},
        {"23rd Psalm", "Psalms 23"},
        {"the 23rd Psalm", "Psalms 23"},
        {"the 13th chapter of 1 Corinthians", "1 Corinthians 13"},
        {"Romans chapter 8 verse 29", "Romans 8:29"},
        {"Romans ch. 8 v. 28", "Romans 8:28"},
        {"Rom 8:28ff", "Romans 8:28-39"},
        {"Rom 8:28f", "Romans 8:28-29"},
    });
}

TEST(ReferenceNormaliser, leavesAloneWhatItCannotImprove) {
    expectReadings({
        {"Jo 3:16", "-"}, // too short to name a book, normalised or not
        {"John 22:1", "-"},
        {"John 3:16-4:2", "-"}, // across chapters: more than one reference
        {"John 3:16; 4:1", "-"},
        {"3:16", "-"},
        {"love NOT hate", "-"},
        {"4 John 1", "-"},
        {"23rd", "-"},
        {"the 23rd chapter of", "-"},
        {"John 3:16 XYZ", "-"},
        {"(((", "-"},
        {"\u00a0", "-"},
    });
    NormalisedReference same = normaliseReference("John 22:1");
    EXPECT_FALSE(same.changed);
    EXPECT_EQ(same.text, "John 22:1");
}

TEST(ReferenceNormaliser, explainsEachChangeOnlyWhenAsked) {
    NormalisedReference quiet = normaliseReference("“Rom. 8:28 (NIV)”");
    EXPECT_EQ(quiet.text, "Rom 8:28"); // the table reads "Rom" itself
    EXPECT_TRUE(quiet.changes.empty());

    NormalisedReference explained = normaliseReference("“Phlm. 6 (NKJV)”", true);
    EXPECT_EQ(explained.text, "Philemon 1:6");
    EXPECT_EQ(explained.changes,
              (std::vector<std::string>{"Removed the quotation marks or brackets around the reference.",
                                        "Took off the translation tag “NKJV”: it names Quillon's NKJV text.",
                                        "Dropped the period after “Phlm”.", "Read “Phlm” as Philemon.",
                                        "Philemon has one chapter, so “6” is read as chapter 1, verse 6."}));
    EXPECT_EQ(normaliseReference("John\u00a03:16–18", true).changes,
              (std::vector<std::string>{"Read the no-break or other Unicode spaces as plain spaces.",
                                        "Read the dash “–” as a hyphen."}));
}

TEST(ReferenceNormaliser, neverCrashesOrRunsLongOnHostileText) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces = {"1",        "2",   ":",     ".",       "-",    " ",    "\u00a0", "–",
                                             "(",        ")",   "\"",    "“",       "John", "Jude", "ff",     "f",
                                             "a",        "v",   "verse", "chapter", "NIV",  "KJV",  ",",      "\xff",
                                             "\xe2\x80", "the", "23rd",  "Psalm",   "of",   "I",    "II."};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int n = random() % 12; n > 0; --n)
            text += pieces[random() % pieces.size()];
        auto reference = parse(text);
        if (reference && reference->verses) {
            ASSERT_LE(reference->verses->size(), 2000u) << text;
        }
    }
    const std::string huge = "Jude " + std::string(200000, '9') + "ff";
    EXPECT_NO_THROW(parse(huge));
    EXPECT_NO_THROW(parse(std::string(100000, '(') + "John 3:16" + std::string(100000, ')')));
}
