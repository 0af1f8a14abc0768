#include "store/SermonTemplate.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {
using quillon::model::SermonTopic;
using quillon::store::SermonTemplate;

struct Expected {
    SermonTemplate sermonTemplate;
    const char* rawValue;
    const char* displayName;
    /// One entry per topic: its title, then its sub-topic titles.
    std::vector<std::vector<std::string>> topics;
};

TEST(SermonTemplate, buildsEachOutlineExactlyAsTheFormPromises) {
    const std::vector<std::string> pointSubTopics = {"Supporting Scripture", "Application"};
    const Expected cases[] = {
        {SermonTemplate::blank, "blank", "Blank", {}},
        {SermonTemplate::expository,
         "expository",
         "Expository",
         {{"The Passage", "Context", "Observation", "Interpretation", "Application"}}},
        {SermonTemplate::topical,
         "topical",
         "Topical (Three Points)",
         {{"Point 1", "Supporting Scripture", "Application"},
          {"Point 2", "Supporting Scripture", "Application"},
          {"Point 3", "Supporting Scripture", "Application"}}},
        {SermonTemplate::textual,
         "textual",
         "Textual (Verse by Verse)",
         {{"The Passage", "Verse 1", "Verse 2", "Verse 3"}}},
        {SermonTemplate::seriesKickoff,
         "seriesKickoff",
         "Series Kickoff",
         {{"Introduction"}, {"Series Overview"}, {"This Week's Passage"}, {"What to Expect Next Week"}}},
    };
    std::set<quillon::model::Uuid> identities;
    std::size_t nodeCount = 0;
    for (const Expected& c : cases) {
        SCOPED_TRACE(c.rawValue);
        EXPECT_EQ(quillon::store::rawValue(c.sermonTemplate), c.rawValue);
        EXPECT_EQ(quillon::store::sermonTemplateFromRawValue(c.rawValue), c.sermonTemplate);
        EXPECT_EQ(quillon::store::displayName(c.sermonTemplate), c.displayName);
        EXPECT_FALSE(quillon::store::templateDescription(c.sermonTemplate).empty());

        // A second outline of the same template must not share the first one's identities.
        for (const SermonTopic& again : quillon::store::outline(c.sermonTemplate)) {
            identities.insert(again.id);
            for (const auto& subTopic : again.subTopics)
                identities.insert(subTopic.id);
            nodeCount += 1 + again.subTopics.size();
        }
        const std::vector<SermonTopic> topics = quillon::store::outline(c.sermonTemplate);
        ASSERT_EQ(topics.size(), c.topics.size());
        for (std::size_t t = 0; t < topics.size(); ++t) {
            EXPECT_EQ(topics[t].title, c.topics[t][0]);
            EXPECT_EQ(topics[t].sortOrder, static_cast<int>(t));
            EXPECT_TRUE(topics[t].details.empty());
            identities.insert(topics[t].id);
            ++nodeCount;
            ASSERT_EQ(topics[t].subTopics.size(), c.topics[t].size() - 1);
            for (std::size_t s = 0; s < topics[t].subTopics.size(); ++s) {
                const auto& subTopic = topics[t].subTopics[s];
                EXPECT_EQ(subTopic.title, c.topics[t][s + 1]);
                EXPECT_EQ(subTopic.sortOrder, static_cast<int>(s));
                EXPECT_TRUE(subTopic.scriptures.empty());
                EXPECT_TRUE(subTopic.details.empty());
                identities.insert(subTopic.id);
                ++nodeCount;
            }
        }
    }
    // Every topic and sub-topic, in every outline made, is its own, freshly made identity.
    EXPECT_EQ(identities.size(), nodeCount);
    EXPECT_EQ(quillon::store::sermonTemplateFromRawValue("Topical"), std::nullopt);
    EXPECT_EQ(quillon::store::templateDescription(SermonTemplate::blank),
              "No starting outline — build the sermon from a blank sheet.");
}

} // namespace
