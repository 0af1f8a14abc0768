#include "store/SermonBackupManager.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/FileError.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace {
namespace fs = std::filesystem;
using quillon::model::SermonNote;
using quillon::platform::Preferences;
using quillon::store::BackupError;
using quillon::store::RestoreResult;
using quillon::store::SermonBackupManager;
using quillon::store::VolumeFigures;
using quillon::testing::entryNames;
using quillon::testing::FakeClock;
using quillon::testing::TemporaryFolder;

SermonNote sermonWithCover(const std::string& title, bool cover) {
    SermonNote sermon = quillon::testing::makeSermon(title);
    if (cover)
        sermon.coverImageFileName = sermon.id.text() + "_cover.jpg";
    return sermon;
}

/// A library's media folder and a manager working on it, with an importer that records its input.
struct BackupLibrary {
    TemporaryFolder root;
    FakeClock clock;
    Preferences preferences = Preferences::inMemory();
    std::optional<VolumeFigures> volume;
    SermonBackupManager manager{[this] { return root / "Media"; }, preferences, clock,
                                [this](const fs::path&) { return volume; }};
    std::vector<SermonNote> imported;
    SermonBackupManager::SermonImporter importer = [this](const std::vector<SermonNote>& sermons) {
        imported = sermons;
        return static_cast<int>(sermons.size());
    };
};

TEST(SermonBackupManager, backsUpAndRestoresSermonsWithTheirCoverImages) {
    BackupLibrary source;
    auto withCover = sermonWithCover("With cover", true);
    auto withoutCover = sermonWithCover("Without cover", false);
    auto missingCover = sermonWithCover("Cover file gone", true);
    source.root.write("Media/" + *withCover.coverImageFileName, "JPEG");
    TemporaryFolder destination;

    const fs::path backup = source.manager.backUp({withCover, withoutCover, missingCover}, destination / "Backups");
    EXPECT_EQ(backup.parent_path(), destination / "Backups");
    EXPECT_EQ(backup.filename().string(), SermonBackupManager::backupFolderName(source.clock.now()));
    EXPECT_TRUE(backup.filename().string().starts_with("Quillon Backup "));
    EXPECT_EQ(entryNames(destination / "Backups"), std::vector<std::string>{backup.filename().string()});
    EXPECT_EQ(entryNames(backup), (std::vector<std::string>{"Media", "manifest.json", "sermons.json"}));
    EXPECT_EQ(entryNames(backup / "Media"), std::vector<std::string>{*withCover.coverImageFileName});

    const auto manifest = nlohmann::ordered_json::parse(quillon::testing::readText(backup / "manifest.json"));
    std::vector<std::string> keys;
    for (const auto& [key, value] : manifest.items())
        keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"appVersion", "createdAt", "formatVersion", "sermonCount"}));
    EXPECT_EQ(manifest["sermonCount"], 3);
    EXPECT_EQ(manifest["createdAt"], "2025-03-09T14:00:00Z");

    BackupLibrary target;
    RestoreResult result = target.manager.restore(backup, target.importer);
    ASSERT_TRUE(result.manifest);
    EXPECT_EQ(result.manifest->sermonCount, 3);
    EXPECT_EQ(result.sermonsRestored, 3);
    EXPECT_EQ(result.coverImagesRestored, 1);
    EXPECT_EQ(target.imported, (std::vector<SermonNote>{withCover, withoutCover, missingCover}));
    EXPECT_EQ(quillon::testing::readText(target.root / "Media" / *withCover.coverImageFileName), "JPEG");
    EXPECT_EQ(quillon::store::restoreCompleteMessage(result), "Restored 3 sermons and 1 cover image.");

    // Restoring over a library that already holds the same sermons and images leaves the images alone.
    target.root.write("Media/" + *withCover.coverImageFileName, "EDITED");
    result = target.manager.restore(backup, target.importer);
    EXPECT_EQ(result.coverImagesRestored, 0);
    EXPECT_EQ(quillon::testing::readText(target.root / "Media" / *withCover.coverImageFileName), "EDITED");
    EXPECT_EQ(entryNames(target.root / "Media"), std::vector<std::string>{*withCover.coverImageFileName});
}

