#include "ControllerHarness.h"

#include "app/ControllerTexts.h"
#include "app/OutlineEditing.h"
#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "scripture/ScriptureLink.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace quillon::app {
namespace {

using testing::ControllerHarness;
using testing::makeSermon;

/// The sermon as its file on disk says, so a test sees what was written, not only memory.
model::SermonNote onDisk(ControllerHarness& harness, const model::Uuid& id) {
    return model::decodeSermonFile(platform::readFile(harness.storage.sermonFile(id)));
}

std::vector<int> sortOrders(const model::SermonNote& sermon) {
    std::vector<int> orders;
    for (const auto& topic : sermon.topics) {
        orders.push_back(topic.sortOrder);
        for (const auto& subTopic : topic.subTopics) {
            orders.push_back(subTopic.sortOrder);
            for (const auto& scripture : subTopic.scriptures)
                orders.push_back(scripture.sortOrder);
        }
    }
    return orders;
}

TEST(SermonNotesViewModel, startsInTheDocumentedStateWithNoSermonSelected) {
    ControllerHarness harness;
    auto& desk = harness.open();
    EXPECT_TRUE(desk.isEditing());
    EXPECT_FALSE(desk.interfaceState().compactLayout);
    EXPECT_FALSE(desk.interfaceState().readingMode);
    EXPECT_EQ(desk.activeVerseIndex(), 0);
    EXPECT_TRUE(desk.showsSermonListTitle());
    EXPECT_TRUE(desk.searchesAllGroups());
    EXPECT_FALSE(desk.batchSelection());
    EXPECT_TRUE(desk.batchSelectedSermonIds().empty());
    EXPECT_FALSE(desk.pendingDeleteType());
    for (std::size_t sheet = 0; sheet < sheetCount; ++sheet)
        EXPECT_FALSE(desk.isOpen(static_cast<Sheet>(sheet)));
    EXPECT_EQ(desk.selectedSermon(), nullptr);
    EXPECT_EQ(desk.detailTitle(), "No Sermon Selected");
}

TEST(SermonNotesViewModel, restoresTheSelectionAtStartAndDropsWhatNoLongerNests) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Kept");
    const auto other = makeSermon("Other");
    harness.seed(sermon);
    harness.seed(other);
    const auto& topic = sermon.topics[0];
    const auto& subTopic = topic.subTopics[0];
    {
        auto& desk = harness.open();
        ASSERT_TRUE(desk.selectSermon(sermon.id));
        ASSERT_TRUE(desk.selectScripture(subTopic.scriptures[0].id));
        desk.setTopicColumnWidth(400);
        desk.setLayoutStyle(AppLayoutStyle::modernOutline);
    }
    auto& desk = harness.open();
    EXPECT_EQ(desk.selection(), (OutlineSelection{sermon.id, topic.id, subTopic.id, subTopic.scriptures[0].id}));
    EXPECT_EQ(desk.detailTitle(), "Kept");
    EXPECT_EQ(desk.interfaceState().topicColumnWidth, 165);
    EXPECT_EQ(desk.interfaceState().layoutStyle, AppLayoutStyle::modernOutline);

    // A stored sub-topic from another sermon does not nest under the stored topic: it is dropped
    // with everything below it, the valid levels above stay.
    harness.preferences->set(SermonNotesViewModel::selectedSubTopicKey, other.topics[0].subTopics[0].id.text());
    auto& reopened = harness.open();
    EXPECT_EQ(reopened.selection(), (OutlineSelection{sermon.id, topic.id, std::nullopt, std::nullopt}));
}

TEST(SermonNotesViewModel, selectingADeeperItemSelectsItsParentsAndRefusesStrangers) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Parents");
    const auto stranger = makeSermon("Stranger");
    harness.seed(sermon);
    harness.seed(stranger);
    auto& desk = harness.open();
    ASSERT_TRUE(desk.selectSermon(sermon.id));
    const auto& subTopic = sermon.topics[0].subTopics[0];
    EXPECT_TRUE(desk.selectSubTopic(subTopic.id));
    EXPECT_EQ(desk.selection().topicId, sermon.topics[0].id);
    EXPECT_FALSE(desk.selectScripture(stranger.topics[0].subTopics[0].scriptures[0].id));
    EXPECT_FALSE(desk.selectTopic(model::Uuid::random()));
    EXPECT_EQ(desk.selection().subTopicId, subTopic.id);
    EXPECT_FALSE(desk.selectSermon(model::Uuid::random()));
    EXPECT_EQ(desk.selection().sermonId, sermon.id);
    EXPECT_TRUE(desk.selectSermon(std::nullopt));
    EXPECT_EQ(desk.detailTitle(), noSermonSelectedText);
    EXPECT_GE(harness.listener.selectionChanges, 2);
}

