#include "store/SermonTrashManager.h"

#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/ScopedTimeZone.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {
namespace fs = std::filesystem;
using namespace std::chrono;
using quillon::model::SermonNote;
using quillon::platform::Preferences;
using quillon::store::SermonNotesManager;
using quillon::store::SermonStorage;
using quillon::store::SermonTrashManager;
using quillon::testing::FakeClock;
using quillon::testing::ScopedTimeZone;
using quillon::testing::TemporaryFolder;

/// A loaded library in a temporary folder with a trash on it.
struct TrashLibrary {
    TemporaryFolder root;
    FakeClock clock;
    Preferences preferences = Preferences::inMemory();
    SermonStorage storage = SermonStorage::atRoot(root.path());
    SermonNotesManager manager{storage, preferences, clock};
    SermonTrashManager trash{manager, preferences, clock};

    TrashLibrary() { manager.load(); }

    SermonNote add(const std::string& title) {
        SermonNote sermon = quillon::testing::makeSermon(title);
        EXPECT_TRUE(manager.add(sermon));
        return sermon;
    }
};

TEST(SermonTrashManager, movesASermonOutOfTheLibraryAndBackAgain) {
    TrashLibrary library;
    const SermonNote sermon = library.add("Grace Abounding");
    const fs::path file = library.storage.sermonFile(sermon.id);
    ASSERT_TRUE(fs::exists(file));

    ASSERT_TRUE(library.trash.moveToTrash(sermon));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(library.manager.sermon(sermon.id), nullptr);
    EXPECT_TRUE(fs::exists(library.root / "Trash" / (sermon.id.text() + ".json")));
    auto trashed = library.trash.allTrashed();
    ASSERT_EQ(trashed.size(), 1u);
    EXPECT_EQ(trashed[0].sermon, sermon);
    EXPECT_EQ(trashed[0].trashedAt, floor<seconds>(library.clock.now()));

    auto restored = library.trash.restore(sermon.id);
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->title, "Grace Abounding");
    EXPECT_NE(library.manager.sermon(sermon.id), nullptr);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_TRUE(library.trash.allTrashed().empty());
    EXPECT_FALSE(library.trash.restore(sermon.id));

    ASSERT_TRUE(library.trash.moveToTrash(sermon));
    EXPECT_TRUE(library.trash.deletePermanently(sermon.id));
    EXPECT_FALSE(library.trash.deletePermanently(sermon.id));
    EXPECT_TRUE(library.trash.allTrashed().empty());
}

TEST(SermonTrashManager, aFailedMoveLogsAndLeavesTheSermonWhereItWas) {
    TrashLibrary library;
    const SermonNote sermon = library.add("Stays Put");
    library.root.write("Trash", "a file where the trash folder should be");

    quillon::testing::LogCapture log;
    EXPECT_FALSE(library.trash.moveToTrash(sermon));
    EXPECT_TRUE(log.contains("error: Failed to move sermon \"Stays Put\" to trash: "));
    EXPECT_NE(library.manager.sermon(sermon.id), nullptr);
    EXPECT_TRUE(fs::exists(library.storage.sermonFile(sermon.id)));
}

TEST(SermonTrashManager, purgesByCalendarDaysOfRetention) {
    struct Case {
        const char* name;
        std::optional<double> storedDays;
        int purgedDaysAgo;
        int keptDaysAgo;
    };
    const Case cases[] = {
        {"absent means 30", std::nullopt, 31, 29},
        {"zero means 30", 0.0, 31, 29},
        {"negative means 30", -4.0, 31, 29},
        {"seven days", 7.0, 8, 6},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TrashLibrary library;
        if (c.storedDays)
            library.preferences.set(SermonTrashManager::retentionDaysKey, *c.storedDays);
        const auto now = library.clock.now();
        const SermonNote old = library.add("Old");
        const SermonNote recent = library.add("Recent");
        library.clock.set(now - days{c.purgedDaysAgo});
        library.trash.moveToTrash(old);
        library.clock.set(now - days{c.keptDaysAgo});
        library.trash.moveToTrash(recent);
        library.clock.set(now);

        EXPECT_EQ(library.trash.purgeExpired(), 1);
        auto left = library.trash.allTrashed();
        ASSERT_EQ(left.size(), 1u);
        EXPECT_EQ(left[0].sermon.title, "Recent");
    }
}

TEST(SermonTrashManager, retentionCountsCalendarDaysAcrossADaylightSavingChange) {
    // New York moves its clocks forward on 2025-03-09. Seven calendar days before noon on the 12th
    // is noon on the 5th in winter time (17:00 UTC), an hour earlier than 7 × 86,400 seconds.
    ScopedTimeZone zone("America/New_York");
    TrashLibrary library;
    library.preferences.set(SermonTrashManager::retentionDaysKey, 7);
    const SermonNote before = library.add("Before the cut-off");
    const SermonNote after = library.add("After the cut-off");
    library.clock.set(sys_days{year{2025} / 3 / 5} + hours{16} + minutes{30}); // 11:30 EST
    library.trash.moveToTrash(before);
    library.clock.set(sys_days{year{2025} / 3 / 5} + hours{17} + minutes{30}); // 12:30 EST
    library.trash.moveToTrash(after);
    library.clock.set(sys_days{year{2025} / 3 / 12} + hours{16}); // 12:00 EDT

    EXPECT_EQ(library.trash.purgeExpired(), 1);
    auto left = library.trash.allTrashed();
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].sermon.title, "After the cut-off");
}

} // namespace
