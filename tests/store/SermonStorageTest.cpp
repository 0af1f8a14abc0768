#include "store/SermonStorage.h"

#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "support/LogCapture.h"
#include "support/ScopedEnvironment.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>

namespace quillon::store {
namespace {

namespace fs = std::filesystem;
using testing::LogCapture;
using testing::makeSermon;
using testing::ScopedEnvironment;
using testing::TemporaryFolder;

std::vector<std::string> titlesOf(std::vector<model::SermonNote> sermons) {
    std::vector<std::string> titles;
    for (const auto& sermon : sermons)
        titles.push_back(sermon.title);
    std::sort(titles.begin(), titles.end());
    return titles;
}

TEST(SermonStorage, rootIsTheSyncFolderOnlyWhenItIsSetAndExists) {
    TemporaryFolder folder;
    ScopedEnvironment data("XDG_DATA_HOME", (folder / "data").string());
    fs::create_directories(folder / "sync");
    const fs::path local = folder / "data" / "Quillon";

    struct Case {
        std::optional<std::string> preference;
        fs::path expectedRoot;
        bool usingCloud;
    } cases[] = {
        {std::nullopt, local, false},
        {"", local, false},
        {(folder / "sync").string(), folder / "sync", true},
        {(folder / "unmounted").string(), local, false},
    };
    for (const auto& c : cases) {
        auto preferences = platform::Preferences::inMemory();
        if (c.preference)
            preferences.set(SermonStorage::syncFolderKey, *c.preference);
        SermonStorage storage(preferences);
        EXPECT_EQ(storage.root(), c.expectedRoot) << c.preference.value_or("(unset)");
        EXPECT_EQ(storage.isUsingCloud(), c.usingCloud) << c.preference.value_or("(unset)");
        EXPECT_TRUE(fs::is_directory(storage.sermonsFolder()));
        EXPECT_TRUE(fs::is_directory(storage.mediaFolder()));
    }

    auto explicitRoot = SermonStorage::atRoot(folder / "sync");
    EXPECT_EQ(explicitRoot.root(), folder / "sync");
    EXPECT_FALSE(explicitRoot.isUsingCloud());
}

TEST(SermonStorage, savesOneFileNamedByTheIdAndReadsItBack) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    auto sermon = makeSermon("Grace");
    ASSERT_TRUE(storage.saveSermon(sermon));

    const fs::path file = folder / "Sermons" / (sermon.id.text() + ".json");
    EXPECT_EQ(testing::readText(file), model::encodeSermonFile(sermon));
    auto loaded = storage.loadAllSermons();
    ASSERT_EQ(loaded.sermons.size(), 1u);
    EXPECT_EQ(loaded.sermons[0], sermon);
    EXPECT_EQ(loaded.pendingCount, 0);
}

TEST(SermonStorage, missingSermonFolderIsAnEmptyLibrary) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder / "not" / "yet");
    auto loaded = storage.loadAllSermons();
    EXPECT_TRUE(loaded.sermons.empty());
    EXPECT_EQ(loaded.pendingCount, 0);
}

TEST(SermonStorage, unreadableFilesAreLoggedSkippedAndNeverTouched) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    ASSERT_TRUE(storage.saveSermon(makeSermon("Kept one")));
    ASSERT_TRUE(storage.saveSermon(makeSermon("Kept two")));

    std::string valid = model::encodeSermonFile(makeSermon("Template"));
    std::string nonUtf8 = valid;
    nonUtf8.replace(nonUtf8.find("Template"), 8, "Bad \xff\xfe title");
    std::string wrongType = valid;
    wrongType.replace(wrongType.find("\"Template\""), 10, "42");
    std::string withoutNotes = model::encodeSermonFile(makeSermon("x"));
    withoutNotes.replace(withoutNotes.find("\"notes\""), 7, "\"notez\"");
    std::string garbage;
    std::string block;
    for (int i = 0; i < 4096; ++i)
        block += static_cast<char>((i * 7919) % 251);
    while (garbage.size() < 50 * 1024 * 1024)
        garbage += block;

    const std::map<std::string, std::string> broken = {
        {"truncated.json", valid.substr(0, valid.size() / 2)},
        {"non-utf8.json", nonUtf8},
        {"wrong-type.json", wrongType},
        {"missing-notes.json", withoutNotes},
        {"garbage.json", garbage},
        {"empty.json", ""},
    };
    const fs::path sermons = folder / "Sermons";
    for (const auto& [name, bytes] : broken)
        folder.write("Sermons/" + name, bytes);
    folder.write("Sermons/readme.txt", "not a sermon");
    fs::create_directory(sermons / "folder.json");
    const bool canRevokeReading = ::geteuid() != 0; // root reads files whatever their mode
    if (canRevokeReading) {
        folder.write("Sermons/unreadable.json", valid);
        fs::permissions(sermons / "unreadable.json", fs::perms::none);
    }

    LogCapture log;
    auto loaded = storage.loadAllSermons();
    EXPECT_EQ(titlesOf(loaded.sermons), (std::vector<std::string>{"Kept one", "Kept two"}));

    std::vector<std::string> failing = {"folder.json"};
    for (const auto& [name, bytes] : broken)
        failing.push_back(name);
    if (canRevokeReading)
        failing.push_back("unreadable.json");
    for (const auto& name : failing)
        EXPECT_TRUE(log.contains("error: Failed to load sermon from " + name + ": ")) << name;
    EXPECT_FALSE(log.contains("readme.txt"));

    for (const auto& [name, bytes] : broken)
        EXPECT_EQ(platform::readFile(sermons / name), bytes) << name << " was changed";
    EXPECT_TRUE(fs::is_directory(sermons / "folder.json"));
    EXPECT_EQ(testing::readText(sermons / "readme.txt"), "not a sermon");
}

