#include "LibraryRun.h"

namespace {
using quillon::testing::LibraryRun;

class TrashCommandTest : public LibraryRun {};

TEST_F(TrashCommandTest, deleteListRestoreAndDeleteForGood) {
    const auto keep = seed("Keep Me");
    const auto gone = seed("Gone Soon");

    auto deleted = run({"delete", gone.id.text().substr(0, 8), "--yes"});
    EXPECT_EQ(deleted.status, 0) << deleted.err;
    EXPECT_EQ(deleted.out, "“Gone Soon” will move to Trash. It can be restored from Setup > Trash… for 30 days, after "
                           "which it is removed automatically.\nMoved to Trash\n1 sermon moved to Trash.\n");
    EXPECT_FALSE(inLibrary(gone.id));
    EXPECT_TRUE(inLibrary(keep.id));

    auto listed = run({"trash", "list"});
    EXPECT_NE(listed.out.find(gone.id.text()), std::string::npos);
    EXPECT_NE(listed.out.find("Gone Soon"), std::string::npos);

    auto restored = run({"trash", "restore", gone.id.text()});
    EXPECT_EQ(restored.out, "Restored “Gone Soon” from the trash.\n");
    EXPECT_TRUE(inLibrary(gone.id));
    EXPECT_EQ(run({"trash", "list"}).out, "The trash is empty.\n");

    run({"delete", gone.id.text(), "--yes"});
    EXPECT_EQ(run({"trash", "delete", gone.id.text()}).out, "Deleted “Gone Soon” permanently.\n");
    EXPECT_EQ(run({"trash", "purge"}).out, "Removed 0 sermons trashed more than 30 days ago.\n");
    EXPECT_FALSE(inLibrary(gone.id));
}

TEST_F(TrashCommandTest, unknownIdsAreUserErrors) {
    seed("Only One");
    struct Case {
        std::vector<std::string> arguments;
        const char* error;
    };
    const Case cases[] = {
        {{"delete", "ZZZZZZZZ"}, "No sermon has the id “ZZZZZZZZ”.\n"},
        {{"trash", "restore", "ABCD"}, "No sermon in the trash has the id “ABCD”.\n"},
        {{"trash", "delete", "../x"}, "No sermon in the trash has the id “../x”.\n"},
    };
    for (const Case& c : cases) {
        auto result = run(c.arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, c.error);
    }
}

} // namespace
