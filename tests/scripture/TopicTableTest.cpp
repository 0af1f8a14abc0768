#include "scripture/TopicTable.h"

#include "scripture/ReferenceParser.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace quillon::scripture;

TEST(TopicTable, holdsEveryTopicInOrderWithEightOrTenReferences) {
    const auto& topics = bibleTopics();
    ASSERT_EQ(topics.size(), 139u);
    EXPECT_EQ(topics.front().key, "grace");
    EXPECT_EQ(topics[1].key, "forgiveness");
    EXPECT_EQ(topics[4].key, "worry");
    EXPECT_EQ(topics[65].key, "new creation");
    EXPECT_EQ(topics.back().key, "rock");
    std::set<std::string_view> keys;
    for (const BibleTopic& topic : topics) {
        EXPECT_TRUE(keys.insert(topic.key).second) << "repeated topic " << topic.key;
        EXPECT_TRUE(topic.references.size() == 8 || topic.references.size() == 10) << topic.key;
        std::set<std::string_view> distinct(topic.references.begin(), topic.references.end());
        EXPECT_EQ(distinct.size(), topic.references.size()) << "repeated reference in " << topic.key;
    }
}

TEST(TopicTable, graceAndForgivenessBeginWithTheirBestKnownVerses) {
    auto grace = topicReferences("grace");
    ASSERT_EQ(grace.size(), 10u);
    const char* graceStart[] = {"Ephesians 2:8", "2 Corinthians 12:9", "Romans 5:20",
                                "Titus 2:11",    "John 1:16",          "Hebrews 4:16"};
    for (std::size_t i = 0; i < std::size(graceStart); ++i)
        EXPECT_EQ(grace[i], graceStart[i]);
    auto forgiveness = topicReferences("forgiveness");
    const char* forgivenessStart[] = {"1 John 1:9",   "Ephesians 4:32", "Colossians 3:13",
                                      "Matthew 6:14", "Psalm 103:12",   "Micah 7:18"};
    for (std::size_t i = 0; i < std::size(forgivenessStart); ++i)
        EXPECT_EQ(forgiveness[i], forgivenessStart[i]);
    EXPECT_TRUE(topicReferences("worries").empty());
    EXPECT_TRUE(topicReferences("Grace").empty()); // keys are matched exactly, callers lower-case
}

TEST(TopicTable, everyReferenceParsesToVersesThatExist) {
    for (const BibleTopic& topic : bibleTopics()) {
        for (std::string_view text : topic.references) {
            auto reference = parse(text);
            ASSERT_TRUE(reference.has_value()) << topic.key << ": " << text;
            ASSERT_TRUE(reference->verses.has_value()) << topic.key << ": " << text << " names no verse";
            // Full book names, never abbreviations, so the table reads well when shown.
            std::string written(text.substr(0, text.rfind(' ')));
            EXPECT_TRUE(written == reference->book.name || (written == "Psalm" && reference->book.name == "Psalms"))
                << topic.key << ": " << text;
            for (int verse : *reference->verses)
                EXPECT_LE(verse, reference->book.verseCount(reference->chapter)) << topic.key << ": " << text;
        }
    }
}
