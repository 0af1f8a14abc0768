#include "ControllerHarness.h"

#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

namespace fs = std::filesystem;
using testing::ControllerHarness;
using testing::makeSermon;

StatusMessage toast(std::string title, std::string detail) {
    return {std::move(title), std::move(detail), StatusMessage::Kind::toast};
}

StatusMessage alert(std::string title, std::string detail) {
    return {std::move(title), std::move(detail), StatusMessage::Kind::alert};
}

TEST(SermonNotesViewModelFiles, trashAsksThenMovesOneOrABatchAndCountsThem) {
    ControllerHarness harness;
    std::vector<model::SermonNote> sermons;
    for (const char* title : {"One", "Two", "Three", "Four", "Five"}) {
        sermons.push_back(makeSermon(title));
        harness.seed(sermons.back());
    }
    harness.folder.write("preferences.json", R"({"Quillon.trashRetentionDays": 7})");
    auto& desk = harness.open();
    desk.selectSermon(sermons[0].id);

    desk.requestMoveToTrash({sermons[0].id});
    EXPECT_TRUE(desk.isOpen(Sheet::sermonDeleteConfirmation));
    EXPECT_EQ(desk.trashConfirmationMessage(), "“One” will move to Trash. It can be restored from Setup > Trash… "
                                               "for 7 days, after which it is removed automatically.");
    EXPECT_EQ(desk.confirmMoveToTrash(), 1u);
    EXPECT_EQ(harness.listener.messages.back(), toast("Moved to Trash", "1 sermon moved to Trash."));
    EXPECT_EQ(desk.detailTitle(), "No Sermon Selected");
    EXPECT_FALSE(fs::exists(harness.storage.sermonFile(sermons[0].id)));

    desk.setBatchSelection(true);
    for (std::size_t i = 1; i < sermons.size(); ++i)
        desk.setBatchSelected(sermons[i].id, true);
    desk.requestMoveToTrash({desk.batchSelectedSermonIds().begin(), desk.batchSelectedSermonIds().end()});
    const auto message = desk.trashConfirmationMessage();
    EXPECT_TRUE(message.ends_with(" and 1 more — will move to Trash. Each can be restored from Setup > Trash… for 7 "
                                  "days."))
        << message;
    desk.cancelMoveToTrash();
    EXPECT_EQ(harness.manager->sermons().size(), 4u);

    desk.requestMoveToTrash({sermons[1].id, sermons[2].id});
    EXPECT_EQ(desk.confirmMoveToTrash(), 2u);
    EXPECT_EQ(harness.listener.messages.back(), toast("Moved to Trash", "2 sermons moved to Trash."));
    EXPECT_EQ(desk.batchSelectedSermonIds().size(), 2u);
}

TEST(SermonNotesViewModelFiles, duplicatesRestoresVersionsAndBringsSermonsBackFromTrash) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Kept");
    harness.seed(sermon);
    auto& desk = harness.open();

    const auto copy = desk.duplicateSermon(sermon.id);
    ASSERT_TRUE(copy);
    EXPECT_EQ(desk.selection().sermonId, copy);
    EXPECT_EQ(harness.listener.messages.back(), toast("Sermon Duplicated", "“Kept Copy”"));

    auto earlier = *harness.manager->sermon(sermon.id);
    desk.renameOutlineItem(sermon.id, sermon.topics[0].id, "Renamed");
    harness.pause();
    EXPECT_TRUE(desk.restoreVersion(earlier));
    EXPECT_EQ(harness.manager->sermon(sermon.id)->topics[0].title, "The love of God");
    ASSERT_TRUE(desk.undo()); // the restored version is itself one step
    EXPECT_EQ(harness.manager->sermon(sermon.id)->topics[0].title, "Renamed");

    desk.requestMoveToTrash({sermon.id});
    desk.confirmMoveToTrash();
    EXPECT_TRUE(desk.restoreFromTrash(sermon.id));
    EXPECT_NE(harness.manager->sermon(sermon.id), nullptr);
    EXPECT_EQ(harness.listener.messages.back(), toast("Restored from Trash", "“Kept”"));
    EXPECT_FALSE(desk.restoreFromTrash(sermon.id));
}

