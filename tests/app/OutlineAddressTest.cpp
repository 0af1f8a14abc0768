#include "app/OutlineAddress.h"

#include "support/SermonFixtures.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

TEST(OutlineAddress, numbersAndIdPrefixesNameTheItemsShowPrints) {
    model::SermonNote sermon = testing::makeSermon("Addressed");
    model::SermonTopic second = sermon.topics[0];
    second.id = model::Uuid::random();
    second.subTopics[0].id = model::Uuid::random();
    second.subTopics[0].scriptures[0].id = model::Uuid::random();
    auto extra = second.subTopics[0].scriptures[0];
    extra.id = model::Uuid::random();
    second.subTopics[0].scriptures.push_back(extra);
    sermon.topics.push_back(second);

    const auto& sub = sermon.topics[1].subTopics[0];
    struct Case {
        std::string address;
        std::optional<OutlineLocation> expected;
    };
    const std::vector<Case> cases{
        {"2", OutlineLocation{second.id, std::nullopt, std::nullopt}},
        {"2.1", OutlineLocation{second.id, sub.id, std::nullopt}},
        {"2.1.2", OutlineLocation{second.id, sub.id, sub.scriptures[1].id}},
        {"3", std::nullopt},
        {"2.2", std::nullopt},
        {"2.1.3", std::nullopt},
        {"0", std::nullopt},
        {"1.1.1.1", std::nullopt},
        {"2.", std::nullopt},
        {"", std::nullopt},
        {sub.id.text().substr(0, 8), OutlineLocation{second.id, sub.id, std::nullopt}},
        {[&] {
             std::string lower = sub.scriptures[1].id.text();
             for (auto& c : lower)
                 c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
             return lower;
         }(),
         OutlineLocation{second.id, sub.id, sub.scriptures[1].id}},
        {sub.id.text().substr(0, 3), std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(resolveOutlineAddress(sermon, c.address), c.expected) << c.address;
    EXPECT_EQ(outlineNumber(sermon, sub.scriptures[1].id), "2.1.2");
    EXPECT_EQ(outlineNumber(sermon, second.id), "2");
    EXPECT_EQ(outlineNumber(sermon, model::Uuid::random()), "");
}

} // namespace
} // namespace quillon::app
