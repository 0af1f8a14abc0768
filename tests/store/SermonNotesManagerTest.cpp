#include "store/SermonNotesManager.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillon::store {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using model::SermonImportMode;
using model::SermonNote;
using testing::makeSermon;
using testing::TemporaryFolder;

class RecordingHistory final : public VersionHistoryHook {
public:
    void recordSnapshot(const SermonNote& previous) override { snapshots.push_back(previous); }
    std::vector<SermonNote> snapshots;
};

/// A library in a temporary folder with a fake clock; `syncFolder` makes it the synced folder.
struct Library {
    explicit Library(bool syncFolder = false)
        : storage(syncFolder ? SermonStorage(preferences) : SermonStorage::atRoot(folder.path())) {
        if (syncFolder)
            preferences.set(SermonStorage::syncFolderKey, folder.path().string());
    }
    SermonNotesManager& open() {
        manager = std::make_unique<SermonNotesManager>(storage, preferences, clock);
        manager->load();
        return *manager;
    }
    void writeBehindTheStoresBack(const SermonNote& sermon) {
        folder.write("Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
    }
    SermonNote onDisk(const model::Uuid& id) const {
        return model::decodeSermonFile(platform::readFile(folder / "Sermons" / (id.text() + ".json")));
    }

    TemporaryFolder folder;
    platform::Preferences preferences = platform::Preferences::inMemory();
    testing::FakeClock clock;
    SermonStorage storage;
    std::unique_ptr<SermonNotesManager> manager;
};

SermonNote retitled(SermonNote sermon, const std::string& title) {
    sermon.title = title;
    return sermon;
}

TEST(SermonNotesManager, loadSetsTheStatusWithThePendingSuffix) {
    struct Case {
        bool syncFolder;
        int placeholders;
        std::string status;
    } cases[] = {
        {false, 0, "Loaded locally"},
        {true, 0, "Loaded from sync folder"},
        {true, 1, "Loaded from sync folder — 1 sermon is still downloading into the sync folder"},
        {true, 3, "Loaded from sync folder — 3 sermons are still downloading into the sync folder"},
        {false, 2, "Loaded locally — 2 sermons are still downloading into the sync folder"},
    };
    for (const auto& c : cases) {
        Library library(c.syncFolder);
        for (int i = 0; i < c.placeholders; ++i)
            library.folder.write("Sermons/" + model::Uuid::random().text() + ".json.nextcloud", "");
        EXPECT_EQ(library.open().lastSyncStatus(), c.status);
    }
}

TEST(SermonNotesManager, loadRestoresPinnedHiddenAndSelectedSermons) {
    Library library;
    auto older = makeSermon("Older", testing::at(2025, 1, 1));
    auto newer = makeSermon("Newer", testing::at(2025, 2, 1));
    library.writeBehindTheStoresBack(older);
    library.writeBehindTheStoresBack(newer);

    // Without a (valid) selection the most recently changed sermon is current.
    for (const std::string& selected : {std::string(), std::string("not-a-uuid"), model::Uuid::random().text()}) {
        library.preferences.set(SermonNotesManager::selectedSermonKey, selected);
        EXPECT_EQ(library.open().currentSermonId(), newer.id) << selected;
    }

    auto& manager = library.open();
    manager.setCurrentSermonId(older.id);
    manager.setPinned(older.id, true);
    manager.setHidden(newer.id, true);
    manager.setPinned(newer.id, true);
    manager.setPinned(newer.id, false);
    EXPECT_EQ(library.preferences.string(SermonNotesManager::selectedSermonKey), older.id.text());
    EXPECT_EQ(library.preferences.stringList(SermonNotesManager::pinnedSermonsKey),
              std::vector<std::string>{older.id.text()});

    auto& reopened = library.open();
    EXPECT_EQ(reopened.currentSermonId(), older.id);
    EXPECT_EQ(reopened.pinnedSermonIds(), std::set<model::Uuid>{older.id});
    EXPECT_EQ(reopened.hiddenSermonIds(), std::set<model::Uuid>{newer.id});
}

TEST(SermonNotesManager, updateStampsWritesAndHandsTheOldSermonToTheHistory) {
    Library library;
    auto sermon = makeSermon("Draft");
    library.writeBehindTheStoresBack(sermon);
    auto& manager = library.open();
    RecordingHistory history;
    manager.setVersionHistoryHook(&history);

    library.clock.advance(1h);
    manager.update(retitled(sermon, "Final"));
    const auto now = model::toDateTime(library.clock.now());
    EXPECT_EQ(manager.sermon(sermon.id)->title, "Final");
    EXPECT_EQ(manager.sermon(sermon.id)->modifiedAt, now);
    EXPECT_EQ(library.onDisk(sermon.id), *manager.sermon(sermon.id));
    EXPECT_EQ(manager.lastSavedAt(), now);
    EXPECT_EQ(manager.lastSyncStatus(), "Saved locally");
    ASSERT_EQ(history.snapshots.size(), 1u);
    EXPECT_EQ(history.snapshots[0], sermon);

    // A sermon that is not in the library is not added by an update.
    manager.update(makeSermon("Stranger"));
    EXPECT_EQ(manager.sermons().size(), 1u);
    EXPECT_EQ(history.snapshots.size(), 1u);
}

TEST(SermonNotesManager, savedStatusNamesTheSyncFolderWhenItIsInUse) {
    Library library(true);
    auto sermon = makeSermon("Draft");
    library.writeBehindTheStoresBack(sermon);
    auto& manager = library.open();
    manager.update(retitled(sermon, "Final"));
    EXPECT_EQ(manager.lastSyncStatus(), "Saved to sync folder");
}

TEST(SermonNotesManager, aFailedWriteKeepsTheEditInMemoryAndTheOldFileOnDisk) {
    Library library;
    auto sermon = makeSermon("Draft");
    library.writeBehindTheStoresBack(sermon);
    auto& manager = library.open();
    const std::string before = testing::readText(library.folder / "Sermons" / (sermon.id.text() + ".json"));
    library.storage.setWriter([](const fs::path& target, std::string_view bytes) {
        platform::writeFileAtomically(target, bytes, [](const fs::path&) { throw platform::FileError("Disk full."); });
    });

    testing::LogCapture log;
    manager.update(retitled(sermon, "Lost?"));
    EXPECT_TRUE(log.contains("error: Failed to save sermon \"Lost?\": Disk full."));
    EXPECT_EQ(manager.sermon(sermon.id)->title, "Lost?");
    EXPECT_EQ(testing::readText(library.folder / "Sermons" / (sermon.id.text() + ".json")), before);
    EXPECT_EQ(manager.lastSyncStatus(), "Loaded locally") << "a failed write must not read as saved";
    EXPECT_FALSE(manager.lastSavedAt());

    // The next update writes the change again once the disk has room.
    library.storage.setWriter(
        [](const fs::path& target, std::string_view bytes) { platform::writeFileAtomically(target, bytes); });
    manager.update(retitled(*manager.sermon(sermon.id), "Kept"));
    EXPECT_EQ(library.onDisk(sermon.id).title, "Kept");
}

TEST(SermonNotesManager, quickEditsCoalesceIntoOneCheckpoint) {
    struct Case {
        std::optional<double> preference;
        std::chrono::milliseconds gap;
        std::size_t checkpoints;
    } cases[] = {
        {std::nullopt, 500ms, 1}, {std::nullopt, 1000ms, 2}, {std::nullopt, 899ms, 1}, {std::nullopt, 900ms, 2},
        {0.0, 500ms, 1},          {0.0, 1000ms, 2},          {-1.0, 500ms, 1},         {-1.0, 1000ms, 2},
        {2.0, 1000ms, 1},         {2.0, 2500ms, 2},          {0.1, 500ms, 2},
    };
    for (const auto& c : cases) {
        Library library;
        if (c.preference)
            library.preferences.set(SermonNotesManager::undoCoalesceIntervalKey, *c.preference);
        auto sermon = makeSermon("v0");
        library.writeBehindTheStoresBack(sermon);
        auto& manager = library.open();
        manager.update(retitled(sermon, "v1"));
        library.clock.advance(c.gap);
        manager.update(retitled(sermon, "v2"));

        const std::string label = std::to_string(c.preference.value_or(999)) + "/" + std::to_string(c.gap.count());
        ASSERT_EQ(manager.undoStack().size(), c.checkpoints) << label;
        EXPECT_EQ(manager.undoStack().front().value.title, "v0") << label;
        EXPECT_EQ(manager.undoStack().back().time, library.clock.now()) << label;
    }
}

TEST(SermonNotesManager, editsOfDifferentSermonsNeverCoalesce) {
    Library library;
    auto first = makeSermon("First");
    auto second = makeSermon("Second");
    library.writeBehindTheStoresBack(first);
    library.writeBehindTheStoresBack(second);
    auto& manager = library.open();
    manager.update(retitled(first, "First'"));
    manager.update(retitled(second, "Second'"));
    manager.update(retitled(first, "First''"));
    EXPECT_EQ(manager.undoStack().size(), 3u);
}

TEST(SermonNotesManager, undoStackKeepsTheNewestHundred) {
    Library library;
    auto sermon = makeSermon("v0");
    library.writeBehindTheStoresBack(sermon);
    auto& manager = library.open();
    for (int version = 1; version <= 101; ++version) {
        library.clock.advance(1s);
        manager.update(retitled(sermon, "v" + std::to_string(version)));
    }
    ASSERT_EQ(manager.undoStack().size(), SermonNotesManager::undoLimit);
    EXPECT_EQ(manager.undoStack().front().value.title, "v1");
    EXPECT_EQ(manager.undoStack().back().value.title, "v100");
}

TEST(SermonNotesManager, undoAndRedoWalkTheCheckpointsWithoutNewOnesOrSnapshots) {
    Library library;
    auto sermon = makeSermon("v0");
    auto other = makeSermon("Other", testing::at(2026, 1, 1));
    library.writeBehindTheStoresBack(sermon);
    library.writeBehindTheStoresBack(other);
    auto& manager = library.open();
    RecordingHistory history;
    manager.setVersionHistoryHook(&history);
    for (int version = 1; version <= 2; ++version) {
        library.clock.advance(1s);
        manager.update(retitled(*manager.sermon(sermon.id), "v" + std::to_string(version)));
    }
    ASSERT_EQ(history.snapshots.size(), 2u);
    EXPECT_EQ(manager.currentSermonId(), other.id);

    struct Step {
        void (SermonNotesManager::*action)();
        std::string title;
        std::size_t undo, redo;
    } steps[] = {
        {&SermonNotesManager::undo, "v1", 1, 1}, {&SermonNotesManager::undo, "v0", 0, 2},
        {&SermonNotesManager::undo, "v0", 0, 2}, {&SermonNotesManager::redo, "v1", 1, 1},
        {&SermonNotesManager::redo, "v2", 2, 0}, {&SermonNotesManager::redo, "v2", 2, 0},
        {&SermonNotesManager::undo, "v1", 1, 1},
    };
    for (const auto& step : steps) {
        library.clock.advance(10ms); // quicker than the coalescing interval: must still not merge
        (manager.*step.action)();
        EXPECT_EQ(manager.sermon(sermon.id)->title, step.title);
        EXPECT_EQ(library.onDisk(sermon.id).title, step.title);
        EXPECT_EQ(manager.undoStack().size(), step.undo) << step.title;
        EXPECT_EQ(manager.redoStack().size(), step.redo) << step.title;
        EXPECT_FALSE(manager.isApplyingUndoRedo());
    }
    EXPECT_EQ(history.snapshots.size(), 2u) << "undo and redo take no version snapshot";
    EXPECT_EQ(manager.currentSermonId(), sermon.id);
    EXPECT_EQ(manager.lastSyncStatus(), "Saved locally");

    // A new edit empties the redo stack.
    manager.update(retitled(*manager.sermon(sermon.id), "v3"));
    EXPECT_TRUE(manager.redoStack().empty());
}

TEST(SermonNotesManager, syncTakesOnlyNewAndStrictlyNewerSermons) {
    Library library(true);
    auto same = makeSermon("Same time", testing::at(2025, 3, 1));
    auto changed = makeSermon("Changed", testing::at(2025, 3, 1));
    auto memoryOnly = makeSermon("Memory only", testing::at(2025, 3, 1));
    for (const auto& sermon : {same, changed, memoryOnly})
        library.writeBehindTheStoresBack(sermon);
    auto& manager = library.open();

    // Nothing changed on disk.
    manager.syncFromCloud();
    EXPECT_EQ(manager.lastSyncStatus(), "Sync checked");

    // Another device rewrote two sermons, added one, and this one's file vanished.
    auto sameOnDisk = retitled(same, "Same time, other device");
    auto changedOnDisk = retitled(changed, "Changed elsewhere");
    changedOnDisk.modifiedAt += 1s;
    auto added = makeSermon("Added elsewhere");
    library.writeBehindTheStoresBack(sameOnDisk);
    library.writeBehindTheStoresBack(changedOnDisk);
    library.writeBehindTheStoresBack(added);
    fs::remove(library.folder / "Sermons" / (memoryOnly.id.text() + ".json"));
    library.folder.write("Sermons/" + model::Uuid::random().text() + ".json.owncloud", "");

    manager.syncFromCloud();
    EXPECT_EQ(manager.lastSyncStatus(),
              "Synced latest sync folder changes — 1 sermon is still downloading into the sync folder");
    EXPECT_EQ(manager.sermon(same.id)->title, "Same time");
    EXPECT_EQ(manager.sermon(changed.id)->title, "Changed elsewhere");
    EXPECT_EQ(manager.sermon(added.id)->title, "Added elsewhere");
    EXPECT_NE(manager.sermon(memoryOnly.id), nullptr);
    EXPECT_EQ(manager.sermons().size(), 4u);
}

TEST(SermonNotesManager, syncOfAnEmptyFolderChangesNothing) {
    Library library(true);
    auto& manager = library.open();
    library.folder.write("Sermons/" + model::Uuid::random().text() + ".json.nextcloud", "");
    manager.syncFromCloud();
    EXPECT_EQ(manager.lastSyncStatus(), "Sync checked — 1 sermon is still downloading into the sync folder");
    EXPECT_TRUE(manager.sermons().empty());
}

TEST(SermonNotesManager, importAppliesTheModeToSermonsAlreadyPresent) {
    struct Case {
        SermonImportMode mode;
        int count;
        std::size_t librarySize;
        std::string presentTitle;
        std::string status;
    } cases[] = {
        {SermonImportMode::skipDuplicates, 1, 2, "Mine", "Imported 1 sermons"},
        {SermonImportMode::replaceDuplicates, 2, 2, "Theirs", "Imported 2 sermons"},
        {SermonImportMode::importCopies, 2, 3, "Mine", "Imported 2 sermons"},
    };
    for (const auto& c : cases) {
        Library library;
        auto mine = makeSermon("Mine");
        library.writeBehindTheStoresBack(mine);
        auto& manager = library.open();
        auto fresh = makeSermon("Fresh");
        EXPECT_EQ(manager.importSermons({retitled(mine, "Theirs"), fresh}, c.mode), c.count);
        EXPECT_EQ(manager.lastSyncStatus(), c.status);
        EXPECT_EQ(manager.sermons().size(), c.librarySize);
        EXPECT_EQ(manager.sermon(mine.id)->title, c.presentTitle);
        EXPECT_EQ(library.onDisk(mine.id).title, c.presentTitle);
        EXPECT_EQ(library.onDisk(fresh.id), fresh) << "added sermons keep their own time stamps";
        if (c.mode == SermonImportMode::importCopies) {
            EXPECT_TRUE(std::any_of(manager.sermons().begin(), manager.sermons().end(),
                                    [](const SermonNote& s) { return s.title == "Theirs Copy"; }));
        }
    }
}

TEST(SermonNotesManager, importMatchesSermonsAddedEarlierInTheSameImport) {
    struct Case {
        SermonImportMode mode;
        int count;
        std::size_t librarySize;
        std::string title;
    } cases[] = {
        {SermonImportMode::skipDuplicates, 1, 1, "First"},
        {SermonImportMode::replaceDuplicates, 2, 1, "Second"},
        {SermonImportMode::importCopies, 2, 2, "First"},
    };
    for (const auto& c : cases) {
        Library library;
        auto& manager = library.open();
        auto incoming = makeSermon("First");
        EXPECT_EQ(manager.importSermons({incoming, retitled(incoming, "Second")}, c.mode), c.count);
        EXPECT_EQ(manager.sermons().size(), c.librarySize);
        EXPECT_EQ(manager.sermon(incoming.id)->title, c.title);
        EXPECT_EQ(library.onDisk(incoming.id).title, c.title);
    }
}

TEST(SermonNotesManager, duplicateIsANewSavedSermonStampedNow) {
    Library library;
    auto original = makeSermon("Original");
    library.writeBehindTheStoresBack(original);
    auto& manager = library.open();
    library.clock.advance(24h);
    const auto copy = manager.duplicate(original);

    EXPECT_NE(copy.id, original.id);
    EXPECT_EQ(copy.title, "Original Copy");
    EXPECT_EQ(copy.createdAt, model::toDateTime(library.clock.now()));
    EXPECT_EQ(copy.modifiedAt, copy.createdAt);
    EXPECT_EQ(copy.notes, original.notes);
    EXPECT_EQ(copy.tags, original.tags);
    EXPECT_EQ(copy.date, original.date);
    ASSERT_EQ(copy.topics.size(), 1u);
    EXPECT_NE(copy.topics[0].subTopics[0].scriptures[0].id, original.topics[0].subTopics[0].scriptures[0].id);
    EXPECT_EQ(copy.topics[0].subTopics[0].scriptures[0].bookName, "John");
    EXPECT_EQ(library.onDisk(copy.id), copy);
    EXPECT_EQ(manager.sermons().size(), 2u);
}

TEST(SermonNotesManager, archiveHoldsEverySermon) {
    Library library;
    auto& manager = library.open();
    manager.add(makeSermon("One"));
    manager.add(makeSermon("Two"));
    auto archive = manager.exportArchive(library.folder.path());
    ASSERT_TRUE(archive);
    EXPECT_EQ(archive->filename(), "Quillon.vrnsermons");
    EXPECT_EQ(model::readArchive(platform::readFile(*archive)), manager.sermons());
    EXPECT_FALSE(manager.exportArchive(library.folder / "missing"));
}

TEST(SermonNotesManager, changesInTheSyncFolderReachTheLibraryThroughTheWatcher) {
    Library local;
    EXPECT_FALSE(local.open().startWatching()) << "a local library has nothing to watch";

    Library library(true);
    auto& manager = library.open();
    auto descriptor = manager.startWatching();
    ASSERT_TRUE(descriptor);
    EXPECT_GE(*descriptor, 0);
    EXPECT_FALSE(manager.handleFolderChanges());

    library.folder.write("Sermons/notes.txt", "ignored");
    platform::FolderWatcher probe(library.folder / "Sermons");
    auto arrived = makeSermon("From the other computer");
    library.writeBehindTheStoresBack(arrived);
    ASSERT_TRUE(probe.waitForChanges(5000));
    EXPECT_TRUE(manager.handleFolderChanges());
    ASSERT_NE(manager.sermon(arrived.id), nullptr);
    EXPECT_EQ(manager.lastSyncStatus(), "Synced latest sync folder changes");
}

} // namespace
} // namespace quillon::store
