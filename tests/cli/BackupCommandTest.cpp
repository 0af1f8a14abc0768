#include "LibraryRun.h"

namespace {
namespace fs = std::filesystem;
using quillon::testing::LibraryRun;

class BackupCommandTest : public LibraryRun {};

TEST_F(BackupCommandTest, backsUpAndRestoresIntoAnotherLibrary) {
    const auto sermon = seed("Backed Up");
    folder.write("library/Media/" + sermon.id.text() + "_cover.jpg", "JPEG");
    auto withCover = sermon;
    withCover.coverImageFileName = sermon.id.text() + "_cover.jpg";
    folder.write("library/Sermons/" + sermon.id.text() + ".json", quillon::model::encodeSermonFile(withCover));

    auto backup = run({"backup", (folder / "backups").string()});
    ASSERT_EQ(backup.status, 0) << backup.err;
    const fs::path backupFolder = backup.out.substr(0, backup.out.size() - 1);
    EXPECT_EQ(backupFolder.parent_path(), folder / "backups");
    EXPECT_TRUE(fs::exists(backupFolder / "sermons.json"));

    fs::remove_all(library());
    auto restored = run({"restore", backupFolder.string(), "--yes"});
    EXPECT_EQ(restored.status, 0) << restored.err;
    EXPECT_TRUE(restored.out.ends_with("Restore Complete\nRestored 1 sermon and 1 cover image.\n")) << restored.out;
    EXPECT_TRUE(inLibrary(sermon.id));
    EXPECT_EQ(quillon::testing::readText(library() / "Media" / *withCover.coverImageFileName), "JPEG");
}

TEST_F(BackupCommandTest, refusesAnEmptyLibraryAndAFolderThatIsNoBackup) {
    auto empty = run({"backup", (folder / "backups").string()});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.err, "Nothing to Back Up: There are no sermons in your library yet.\n");

    folder.write("not-a-backup/manifest.json", "{}");
    auto refused = run({"restore", (folder / "not-a-backup").string(), "--yes"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err,
              "Restore Failed\nThat folder does not contain a sermons.json file, so it is not a Quillon backup.\n");
}

} // namespace