TEST(SermonNotesViewModelFiles, tagsEverySelectedSermonOnce) {
    ControllerHarness harness;
    auto tagged = makeSermon("Tagged");
    tagged.tags = {"hope"};
    const auto plain = makeSermon("Plain");
    harness.seed(tagged);
    harness.seed(plain);
    auto& desk = harness.open();
    EXPECT_EQ(desk.applyTag(" hope ", {tagged.id, plain.id, model::Uuid::random()}), 2u);
    EXPECT_EQ(harness.listener.messages.back(), toast("Tag Applied", "“hope” applied to 2 sermons."));
    EXPECT_EQ(harness.manager->sermon(tagged.id)->tags, (std::vector<std::string>{"hope"}));
    EXPECT_EQ(harness.manager->sermon(plain.id)->tags, (std::vector<std::string>{"grace", "hope"}));
    EXPECT_EQ(desk.applyTag("joy", {plain.id}), 1u);
    EXPECT_EQ(harness.listener.messages.back().detail, "“joy” applied to 1 sermon.");
}

TEST(SermonNotesViewModelFiles, createsASermonFromATemplateAndSelectsIt) {
    ControllerHarness harness;
    auto& desk = harness.open();
    const auto id = desk.createSermon({"Three Points", "Ann", std::nullopt, "Hope", store::SermonTemplate::topical});
    ASSERT_TRUE(id);
    EXPECT_EQ(desk.selection().sermonId, id);
    EXPECT_EQ(harness.listener.messages.back(), toast("Sermon Created", "“Three Points”"));
    const auto* sermon = harness.manager->sermon(*id);
    ASSERT_NE(sermon, nullptr);
    EXPECT_EQ(sermon->topics.size(), 3u);
    EXPECT_TRUE(fs::exists(harness.storage.sermonFile(*id)));
    EXPECT_FALSE(desk.createSermon({"  ", "", std::nullopt, std::nullopt, store::SermonTemplate::blank}));
}

TEST(SermonNotesViewModelFiles, exportsSayWhatWasWrittenOrWhyNot) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Exported");
    harness.seed(sermon);
    auto& desk = harness.open();

    const auto written = desk.exportSermon(sermon.id, ExportFormat::markdown, harness.folder.path());
    ASSERT_TRUE(written);
    EXPECT_TRUE(fs::exists(*written));
    EXPECT_EQ(harness.listener.messages.back(), toast("Markdown Exported", written->string()));

    EXPECT_FALSE(desk.exportSermon(sermon.id, ExportFormat::word, "/nonexistent/folder/x.docx"));
    EXPECT_EQ(harness.listener.messages.back(), alert("Export Failed", "Quillon could not create the Word document."));

    const auto archive = desk.exportLibraryArchive(harness.folder.path());
    ASSERT_TRUE(archive);
    EXPECT_EQ(archive->filename(), "Quillon.vrnsermons");
    EXPECT_EQ(harness.listener.messages.back().title, "Export Complete");
    EXPECT_FALSE(desk.exportLibraryArchive("/nonexistent/folder/x.vrnsermons"));
    EXPECT_EQ(harness.listener.messages.back(),
              alert("Export Failed", "Quillon could not prepare the sermon archive."));

    desk.reportPrintFailure(sermon.id);
    EXPECT_EQ(harness.listener.messages.back(),
              alert("Print Failed", "Quillon could not prepare Exported for printing."));
    desk.reportShareFailure();
    EXPECT_EQ(harness.listener.messages.back(),
              alert("Share Failed", "Quillon could not find a window to share from."));
}

