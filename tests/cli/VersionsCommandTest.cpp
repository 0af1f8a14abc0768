#include "LibraryRun.h"

#include "store/SermonVersionHistory.h"
#include "support/FakeClock.h"

namespace {
using quillon::testing::LibraryRun;

class VersionsCommandTest : public LibraryRun {};

TEST_F(VersionsCommandTest, listsSnapshotsAndRestoresOneUndoably) {
    auto sermon = seed("Current Title");
    EXPECT_EQ(run({"versions", sermon.id.text()}).out, "“Current Title” has no earlier versions yet.\n");

    quillon::platform::Preferences preferences = quillon::platform::Preferences::inMemory();
    // Kept five minutes ago by the clock the command itself reads.
    quillon::testing::FakeClock clock(std::chrono::system_clock::now() - std::chrono::minutes{5});
    quillon::store::SermonVersionHistory history(library(), preferences, clock);
    auto earlier = sermon;
    earlier.title = "Earlier Title";
    history.recordSnapshot(earlier);
    const auto snapshotId = history.snapshots(sermon.id).at(0).id.text();

    auto listed = run({"versions", sermon.id.text()});
    EXPECT_EQ(listed.out, snapshotId + "  5 minutes ago  Earlier Title\n");

    auto restored = run({"versions", "restore", sermon.id.text(), snapshotId.substr(0, 6)});
    EXPECT_EQ(restored.status, 0) << restored.err;
    EXPECT_EQ(restored.out, "Restored “Current Title” to the version from 5 minutes ago.\n");
    EXPECT_NE(quillon::testing::readText(library() / "Sermons" / (sermon.id.text() + ".json")).find("Earlier Title"),
              std::string::npos);
    // The state that was replaced is now a version of its own.
    auto snapshots = history.snapshots(sermon.id);
    ASSERT_EQ(snapshots.size(), 2u);
    EXPECT_EQ(snapshots[0].sermon.title, "Current Title");

    EXPECT_EQ(run({"versions", "restore", sermon.id.text(), "FFFFFFFF"}).err,
              "That sermon has no version with the id “FFFFFFFF”.\n");
}

} // namespace
