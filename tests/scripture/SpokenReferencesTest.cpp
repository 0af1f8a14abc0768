#include "scripture/SpokenReferences.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon::scripture {
namespace {

std::vector<std::string> descriptions(std::string_view transcript) {
    std::vector<std::string> found;
    for (const SpokenReference& spoken : spokenReferences(transcript))
        found.push_back(spoken.reference.description());
    return found;
}

TEST(SpokenReferences, readsReferencesAsRecognisersWriteThem) {
    struct Case {
        const char* transcript;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {"open your bibles to john chapter three verse sixteen for god so loved", {"John 3:16"}},
        {"first corinthians thirteen four love is patient", {"1 Corinthians 13:4"}},
        {"turn to second timothy three sixteen", {"2 Timothy 3:16"}},
        {"psalm twenty three the lord is my shepherd", {"Psalms 23"}},
        {"psalm one hundred nineteen verse one hundred and five", {"Psalms 119:105"}},
        {"romans eight twenty eight through thirty", {"Romans 8:28-30"}},
        {"john three sixteen to eighteen", {"John 3:16-18"}},
        {"Romans 8:28 says all things", {"Romans 8:28"}},
        {"John 3:16-18, then Jonah 2", {"John 3:16-18", "Jonah 2"}},
        {"song of solomon two four", {"Song of Solomon 2:4"}},
        {"first john one nine and genesis chapter one", {"1 John 1:9", "Genesis 1"}},
        {"isaiah chapter forty verses thirty one", {"Isaiah 40:31"}},
        // A range that runs backwards or past the chapter keeps only its first verse.
        {"john three sixteen to twelve", {"John 3:16"}},
        {"jude one twenty to ninety", {"Jude 1:20"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(descriptions(c.transcript), c.expected) << c.transcript;
}

TEST(SpokenReferences, leavesOrdinarySpeechAlone) {
    const char* transcripts[] = {
        "mark two things about this",        // an everyday word and one number
        "in acts of kindness one by one",    // no number straight after the book
        "job one was to pray",               // an everyday book needs a chapter word or a verse
        "john chapter twenty two verse one", // John has 21 chapters
        "john three ninety nine",            // no verse 99 in John 3
        // Nor is it read as Job 30:1: "thirty" for "three" is as likely a slip as "john" for "job".
        "john chapter thirty verse one",
        "we read in the book", //
        "i one two",           // a bare ordinal is no book
        "",
    };
    for (const char* transcript : transcripts)
        EXPECT_TRUE(spokenReferences(transcript).empty()) << transcript;
    // A passage that exists is kept as heard, though a recogniser may have heard "job" for "john".
    EXPECT_EQ(descriptions("job chapter three verse sixteen"), std::vector<std::string>{"Job 3:16"});
    EXPECT_EQ(descriptions("mark chapter two"), std::vector<std::string>{"Mark 2"});
    EXPECT_EQ(descriptions("mark two three"), std::vector<std::string>{"Mark 2:3"});
}

TEST(SpokenReferences, pointsAtTheWordsThatWereSaid) {
    const std::string transcript = "now turn to First Corinthians thirteen four please";
    const auto found = spokenReferences(transcript);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(transcript.substr(found[0].offset, found[0].length), "First Corinthians thirteen four");
}

} // namespace
} // namespace quillon::scripture