TEST(SermonNotesViewModelFiles, restoreAsksBeforeItReplacesAnything) {
    ControllerHarness harness;
    auto sermon = makeSermon("Original");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto backup = desk.backUp(harness.folder / "backups");
    ASSERT_TRUE(backup);
    EXPECT_EQ(harness.listener.messages.back(), toast("Backup Complete", "Saved 1 sermon"));

    SermonMetadataChange rename;
    rename.title = "Changed since";
    desk.setMetadata(sermon.id, rename);
    desk.requestRestore(*backup);
    EXPECT_TRUE(desk.isOpen(Sheet::restoreBackupConfirmation));
    EXPECT_EQ(desk.restoreQuestion(), "Restore sermons from “" + backup->filename().string() +
                                          "”? A restored sermon replaces any sermon in your library with the same "
                                          "identity; anything else in your library is left untouched.");
    EXPECT_EQ(harness.manager->sermon(sermon.id)->title, "Changed since");
    desk.cancelRestore();
    EXPECT_FALSE(desk.confirmRestore());
    EXPECT_EQ(harness.manager->sermon(sermon.id)->title, "Changed since");

    desk.requestRestore(*backup);
    const auto result = desk.confirmRestore();
    ASSERT_TRUE(result);
    EXPECT_EQ(harness.manager->sermon(sermon.id)->title, "Original");
    EXPECT_EQ(harness.listener.messages.back(), toast("Restore Complete", "Restored 1 sermon."));

    desk.requestRestore(harness.folder / "backups");
    EXPECT_FALSE(desk.confirmRestore());
    EXPECT_EQ(
        harness.listener.messages.back(),
        alert("Restore Failed", "That folder does not contain a sermons.json file, so it is not a Quillon backup."));
}

TEST(SermonNotesViewModelFiles, stoppedLongWorkLeavesNothingAndSaysNothing) {
    ControllerHarness harness;
    auto sermon = makeSermon("Original");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto backup = desk.backUp(harness.folder / "backups");
    ASSERT_TRUE(backup);
    SermonMetadataChange rename;
    rename.title = "Changed since";
    desk.setMetadata(sermon.id, rename);
    const std::size_t published = harness.listener.messages.size();
    std::stop_source stopped;
    stopped.request_stop();
    std::filesystem::create_directories(harness.folder / "stopped");

    const auto job = desk.prepareBackUp(harness.folder / "stopped");
    ASSERT_TRUE(job);
    const auto wrote = desk.writeBackUp(*job, stopped.get_token());
    EXPECT_TRUE(wrote.cancelled);
    EXPECT_FALSE(desk.finishBackUp(wrote));
    EXPECT_TRUE(std::filesystem::is_empty(harness.folder / "stopped")) << "not even a hidden work folder";

    desk.requestRestore(*backup);
    const auto folder = desk.takeConfirmedRestore();
    ASSERT_EQ(folder, backup);
    EXPECT_FALSE(desk.isOpen(Sheet::restoreBackupConfirmation));
    EXPECT_FALSE(desk.finishRestore(SermonNotesViewModel::readBackup(*folder, stopped.get_token())));
    EXPECT_EQ(harness.manager->sermon(sermon.id)->title, "Changed since");

    const auto archive = desk.prepareLibraryArchive(harness.folder / "stopped");
    EXPECT_EQ(archive.file, harness.folder / "stopped" / "Quillon.vrnsermons");
    EXPECT_FALSE(desk.finishLibraryArchive(SermonNotesViewModel::writeLibraryArchive(archive, stopped.get_token())));
    EXPECT_TRUE(std::filesystem::is_empty(harness.folder / "stopped"));
    EXPECT_EQ(harness.listener.messages.size(), published);
}

TEST(SermonNotesViewModelFiles, backUpRefusesAnEmptyLibrary) {
    ControllerHarness harness;
    auto& desk = harness.open();
    EXPECT_FALSE(desk.backUp(harness.folder / "backups"));
    EXPECT_EQ(harness.listener.messages.back(),
              alert("Nothing to Back Up", "There are no sermons in your library yet."));
}

