#include "platform/FolderWatcher.h"

#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

TEST(FolderWatcher, reportsEachKindOfChangeThroughItsDescriptor) {
    TemporaryFolder folder;
    folder.write("old.json", "{}");
    folder.write("gone.json", "{}");
    FolderWatcher watcher(folder.path());
    EXPECT_FALSE(watcher.waitForChanges(0));
    EXPECT_TRUE(watcher.readChanges().empty());

    struct Case {
        const char* what;
        std::function<void()> change;
        std::string name;
    } cases[] = {
        {"created", [&] { folder.write("new.json", "{}"); }, "new.json"},
        {"replaced atomically", [&] { writeFileAtomically(folder / "old.json", "{ }"); }, "old.json"},
        {"renamed in", [&] { fs::rename(folder / "new.json", folder / "moved.json"); }, "moved.json"},
        {"deleted", [&] { fs::remove(folder / "gone.json"); }, "gone.json"},
    };
    for (const auto& c : cases) {
        c.change();
        ASSERT_TRUE(watcher.waitForChanges(5000)) << c.what;
        auto names = watcher.readChanges();
        EXPECT_TRUE(contains(names, c.name)) << c.what;
        EXPECT_EQ(std::count(names.begin(), names.end(), c.name), 1) << c.what << ": duplicates are merged";
        EXPECT_TRUE(watcher.readChanges().empty()) << c.what << ": drained";
    }
}

TEST(FolderWatcher, aFolderThatCannotBeWatchedIsATypedError) {
    TemporaryFolder folder;
    EXPECT_THROW(FolderWatcher(folder / "missing"), FileError);
    auto file = folder.write("plain.json", "{}");
    EXPECT_THROW(FolderWatcher{file}, FileError);
}

} // namespace
} // namespace quillon::platform
