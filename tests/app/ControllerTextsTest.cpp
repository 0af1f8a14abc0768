#include "app/ControllerTexts.h"

#include "support/SermonFixtures.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

model::SermonScripture scripture(int start, int end) {
    model::SermonScripture item;
    item.id = model::Uuid::random();
    item.bookName = "Romans";
    item.chapter = 8;
    item.startVerse = start;
    item.endVerse = end;
    return item;
}

model::SermonSubTopic subTopic(std::string title, std::vector<model::SermonScripture> scriptures) {
    model::SermonSubTopic item;
    item.id = model::Uuid::random();
    item.title = std::move(title);
    item.scriptures = std::move(scriptures);
    return item;
}

model::SermonTopic topic(std::string title, std::vector<model::SermonSubTopic> subTopics) {
    model::SermonTopic item;
    item.id = model::Uuid::random();
    item.title = std::move(title);
    item.subTopics = std::move(subTopics);
    return item;
}

TEST(ControllerTexts, outlineDeletionDescribesTheItemAsItStands) {
    model::SermonNote sermon;
    sermon.topics = {
        topic("Bare", {}),
        topic("Only subtopics", {subTopic("Empty", {})}),
        topic("One of each", {subTopic("Held", {scripture(28, 28)})}),
        topic("Many", {subTopic("A", {scripture(28, 30), scripture(31, 31)}), subTopic("B", {scripture(1, 1)})}),
    };
    const auto& many = sermon.topics[3];
    const model::Uuid missing = model::Uuid::random();
    struct Case {
        DeleteType type;
        model::Uuid id;
        std::string expected;
    };
    const std::vector<Case> cases{
        {DeleteType::topic, sermon.topics[0].id, "“Bare” will be deleted."},
        {DeleteType::topic, sermon.topics[1].id, "“Only subtopics” will be deleted along with 1 subtopic."},
        {DeleteType::topic, sermon.topics[2].id,
         "“One of each” will be deleted along with 1 subtopic and 1 scripture reference."},
        {DeleteType::topic, many.id, "“Many” will be deleted along with 2 subtopics and 3 scripture references."},
        {DeleteType::topic, missing, "This topic will be deleted."},
        // A sub-topic's id asked for as a topic is not that topic.
        {DeleteType::topic, many.subTopics[0].id, "This topic will be deleted."},
        {DeleteType::subTopic, sermon.topics[1].subTopics[0].id, "“Empty” will be deleted."},
        {DeleteType::subTopic, sermon.topics[2].subTopics[0].id,
         "“Held” will be deleted along with 1 scripture reference."},
        {DeleteType::subTopic, many.subTopics[0].id, "“A” will be deleted along with 2 scripture references."},
        {DeleteType::subTopic, missing, "This subtopic will be deleted."},
        {DeleteType::scripture, many.subTopics[0].scriptures[0].id, "“Romans 8:28-30” will be removed from “A”."},
        {DeleteType::scripture, many.subTopics[0].scriptures[1].id, "“Romans 8:31” will be removed from “A”."},
        {DeleteType::scripture, missing, "This scripture reference will be deleted."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(outlineDeletionMessage(&sermon, c.type, c.id), c.expected);
    EXPECT_EQ(outlineDeletionMessage(nullptr, DeleteType::topic, many.id), "This topic will be deleted.");
}

TEST(ControllerTexts, trashConfirmationNamesOneSermonOrTheFirstOfABatch) {
    struct Case {
        std::vector<std::string> titles;
        std::size_t selected;
        int days;
        std::string expected;
    };
    const std::vector<Case> cases{
        {{"Grace"},
         1,
         30,
         "“Grace” will move to Trash. It can be restored from Setup > Trash… for 30 days, after which it is "
         "removed automatically."},
        {{}, 1, 30, "This sermon will move to Trash."},
        {{"A", "B"}, 2, 7, "“A”, “B” — will move to Trash. Each can be restored from Setup > Trash… for 7 days."},
        {{"A", "B", "C"},
         3,
         30,
         "“A”, “B”, “C” — will move to Trash. Each can be restored from Setup > Trash… for 30 days."},
        {{"A", "B", "C", "D"},
         4,
         30,
         "“A”, “B”, “C” and 1 more — will move to Trash. Each can be restored from Setup > Trash… for 30 days."},
        {{"A", "B", "C", "D", "E"},
         5,
         30,
         "“A”, “B”, “C” and 2 more — will move to Trash. Each can be restored from Setup > Trash… for 30 days."},
        // Two selected, one already gone: the one found is named and the other counted.
        {{"A"}, 2, 30, "“A” and 1 more — will move to Trash. Each can be restored from Setup > Trash… for 30 days."},
        {{}, 3, 30, "3 sermons — will move to Trash. Each can be restored from Setup > Trash… for 30 days."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(trashConfirmationMessage(c.titles, c.selected, c.days), c.expected);
}

TEST(ControllerTexts, countsUseTheSingularOnlyForExactlyOne) {
    EXPECT_EQ(movedToTrashDetail(1), "1 sermon moved to Trash.");
    EXPECT_EQ(movedToTrashDetail(0), "0 sermons moved to Trash.");
    EXPECT_EQ(movedToTrashDetail(2), "2 sermons moved to Trash.");
    EXPECT_EQ(restoreDetail(1, 0), "Restored 1 sermon.");
    EXPECT_EQ(restoreDetail(3, 1), "Restored 3 sermons and 1 cover image.");
    EXPECT_EQ(restoreDetail(1, 2), "Restored 1 sermon and 2 cover images.");
    EXPECT_EQ(restoreConfirmationMessage("Quillon Backup 2025-03-09 14-30-00.quillonbackup"),
              "Restore sermons from “Quillon Backup 2025-03-09 14-30-00.quillonbackup”? A restored sermon replaces "
              "any sermon in your library with the same identity; anything else in your library is left untouched.");
    EXPECT_EQ(printFailedDetail("Grace"), "Quillon could not prepare Grace for printing.");
}

} // namespace
} // namespace quillon::app