TEST(SermonNotesViewModelFiles, openingADocumentAddsOrReplacesAndRemembersTheFile) {
    ControllerHarness harness;
    const auto sermon = makeSermon("Shared copy");
    harness.seed(sermon);
    auto edited = sermon;
    edited.title = "Edited elsewhere";
    const auto document = model::writeSermonDocument(edited, harness.folder.path());
    auto& desk = harness.open();

    EXPECT_EQ(desk.openDocument(document), sermon.id);
    EXPECT_EQ(harness.manager->sermons().size(), 1u);
    EXPECT_EQ(harness.manager->sermon(sermon.id)->title, "Edited elsewhere");
    EXPECT_EQ(desk.selection().sermonId, sermon.id);
    EXPECT_EQ(harness.listener.messages.back(), toast("Opened", "“Edited elsewhere”"));
    EXPECT_EQ(desk.interfaceState().recentSermonFiles, (std::vector<std::string>{document.string()}));
    EXPECT_EQ(harness.preferences->stringList(InterfaceState::recentSermonFilesKey),
              (std::vector<std::string>{document.string()}));

    const auto broken = harness.folder.write("broken.quillet", "{not json");
    EXPECT_FALSE(desk.openDocument(broken));
    EXPECT_EQ(harness.listener.messages.back(), alert("Open Failed", "Could not read broken.quillet"));
}

TEST(SermonNotesViewModelFiles, importingAnArchiveCountsWhatCameInOrSaysItWasAllThere) {
    ControllerHarness harness;
    const auto present = makeSermon("Present");
    const auto fresh = makeSermon("Fresh");
    harness.seed(present);
    const auto archive = harness.folder.write("two.vrnsermons", model::encodeArchive({present, fresh}, {}));
    const auto same = harness.folder.write("same.vrnsermons", model::encodeArchive({present}, {}));
    auto& desk = harness.open();

    EXPECT_EQ(desk.importArchive(archive), 1);
    EXPECT_EQ(harness.listener.messages.back(), toast("Imported", "1 sermon"));
    EXPECT_EQ(desk.importArchive(same), 0);
    EXPECT_EQ(harness.listener.messages.back().detail, "Every sermon in “same.vrnsermons” is already in your library.");
    EXPECT_EQ(desk.importArchive(archive, model::SermonImportMode::importCopies), 2);
    EXPECT_EQ(harness.listener.messages.back(), toast("Imported", "2 sermons"));
    const auto junk = harness.folder.write("junk.vrnsermons", "nothing");
    EXPECT_FALSE(desk.importArchive(junk));
    EXPECT_EQ(harness.listener.messages.back(), alert("Import Failed", "Failed to import junk.vrnsermons"));
}

TEST(SermonNotesViewModelFiles, sharedContentAndDraftsBecomeSelectedSermons) {
    ControllerHarness harness;
    auto& desk = harness.open();
    EXPECT_EQ(desk.receiveSharedSermons({makeSermon("From a friend")}), 1u);
    EXPECT_EQ(harness.listener.messages.back(), toast("Sermon Created", "“From a friend” from a share."));
    EXPECT_EQ(desk.receiveSharedSermons({makeSermon("A"), makeSermon("B")}), 2u);
    EXPECT_EQ(harness.listener.messages.back(), toast("Sermons Created", "2 sermons from shared content."));
    const auto draft = makeSermon("Sunday recording");
    EXPECT_TRUE(desk.createDraft(draft));
    EXPECT_EQ(harness.listener.messages.back(), toast("Draft Created", "Created Sunday recording"));
    EXPECT_EQ(desk.selection().sermonId, draft.id);
}

TEST(SermonNotesViewModelFiles, selfTestNamesTheBibleLoaderWhenItFindsNoVerse) {
    ControllerHarness harness;
    auto& desk = harness.open();
    const auto results = desk.runSelfTest();
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[0].line(), "Import parser: OK");
    // The harness has no Bible at all.
    EXPECT_EQ(results[1].line(), "Bible loader: needs attention");
    EXPECT_EQ(results[1].sentence, "Self-test: the Bible loader returned no text for John 3:16.");
    EXPECT_EQ(results[2].line(), "Archive export: OK");
}

} // namespace
} // namespace quillon::app