TEST(SermonNotesViewModel, scriptureLinksSelectTheirHoldersAndIgnoreWhatIsGone) {
    ControllerHarness harness;
    const auto first = makeSermon("First");
    const auto second = makeSermon("Second");
    harness.seed(first);
    harness.seed(second);
    auto& desk = harness.open();
    desk.selectSermon(first.id);

    const auto& target = second.topics[0].subTopics[0];
    EXPECT_TRUE(desk.openScriptureLink(scripture::scriptureLink(target.scriptures[0].id)));
    EXPECT_EQ(desk.selection(), (OutlineSelection{second.id, second.topics[0].id, target.id, target.scriptures[0].id}));

    const auto before = desk.selection();
    EXPECT_FALSE(desk.openScriptureLink(scripture::scriptureLink(model::Uuid::random())));
    EXPECT_FALSE(desk.openScriptureLink("https://example.org"));
    // A link naming a topic's id is no scripture link, even though the id exists.
    EXPECT_FALSE(desk.openScriptureLink(scripture::scriptureLink(first.topics[0].id)));
    EXPECT_EQ(desk.selection(), before);
}

TEST(SermonNotesViewModel, outlineEditsKeepListOrderAndRenumberSortOrder) {
    ControllerHarness harness;
    model::SermonNote sermon = makeSermon("Ordered");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto id = sermon.id;

    const auto second = desk.addTopic(id, "  Second  ");
    const auto third = desk.addTopic(id, "Third");
    ASSERT_TRUE(second && third);
    const auto sub = desk.addSubTopic(id, *third, "Under third");
    ASSERT_TRUE(sub);
    const auto rom = desk.addScripture(id, *sub, "rom 8 28-30");
    const auto ps = desk.addScripture(id, *sub, "ps 23 ASV");
    ASSERT_TRUE(rom && ps);
    EXPECT_TRUE(desk.moveTopic(id, *third, 0));
    EXPECT_TRUE(desk.moveScripture(id, *ps, 0));
    EXPECT_TRUE(desk.renameOutlineItem(id, *second, "Second point"));

    const auto saved = onDisk(harness, id);
    ASSERT_EQ(saved.topics.size(), 3u);
    EXPECT_EQ(saved.topics[0].title, "Third");
    EXPECT_EQ(saved.topics[1].title, sermon.topics[0].title);
    EXPECT_EQ(saved.topics[2].title, "Second point");
    const auto& scriptures = saved.topics[0].subTopics[0].scriptures;
    ASSERT_EQ(scriptures.size(), 2u);
    EXPECT_EQ(scriptures[0].bookName, "Psalms");
    EXPECT_EQ(scriptures[0].startVerse, 1);
    EXPECT_EQ(scriptures[0].endVerse, 6); // the whole psalm
    EXPECT_EQ(scriptures[0].version, model::BibleVersion::asv);
    EXPECT_EQ(scriptureReferenceText(scriptures[1]), "Romans 8:28-30");
    EXPECT_EQ(scriptures[1].version, model::BibleVersion::kjv);
    EXPECT_EQ(sortOrders(saved), (std::vector<int>{0, 0, 0, 1, 1, 0, 0, 2}));
    EXPECT_EQ(harness.listener.messages.back().title, "Renamed");
    EXPECT_EQ(harness.listener.messages.back().detail, "Saved locally");
}

TEST(SermonNotesViewModel, refusedEditsSayWhyAndChangeNothing) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Untouched");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto subTopicId = sermon.topics[0].subTopics[0].id;
    const auto before = platform::readFile(harness.storage.sermonFile(sermon.id));

    struct Case {
        std::function<bool()> attempt;
        std::string detail;
    };
    const std::vector<Case> cases{
        {[&] { return desk.addScripture(sermon.id, subTopicId, "grace and peace").has_value(); },
         "Quillon could not read “grace and peace” as a scripture reference. Type a book, a chapter and verses, "
         "for example “John 3:16-18”."},
        {[&] { return desk.addScripture(sermon.id, subTopicId, "John 22:1").has_value(); },
         "Quillon could not read “John 22:1” as a scripture reference. Type a book, a chapter and verses, for "
         "example “John 3:16-18”."},
        {[&] { return desk.addTopic(sermon.id, "   ").has_value(); }, "A topic needs a title in plain text."},
        {[&] { return desk.addTopic(sermon.id, "bad \xff byte").has_value(); }, "A topic needs a title in plain text."},
        {[&] { return desk.addSubTopic(sermon.id, model::Uuid::random(), "Lost").has_value(); },
         "Quillon could not find that topic in “Untouched”."},
        {[&] { return desk.moveTopic(sermon.id, subTopicId, 0); }, "Quillon could not find that topic in “Untouched”."},
        {[&] { return desk.setMetadata(sermon.id, SermonMetadataChange{.colour = "blueish"}); },
         "“blueish” is not a colour; write it as #RRGGBB, for example #1F6FB2."},
        {[&] { return desk.setCoverImage(sermon.id, "\x89PNG\r\n"); },
         "Quillon keeps cover images as JPEG files; that image is not one."},
        {[&] { return desk.setNotes(model::Uuid::random(), "text"); },
         "Quillon could not find that sermon; it may have been moved to Trash."},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(c.attempt()) << c.detail;
        ASSERT_FALSE(harness.listener.messages.empty());
        EXPECT_EQ(harness.listener.messages.back(),
                  (StatusMessage{"Edit Failed", c.detail, StatusMessage::Kind::alert}));
    }
    EXPECT_TRUE(desk.isOpen(Sheet::statusAlert));
    EXPECT_EQ(platform::readFile(harness.storage.sermonFile(sermon.id)), before);
    EXPECT_FALSE(desk.canUndo());
}