// Files are decoded on several threads: the library still comes back in file-name order and each
// broken file is reported once, in that same order, whatever the timing.
TEST(SermonStorage, loadKeepsFileOrderAndReportsBrokenFilesInOrder) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    std::map<std::string, std::string> goodTitleByName;
    std::vector<std::string> brokenNames;
    for (int index = 0; index < 150; ++index) {
        auto sermon = makeSermon("Sermon " + std::to_string(index));
        const std::string name = sermon.id.text() + ".json";
        if (index % 9 == 4) {
            folder.write("Sermons/" + name, index % 2 ? "{\"id\": " : "[]");
            brokenNames.push_back(name);
        } else {
            ASSERT_TRUE(storage.saveSermon(sermon));
            goodTitleByName[name] = sermon.title;
        }
    }
    std::sort(brokenNames.begin(), brokenNames.end());
    std::vector<std::string> expectedTitles;
    for (const auto& [name, title] : goodTitleByName)
        expectedTitles.push_back(title);

    for (int run = 0; run < 3; ++run) {
        LogCapture log;
        auto loaded = storage.loadAllSermons();
        std::vector<std::string> titles;
        for (const auto& sermon : loaded.sermons)
            titles.push_back(sermon.title);
        EXPECT_EQ(titles, expectedTitles) << "run " << run;

        std::vector<std::string> reported;
        for (const auto& line : log.lines()) {
            const std::string prefix = "error: Failed to load sermon from ";
            if (line.starts_with(prefix))
                reported.push_back(line.substr(prefix.size(), line.find(':', prefix.size()) - prefix.size()));
        }
        EXPECT_EQ(reported, brokenNames) << "run " << run;
    }
}

TEST(SermonStorage, syncClientPlaceholdersCountAsPendingUntilTheFileArrives) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    auto arrived = makeSermon("Arrived");
    ASSERT_TRUE(storage.saveSermon(arrived));
    const std::string ids[] = {model::Uuid::random().text(), model::Uuid::random().text(),
                               model::Uuid::random().text()};
    folder.write("Sermons/" + ids[0] + ".json.nextcloud", "");
    folder.write("Sermons/" + ids[1] + ".json.owncloud", "");
    folder.write("Sermons/" + ids[2] + ".json.nextcloud", "");
    // A download that just finished can leave its placeholder for a moment: the real file counts.
    folder.write("Sermons/" + arrived.id.text() + ".json.nextcloud", "");
    // A placeholder for something other than a sermon file is none of ours.
    folder.write("Sermons/cover.jpg.nextcloud", "");

    auto loaded = storage.loadAllSermons();
    EXPECT_EQ(loaded.pendingCount, 3);
    ASSERT_EQ(loaded.sermons.size(), 1u);
    EXPECT_EQ(loaded.sermons[0].title, "Arrived");
}

TEST(SermonStorage, aSaveThatFailsBeforeTheReplaceKeepsTheOldFileAndLogs) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    auto sermon = makeSermon("Before");
    ASSERT_TRUE(storage.saveSermon(sermon));
    const fs::path file = storage.sermonFile(sermon.id);
    const std::string before = testing::readText(file);

    storage.setWriter([](const fs::path& target, std::string_view bytes) {
        platform::writeFileAtomically(target, bytes,
                                      [](const fs::path&) { throw platform::FileError("No space left on device."); });
    });
    sermon.title = "After";
    LogCapture log;
    EXPECT_FALSE(storage.saveSermon(sermon));
    EXPECT_TRUE(log.contains("error: Failed to save sermon \"After\": No space left on device."));
    EXPECT_EQ(testing::readText(file), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "Sermons"), fs::directory_iterator()), 1)
        << "the temporary file is left behind";
}

TEST(SermonStorage, coverImagesLiveInTheMediaFolder) {
    TemporaryFolder folder;
    auto storage = SermonStorage::atRoot(folder.path());
    auto id = model::Uuid::random();
    auto name = storage.saveCoverImage(id, "\xff\xd8jpeg");
    ASSERT_EQ(name, id.text() + "_cover.jpg");
    EXPECT_EQ(testing::readText(folder / "Media" / *name), "\xff\xd8jpeg");
    storage.removeCoverImage(id);
    EXPECT_FALSE(fs::exists(folder / "Media" / *name));
    storage.removeCoverImage(id); // already gone: nothing to report
}

} // namespace
} // namespace quillon::store
