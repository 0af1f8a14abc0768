// Every step of an atomic write refused with every error a disk gives: the old file stays whole
// (or, once the rename is done, the new one is whole), the failure names the file and the reason,
// and no work file is left behind.
#include "platform/AtomicFile.h"
#include "platform/FileSteps.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

constexpr FileStep allSteps[] = {FileStep::open,  FileStep::write,  FileStep::sync,
                                 FileStep::close, FileStep::rename, FileStep::syncFolder};
constexpr int diskErrors[] = {EIO, ENOSPC, EDQUOT, EROFS, EACCES, EPERM};

const char* stepName(FileStep step) {
    switch (step) {
    case FileStep::open:
        return "open";
    case FileStep::write:
        return "write";
    case FileStep::sync:
        return "sync";
    case FileStep::close:
        return "close";
    case FileStep::rename:
        return "rename";
    case FileStep::syncFolder:
        return "syncFolder";
    }
    return "?";
}

std::vector<std::string> entries(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

TEST(FileFault, everyRefusedStepKeepsOneWholeFileAndSaysWhy) {
    TemporaryFolder folder;
    const fs::path target = folder / "sermon.json";
    const std::string old = "old contents", replacement(100'000, 'n');
    for (FileStep step : allSteps) {
        for (int error : diskErrors) {
            SCOPED_TRACE(std::string(stepName(step)) + " fails with " + std::strerror(error));
            writeFileAtomically(target, old);
            std::vector<FileStep> seen;
            {
                ScopedFileFault fault([&](FileStep asked, const fs::path&) {
                    seen.push_back(asked);
                    return asked == step ? error : 0;
                });
                try {
                    writeFileAtomically(target, replacement);
                    ADD_FAILURE() << "the write reported success";
                } catch (const FileError& failure) {
                    EXPECT_EQ(std::string(failure.what()),
                              "Could not write “sermon.json”: " + std::string(std::strerror(error)) + ".");
                }
            }
            EXPECT_EQ(seen.back(), step) << "a step ran after the refused one";
            // Only a folder that cannot be synced comes after the replace.
            EXPECT_EQ(readFile(target), step == FileStep::syncFolder ? replacement : old);
            EXPECT_EQ(entries(folder.path()), std::vector<std::string>{"sermon.json"});
        }
    }
}

TEST(FileFault, theStepsRunInOrderAndTheSeamLetsThemThrough) {
    TemporaryFolder folder;
    std::vector<FileStep> seen;
    std::vector<fs::path> files;
    {
        ScopedFileFault fault([&](FileStep step, const fs::path& file) {
            seen.push_back(step);
            files.push_back(file);
            return 0;
        });
        writeFileAtomically(folder / "notes.json", "text");
    }
    EXPECT_EQ(seen, std::vector<FileStep>(std::begin(allSteps), std::end(allSteps)));
    EXPECT_EQ(files.back(), folder.path());
    EXPECT_EQ(files[4], folder / "notes.json");
    EXPECT_EQ(readFile(folder / "notes.json"), "text");
    writeFileAtomically(folder / "notes.json", "after"); // no fault installed any more
    EXPECT_EQ(seen.size(), std::size(allSteps));
}

} // namespace
} // namespace quillon::platform