TEST(SermonNotesViewModel, deletingAsksFirstThenMovesTheSelectionToTheParent) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Pruned");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto& topic = sermon.topics[0];
    const auto& subTopic = topic.subTopics[0];
    desk.selectSermon(sermon.id);
    desk.selectScripture(subTopic.scriptures[0].id);

    desk.requestDeletion(DeleteType::scripture, subTopic.scriptures[0].id);
    EXPECT_TRUE(desk.isOpen(Sheet::deleteConfirmation));
    EXPECT_EQ(desk.pendingDeleteType(), DeleteType::scripture);
    EXPECT_EQ(desk.deletionMessage(), "“John 3:16-17” will be removed from “Given”.");
    // Nothing is removed until the question is answered.
    EXPECT_EQ(onDisk(harness, sermon.id).topics[0].subTopics[0].scriptures.size(), 1u);
    desk.cancelDeletion();
    EXPECT_FALSE(desk.isOpen(Sheet::deleteConfirmation));
    EXPECT_FALSE(desk.confirmDeletion());

    desk.requestDeletion(DeleteType::scripture, subTopic.scriptures[0].id);
    ASSERT_TRUE(desk.confirmDeletion());
    EXPECT_EQ(desk.selection(), (OutlineSelection{sermon.id, topic.id, subTopic.id, std::nullopt}));
    EXPECT_FALSE(desk.pendingDeleteType());

    harness.pause();
    desk.requestDeletion(DeleteType::subTopic, subTopic.id);
    EXPECT_EQ(desk.deletionMessage(), "“Given” will be deleted.");
    ASSERT_TRUE(desk.confirmDeletion());
    EXPECT_EQ(desk.selection(), (OutlineSelection{sermon.id, topic.id, std::nullopt, std::nullopt}));
    EXPECT_TRUE(onDisk(harness, sermon.id).topics[0].subTopics.empty());

    // Once gone, the same request gets the not-found wording and confirming changes nothing.
    desk.requestDeletion(DeleteType::subTopic, subTopic.id);
    EXPECT_EQ(desk.deletionMessage(), "This subtopic will be deleted.");
    EXPECT_FALSE(desk.confirmDeletion());
}

TEST(SermonNotesViewModel, undoOfADeletionBringsBackTheWholeSubtreeAndRedoRemovesItAgain) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Restored");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto topicId = sermon.topics[0].id;
    desk.selectSermon(sermon.id);
    desk.selectTopic(topicId);

    desk.requestDeletion(DeleteType::topic, topicId);
    EXPECT_EQ(desk.deletionMessage(),
              "“The love of God” will be deleted along with 1 subtopic and 1 scripture reference.");
    ASSERT_TRUE(desk.confirmDeletion());
    EXPECT_TRUE(onDisk(harness, sermon.id).topics.empty());
    EXPECT_EQ(desk.selection(), (OutlineSelection{sermon.id, std::nullopt, std::nullopt, std::nullopt}));

    ASSERT_TRUE(desk.undo());
    const auto back = onDisk(harness, sermon.id);
    EXPECT_EQ(back.topics, sermon.topics);
    EXPECT_EQ(harness.listener.messages.back().title, "Undone");
    EXPECT_EQ(harness.listener.changedSermons.back(), sermon.id);

    ASSERT_TRUE(desk.redo());
    EXPECT_TRUE(onDisk(harness, sermon.id).topics.empty());
    EXPECT_FALSE(desk.redo());
}

