#include "store/SermonVersionHistory.h"

#include "support/FakeClock.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {
using namespace std::chrono_literals;
using quillon::model::SermonNote;
using quillon::model::Uuid;
using quillon::platform::Preferences;
using quillon::store::SermonVersionHistory;
using quillon::testing::FakeClock;
using quillon::testing::makeSermon;
using quillon::testing::TemporaryFolder;

/// A history in a temporary folder on a fake clock; `storedKey` set to `stored` when given.
struct History {
    History(const char* storedKey = nullptr, std::optional<double> stored = std::nullopt) {
        if (storedKey && stored)
            preferences.set(storedKey, *stored);
    }
    TemporaryFolder root;
    FakeClock clock;
    Preferences preferences = Preferences::inMemory();
    SermonVersionHistory history{root.path(), preferences, clock};
};

TEST(SermonVersionHistory, takesAtMostOneSnapshotPerInterval) {
    struct Case {
        const char* name;
        std::optional<double> storedInterval;
        std::chrono::seconds gap;
        std::size_t expected;
    };
    const Case cases[] = {
        {"default, 100 s apart", std::nullopt, 100s, 1},
        {"default, 400 s apart", std::nullopt, 400s, 2},
        {"default, exactly the interval", std::nullopt, 300s, 2},
        {"zero means the default", 0.0, 100s, 1},
        {"negative means the default", -5.0, 400s, 2},
        {"stored 60 s", 60.0, 100s, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        History h(SermonVersionHistory::snapshotIntervalKey, c.storedInterval);
        SermonNote sermon = makeSermon("First");
        h.history.recordSnapshot(sermon);
        h.clock.advance(c.gap);
        sermon.title = "Second";
        h.history.recordSnapshot(sermon);
        EXPECT_EQ(h.history.snapshots(sermon.id).size(), c.expected);
    }
}

TEST(SermonVersionHistory, listsNewestFirstAndFindsOneByIdentity) {
    History h;
    auto& [root, clock, preferences, history] = h;
    SermonNote sermon = makeSermon("Draft 1");
    history.recordSnapshot(sermon);
    clock.advance(10min);
    sermon.title = "Draft 2";
    history.recordSnapshot(sermon);
    history.recordSnapshot(makeSermon("Another sermon"));
    root.write("Versions/" + sermon.id.text() + "/" + Uuid::random().text() + ".json", "{ broken");

    auto snapshots = history.snapshots(sermon.id);
    ASSERT_EQ(snapshots.size(), 2u);
    EXPECT_EQ(snapshots[0].sermon.title, "Draft 2");
    EXPECT_EQ(snapshots[0].savedAt, std::chrono::floor<std::chrono::seconds>(clock.now()));
    EXPECT_EQ(snapshots[1].sermon.title, "Draft 1");

    auto found = history.snapshot(sermon.id, snapshots[1].id);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->sermon, snapshots[1].sermon);
    EXPECT_FALSE(history.snapshot(sermon.id, Uuid::random()));
}

TEST(SermonVersionHistory, prunesToTheNewestSnapshotsUpToTheCap) {
    struct Case {
        std::optional<double> storedCap;
        int recorded;
        std::size_t kept;
    };
    for (const Case& c : {Case{std::nullopt, 51, 50}, Case{0.0, 51, 50}, Case{3.0, 5, 3}}) {
        History h(SermonVersionHistory::maxVersionsKey, c.storedCap);
        auto& [root, clock, preferences, history] = h;
        SermonNote sermon = makeSermon("");
        for (int index = 0; index < c.recorded; ++index) {
            sermon.title = "Version " + std::to_string(index);
            history.recordSnapshot(sermon);
            clock.advance(301s);
        }
        auto snapshots = history.snapshots(sermon.id);
        ASSERT_EQ(snapshots.size(), c.kept);
        EXPECT_EQ(snapshots.front().sermon.title, "Version " + std::to_string(c.recorded - 1));
        EXPECT_EQ(snapshots.back().sermon.title, "Version " + std::to_string(c.recorded - static_cast<int>(c.kept)));
    }
}

TEST(SermonVersionHistory, aSnapshotThatCannotBeWrittenIsDroppedSilently) {
    TemporaryFolder root;
    root.write("Versions", "a file where the folder should be");
    Preferences preferences = Preferences::inMemory();
    SermonVersionHistory history(root.path(), preferences);
    SermonNote sermon = makeSermon("Kept anyway");
    EXPECT_NO_THROW(history.recordSnapshot(sermon));
    EXPECT_TRUE(history.snapshots(sermon.id).empty());
}

} // namespace