TEST(SermonBackupManager, refusesWhatIsNotABackupWithItsSentence) {
    BackupLibrary library;
    TemporaryFolder destination;
    try {
        library.manager.backUp({}, destination.path());
        FAIL() << "an empty library was backed up";
    } catch (const BackupError& error) {
        EXPECT_EQ(error.kind(), BackupError::Kind::noSermonsToBackUp);
        EXPECT_STREQ(error.what(), "There are no sermons to back up.");
    }
    EXPECT_TRUE(entryNames(destination.path()).empty());

    destination.write("Only manifest/manifest.json", SermonBackupManager::encodeManifest({}));
    try {
        library.manager.restore(destination / "Only manifest", library.importer);
        FAIL() << "a folder without sermons.json was restored";
    } catch (const BackupError& error) {
        EXPECT_STREQ(error.what(), "That folder does not contain a sermons.json file, so it is not a Quillon backup.");
    }
    EXPECT_TRUE(library.imported.empty());
}

TEST(SermonBackupManager, restoresOnlyPlainFilesIntoTheMediaFolder) {
    BackupLibrary library;
    TemporaryFolder backup;
    TemporaryFolder outside;
    outside.write("secret.jpg", "SECRET");
    backup.write("sermons.json", quillon::model::encodeArchive({sermonWithCover("Safe", false)}, {}));
    backup.write("Media/good.jpg", "GOOD");
    backup.write("Media/.hidden.jpg", "HIDDEN");
    backup.write("Media/Nested/inner.jpg", "INNER");
    fs::create_symlink(outside / "secret.jpg", backup / "Media" / "link.jpg");
    fs::create_symlink(outside.path(), backup / "Media" / "linked-folder");
    ASSERT_EQ(::mkfifo((backup / "Media" / "pipe.jpg").c_str(), 0644), 0);
    fs::create_directories(library.root / "Media");

    quillon::testing::LogCapture log;
    RestoreResult result = library.manager.restore(backup.path(), library.importer);
    EXPECT_EQ(result.coverImagesRestored, 1);
    EXPECT_FALSE(result.manifest);
    EXPECT_EQ(entryNames(library.root / "Media"), std::vector<std::string>{"good.jpg"});
    EXPECT_FALSE(fs::is_symlink(library.root / "Media" / "good.jpg"));
    for (const char* skipped : {"link.jpg", "linked-folder", "pipe.jpg", "Nested", ".hidden.jpg"})
        EXPECT_TRUE(log.contains(std::string("Skipped “") + skipped)) << skipped;
    EXPECT_EQ(entryNames(outside.path()), std::vector<std::string>{"secret.jpg"});

    // A Media folder that is itself a link to somewhere else is not followed at all.
    BackupLibrary other;
    TemporaryFolder linkedBackup;
    linkedBackup.write("sermons.json", "[]");
    fs::create_symlink(outside.path(), linkedBackup / "Media");
    EXPECT_EQ(other.manager.restore(linkedBackup.path(), other.importer).coverImagesRestored, 0);
}

TEST(SermonBackupManager, aFailureHalfWayLeavesNothingBehind) {
    BackupLibrary library;
    TemporaryFolder backup;
    backup.write("sermons.json", quillon::model::encodeArchive({sermonWithCover("One", false)}, {}));
    backup.write("Media/new.jpg", "NEW");
    library.root.write("Media/existing.jpg", "OLD");
    auto failingImport = [](const std::vector<SermonNote>&) -> int { throw std::runtime_error("disk full"); };
    EXPECT_THROW(library.manager.restore(backup.path(), failingImport), std::runtime_error);
    EXPECT_EQ(entryNames(library.root / "Media"), std::vector<std::string>{"existing.jpg"});

    // A backup that finds no free name leaves no half-written folder beside the others.
    TemporaryFolder destination;
    const std::string name = SermonBackupManager::backupFolderName(library.clock.now());
    const std::string stem = name.substr(0, name.size() - std::string(".quillonbackup").size());
    fs::create_directories(destination / name);
    for (int number = 2; number <= 1000; ++number)
        fs::create_directories(destination / (stem + " " + std::to_string(number) + ".quillonbackup"));
    EXPECT_THROW(library.manager.backUp({sermonWithCover("One", false)}, destination.path()),
                 quillon::platform::FileError);
    EXPECT_EQ(entryNames(destination.path()).size(), 1000u);
}

