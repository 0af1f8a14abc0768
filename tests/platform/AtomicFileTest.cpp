#include "platform/AtomicFile.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

size_t entriesIn(const fs::path& folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(AtomicFile, replacesTheWholeFileAndLeavesNoTemporary) {
    TemporaryFolder folder;
    auto target = folder / "sermon.json";
    writeFileAtomically(target, "old");
    writeFileAtomically(target, "new contents");
    EXPECT_EQ(readFile(target), "new contents");
    EXPECT_EQ(entriesIn(folder.path()), 1u);
}

TEST(AtomicFile, crashBeforeTheReplaceKeepsTheOldFile) {
    TemporaryFolder folder;
    auto target = folder / "sermon.json";
    writeFileAtomically(target, "old");
    fs::path seenTemporary;
    auto crash = [&](const fs::path& temporary) {
        seenTemporary = temporary;
        EXPECT_EQ(readFile(temporary), "half-written new");
        throw FileError("simulated crash");
    };
    EXPECT_THROW(writeFileAtomically(target, "half-written new", crash), FileError);
    EXPECT_EQ(readFile(target), "old");
    EXPECT_FALSE(fs::exists(seenTemporary));
    EXPECT_EQ(entriesIn(folder.path()), 1u);
}

TEST(AtomicFile, failuresAreTypedWithASentence) {
    TemporaryFolder folder;
    EXPECT_THROW(writeFileAtomically(folder / "missing-folder" / "x.json", "x"), FileError);
    fs::create_directory(folder / "folder.json");
    EXPECT_THROW(readFile(folder / "folder.json"), FileError);
    EXPECT_THROW(readFile(folder / "absent.json"), FileError);
    try {
        writeFileAtomically(folder / "folder.json", "x");
        FAIL() << "a folder cannot be replaced by a file";
    } catch (const FileError& error) {
        EXPECT_NE(std::string(error.what()).find("folder.json"), std::string::npos);
    }
    EXPECT_TRUE(fs::is_directory(folder / "folder.json"));
}

} // namespace
} // namespace quillon::platform