TEST(SermonNotesViewModel, quickEditsUndoTogetherAndSlowOnesOneByOne) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Bursts");
    harness.seed(sermon);
    auto& desk = harness.open();
    desk.addTopic(sermon.id, "One");
    desk.addTopic(sermon.id, "Two"); // within the coalescing interval: the same undo step
    harness.pause();
    desk.addTopic(sermon.id, "Three");

    ASSERT_TRUE(desk.undo());
    EXPECT_EQ(onDisk(harness, sermon.id).topics.size(), 3u);
    ASSERT_TRUE(desk.undo());
    EXPECT_EQ(onDisk(harness, sermon.id).topics.size(), 1u);
    EXPECT_FALSE(desk.canUndo());
}

TEST(SermonNotesViewModel, metadataNotesAndScriptureDetailsAreWrittenInOneUpdateEach) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Before");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto subTopic = sermon.topics[0].subTopics[0];
    const auto scriptureId = subTopic.scriptures[0].id;

    SermonMetadataChange change;
    change.title = "After";
    change.series = "";
    change.venue = "Hall";
    change.tags = std::vector<std::string>{"hope", " hope ", "", "joy"};
    change.colour = "1f6fb2";
    change.date = testing::at(2025, 4, 6);
    EXPECT_TRUE(desk.setMetadata(sermon.id, change));
    EXPECT_TRUE(desk.setNotes(sermon.id, "Plain", std::string("{\\rtf1 Plain}")));
    EXPECT_TRUE(desk.setDetails(sermon.id, subTopic.id, "Sub details"));
    EXPECT_TRUE(desk.setScriptureVersion(sermon.id, scriptureId, model::BibleVersion::ylt));
    EXPECT_TRUE(desk.setWordHighlight(sermon.id, scriptureId, 7, "green"));
    EXPECT_TRUE(desk.setWordHighlight(sermon.id, scriptureId, 3, std::nullopt));
    EXPECT_TRUE(desk.setLineBreak(sermon.id, scriptureId, 2, true));
    EXPECT_TRUE(desk.setLineBreak(sermon.id, scriptureId, 5, false));
    const auto jpeg = "\xFF\xD8\xFF\xE0 cover"s;
    EXPECT_TRUE(desk.setCoverImage(sermon.id, jpeg));

    const auto saved = onDisk(harness, sermon.id);
    EXPECT_EQ(saved.title, "After");
    EXPECT_EQ(saved.series, std::nullopt);
    EXPECT_EQ(saved.venue, "Hall");
    EXPECT_EQ(saved.tags, (std::vector<std::string>{"hope", "joy"}));
    EXPECT_EQ(saved.textColorHex, "#1F6FB2");
    EXPECT_EQ(saved.date, testing::at(2025, 4, 6));
    EXPECT_EQ(saved.notesRTFData, "{\\rtf1 Plain}");
    EXPECT_EQ(saved.topics[0].subTopics[0].details, "Sub details");
    EXPECT_EQ(saved.topics[0].subTopics[0].detailsRTFData, std::nullopt);
    const auto& scripture = saved.topics[0].subTopics[0].scriptures[0];
    EXPECT_EQ(scripture.version, model::BibleVersion::ylt);
    EXPECT_EQ(scripture.wordHighlights, (std::map<int, std::string>{{7, "green"}}));
    EXPECT_EQ(scripture.breakIndicators, (std::vector<int>{2}));
    EXPECT_EQ(saved.coverImageFileName, sermon.id.text() + "_cover.jpg");
    EXPECT_EQ(platform::readFile(harness.storage.mediaFolder() / *saved.coverImageFileName), jpeg);
}

TEST(SermonNotesViewModel, pinAndHideGoThroughTheStoreAndAreAnnounced) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Marked");
    harness.seed(sermon);
    auto& desk = harness.open();
    EXPECT_TRUE(desk.setPinned(sermon.id, true));
    EXPECT_TRUE(desk.setHidden(sermon.id, true));
    EXPECT_TRUE(harness.manager->pinnedSermonIds().contains(sermon.id));
    EXPECT_TRUE(harness.manager->hiddenSermonIds().contains(sermon.id));
    EXPECT_EQ(harness.listener.messages.back().detail, "“Marked” is hidden from the sermon list.");
    EXPECT_FALSE(desk.setPinned(model::Uuid::random(), true));
}

TEST(SermonNotesViewModel, everyListenerHearsEachMessageUntilRemoved) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Heard");
    harness.seed(sermon);
    auto& desk = harness.open();
    testing::RecordingListener second;
    desk.addListener(second);
    desk.addListener(second); // adding twice does not double the calls
    desk.addTopic(sermon.id, "One");
    desk.removeListener(second);
    desk.addTopic(sermon.id, "Two");
    EXPECT_EQ(second.messages.size(), 1u);
    EXPECT_EQ(harness.listener.messages.size(), 2u);
    EXPECT_EQ(desk.lastStatus(), harness.listener.messages.back());
}

} // namespace
} // namespace quillon::app