TEST(SermonBackupManager, backupsInTheSameSecondGetTheirOwnFolders) {
    BackupLibrary library;
    TemporaryFolder destination;
    const std::string name = SermonBackupManager::backupFolderName(library.clock.now());
    const std::string stem = name.substr(0, name.size() - std::string(".quillonbackup").size());
    // An empty folder of the same name counts as taken too: a rename would silently replace it.
    fs::create_directories(destination / (stem + " 2.quillonbackup"));
    std::vector<std::string> made;
    for (int i = 0; i < 3; ++i)
        made.push_back(library.manager.backUp({sermonWithCover("One", false)}, destination.path()).filename().string());
    EXPECT_EQ(made, (std::vector<std::string>{name, stem + " 3.quillonbackup", stem + " 4.quillonbackup"}));
    for (const std::string& folder : made)
        EXPECT_TRUE(fs::exists(destination / folder / "sermons.json")) << folder;
    EXPECT_TRUE(fs::is_empty(destination / (stem + " 2.quillonbackup")));
    EXPECT_EQ(entryNames(destination.path()).size(), 4u); // no hidden work folders left
}

TEST(SermonBackupManager, warnsWhenTheFreeShareIsAtOrBelowTheThreshold) {
    struct Case {
        const char* name;
        std::optional<VolumeFigures> volume;
        std::optional<double> threshold;
        std::optional<std::uint64_t> warning;
    };
    const Case cases[] = {
        {"9% free", VolumeFigures{1000, 90}, std::nullopt, 90},
        {"11% free", VolumeFigures{1000, 110}, std::nullopt, std::nullopt},
        {"exactly 10%", VolumeFigures{1000, 100}, std::nullopt, 100},
        {"threshold 0 means 10", VolumeFigures{1000, 90}, 0.0, 90},
        {"threshold 20", VolumeFigures{1000, 110}, 20.0, 110},
        {"unknown total", VolumeFigures{0, 0}, std::nullopt, std::nullopt},
        {"no figures", std::nullopt, std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        BackupLibrary library;
        library.volume = c.volume;
        if (c.threshold)
            library.preferences.set(SermonBackupManager::storageWarningThresholdKey, *c.threshold);
        EXPECT_EQ(library.manager.freeSpaceWarning("/anywhere"), c.warning);
    }
    EXPECT_EQ(quillon::store::lowStorageBeforeBackupMessage(1'200'000'000),
              "That location has only 1.2 GB free. Continue anyway, or choose a different location?");
    EXPECT_TRUE(quillon::store::readVolumeFigures("/definitely/not/here").has_value());
}

TEST(SermonBackupManager, restoringIntoTheStoreReplacesSameIdentitiesAndLeavesTheRest) {
    BackupLibrary library;
    auto storage = quillon::store::SermonStorage::atRoot(library.root.path());
    quillon::store::SermonNotesManager manager(storage, library.preferences, library.clock);
    manager.load();
    auto shared = sermonWithCover("Before the backup", false);
    auto untouched = sermonWithCover("Only in the library", false);
    manager.add(shared);
    manager.add(untouched);
    TemporaryFolder destination;
    const fs::path backup = library.manager.backUp({shared}, destination.path());

    auto edited = shared;
    edited.title = "Edited since";
    manager.update(edited);
    auto result = library.manager.restoreInto(manager, backup);
    EXPECT_EQ(result.sermonsRestored, 1);
    EXPECT_EQ(manager.sermon(shared.id)->title, "Before the backup");
    EXPECT_EQ(manager.sermon(untouched.id)->title, "Only in the library");
    EXPECT_EQ(quillon::model::decodeSermonFile(quillon::testing::readText(storage.sermonFile(shared.id))).title,
              "Before the backup");
    // Nothing of the batch is left lying about in the sermon folder.
    EXPECT_EQ(entryNames(library.root / "Sermons").size(), 2u);
}

} // namespace
