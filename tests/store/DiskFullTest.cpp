// A disk that fills up: a write that cannot complete leaves the old file whole and is logged at level
// "error"; a backup or an export reports its failure; nothing half-written is left behind. Runs in
// a private mount namespace on a small tmpfs, so only as root; skipped otherwise.
#include "export/ExportError.h"
#include "export/SermonMarkdownExporter.h"
#include "export/VerseTextSource.h"
#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "platform/Preferences.h"
#include "store/BackupError.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/LogCapture.h"
#include "support/PrivateMountNamespace.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillon::store {
namespace {

namespace fs = std::filesystem;

/// Writes until the file system refuses another byte.
void fill(const fs::path& file) {
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const std::string block(4096, 'f');
    while (::write(fd, block.data(), block.size()) > 0) {
    }
    while (::write(fd, block.data(), 1) > 0) {
    }
    ::close(fd);
}

/// The scenario, in the child that owns the mount namespace. Returns the problems found.
std::string onAFullDisk(const fs::path& disk) {
    std::string problems;
    auto check = [&problems](bool condition, const std::string& problem) {
        if (!condition)
            problems += problem + "\n";
    };
    auto preferences = platform::Preferences::inMemory();
    auto storage = SermonStorage::atRoot(disk / "Library");
    SermonNotesManager manager(storage, preferences);
    auto sermon = quillon::testing::makeSermon("Full");
    check(manager.add(sermon), "the first save failed on an empty disk");
    const std::string before = platform::readFile(storage.sermonFile(sermon.id));
    fs::create_directories(disk / "Exports");
    fill(disk / "filler");

    {
        quillon::testing::LogCapture log;
        sermon.notes = std::string(200'000, 'n');
        manager.update(sermon);
        check(log.contains("error: Failed to save sermon \"Full\": Could not write"),
              "the failed save was not logged at level error");
    }
    check(platform::readFile(storage.sermonFile(sermon.id)) == before, "the sermon file changed");
    check(testing::entryNames(storage.sermonsFolder()).size() == 1, "the failed save left a file in the sermon folder");

    SermonBackupManager backups([&] { return storage.mediaFolder(); }, preferences);
    try {
        backups.backUp(manager.sermons(), disk / "Exports");
        check(false, "the backup reported success");
    } catch (const platform::FileError& failure) {
        check(std::string(failure.what()).starts_with("Could not write"),
              "the backup's sentence is " + std::string(failure.what()));
    }
    check(!manager.exportArchive(disk / "Exports"), "the archive export reported success");
    try {
        const exports::NoVerseText noBible;
        exports::SermonMarkdownExporter(noBible).exportSermon(sermon, disk / "Exports");
        check(false, "the Markdown export reported success");
    } catch (const exports::ExportError& failure) {
        check(!std::string(failure.what()).empty(), "the export failed without a sentence");
    }
    check(testing::entryNames(disk / "Exports").empty(), "a backup or export left something behind");
    return problems;
}

TEST(DiskFull, failedWritesKeepTheOldFileReportAndLeaveNothingBehind) {
    quillon::testing::TemporaryFolder folder;
    const fs::path disk = folder / "disk";
    fs::create_directories(disk);
    const auto problems = quillon::testing::inPrivateMountNamespace([&]() -> std::string {
        if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0)
            return "could not mount a small disk";
        return onAFullDisk(disk);
    });
    if (!problems)
        GTEST_SKIP() << "needs root for a private mount namespace";
    EXPECT_EQ(*problems, "");
}

} // namespace
} // namespace quillon::store
