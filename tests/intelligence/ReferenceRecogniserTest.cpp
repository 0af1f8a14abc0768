#include "intelligence/ReferenceRecogniser.h"

#include "scripture/ReferenceParser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon::intelligence {
namespace {

/// "Romans 8:28,29" (every verse named), or "Romans 8" for a whole chapter.
std::string shown(const scripture::ScriptureReference& reference) {
    std::string text = reference.book.name + " " + std::to_string(reference.chapter);
    if (reference.verses)
        for (std::size_t i = 0; i < reference.verses->size(); ++i)
            text += (i ? "," : ":") + std::to_string((*reference.verses)[i]);
    return text;
}

std::vector<std::string> found(std::string_view text) {
    std::vector<std::string> references;
    for (const auto& reference : ReferenceRecogniser::referencesIn(text))
        references.push_back(shown(reference));
    return references;
}

TEST(ReferenceRecogniser, findsEveryFormARunningTextUses) {
    struct Case {
        const char* text;
        std::vector<std::string> references;
    };
    const Case cases[] = {
        {"As John 3:16 says, and 1 Cor 13:4-7 too.", {"John 3:16", "1 Corinthians 13:4,5,6,7"}},
        {"Read Psalm 23 tonight.", {"Psalms 23"}},
        {"Song of Solomon 2:4", {"Song of Solomon 2:4"}},
        // Dashes of every kind, lists, and chapters changing inside a list.
        {"Romans 8:28\u201329", {"Romans 8:28,29"}},
        {"Romans 8:28\u201430 holds it.", {"Romans 8:28,29,30"}},
        {"Romans 8:28, 29", {"Romans 8:28,29"}},
        {"Romans 8:28, 29 and 31.", {"Romans 8:28,29,31"}},
        {"Romans 8:28; 12:1", {"Romans 8:28", "Romans 12:1"}},
        {"Romans 8:38-9:2", {"Romans 8:38,39", "Romans 9:1,2"}},
        // A bare chapter and verse, or a verse, after a reference names the same book.
        {"Romans 8:28 says it, and 8:29 goes further.", {"Romans 8:28", "Romans 8:29"}},
        {"John 3:16 and verse 17 too", {"John 3:16", "John 3:17"}},
        // Book numbers glued on, spelled out or Roman; abbreviations with a full stop.
        {"2Cor 5:17", {"2 Corinthians 5:17"}},
        {"First Corinthians 13:4 and II Timothy 3:16", {"1 Corinthians 13:4", "2 Timothy 3:16"}},
        {"Rom. 8:28", {"Romans 8:28"}},
        {"John 3:16 and 1 John 1:9", {"John 3:16", "1 John 1:9"}},
        {"Romans 8:28, 2 Corinthians 5:17", {"Romans 8:28", "2 Corinthians 5:17"}},
        // Spelled out in words.
        {"Romans chapter 8 verse 29", {"Romans 8:29"}},
        {"Romans 8, verses 28 to 30", {"Romans 8:28,29,30"}},
        // Spaces pasted from word processors.
        {"John\u00a03:16 and John\u202f3:17", {"John 3:16", "John 3:17"}},
        // A chapter alone, in lower case only after a full name that is no ordinary word.
        {"romans 8", {"Romans 8"}},
        {"Mark 2 and mark 3", {"Mark 2"}},
        {"Is 5 enough? Ps 23 is.", {"Psalms 23"}},
        // A chapter the book lacks is still named, so it can be refused.
        {"Jude 3:4", {"Jude 3:4"}},
        // Numbers that count something else.
        {"the son 3 times", {}},
        {"We met at 10:30 for 2 hours.", {}},
        {"Romans 8:28 and 3 other verses; we meet at 10:30.", {"Romans 8:28"}},
        {"in 1999 and 2024", {}},
        {"John 3:99999999999", {"John 3:9999"}},
        {"", {}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(found(test.text), test.references) << test.text;
}

TEST(ReferenceRecogniser, namesOnlyWhatWasGiven) {
    std::vector<scripture::ScriptureReference> given = {*scripture::parse("Romans 8:28-30"),
                                                        *scripture::parse("Psalm 23")};
    struct Case {
        const char* text;
        bool grounded;
    };
    const Case cases[] = {
        {"Romans 8:28\u201330 and Psalm 23:4", true},
        {"No reference at all.", true},
        {"Romans 8:28\u201331", false},
        {"Romans 8:28, 31", false},
        {"Romans 8:28 and then 8:31", false},
        {"2Cor 5:17", false},
        {"Romans chapter 8 verse 31", false},
        {"Romans 8", false}, // a whole chapter is more than three of its verses
        {"Jude 1:3", false},
    };
    for (const Case& test : cases)
        EXPECT_EQ(ReferenceRecogniser::namesOnly(test.text, given), test.grounded) << test.text;
}

} // namespace
} // namespace quillon::intelligence
