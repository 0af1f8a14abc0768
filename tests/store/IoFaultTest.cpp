// Disk errors at every step of a save, a backup and an export, one step at a time: the old file
// stays whole, the failure is logged at level "error" or reported with its sentence, and nothing
// half-written remains.
#include "export/ExportError.h"
#include "export/SermonMarkdownExporter.h"
#include "export/VerseTextSource.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "platform/FileSteps.h"
#include "platform/Preferences.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/LogCapture.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <map>

namespace quillon::store {
namespace {

namespace fs = std::filesystem;
using platform::FileStep;

constexpr int diskErrors[] = {EIO, ENOSPC, EDQUOT, EROFS, EACCES, EPERM};

/// One refused step: the `occurrence`-th time (from 0) the operation reaches `step`, on `file`.
struct Refusal {
    FileStep step;
    int occurrence;
    int error;
    fs::path file;
};

/// Every step an operation takes, in order, when nothing fails.
std::vector<std::pair<FileStep, fs::path>> stepsOf(const std::function<void()>& operation) {
    std::vector<std::pair<FileStep, fs::path>> steps;
    platform::ScopedFileFault watch([&](FileStep step, const fs::path& file) {
        steps.emplace_back(step, file);
        return 0;
    });
    operation();
    return steps;
}

/// Each step of `steps` refused in turn, the errors taken round the table so that every error
/// meets several kinds of step.
std::vector<Refusal> refusalsFor(const std::vector<std::pair<FileStep, fs::path>>& steps) {
    std::vector<Refusal> refusals;
    std::map<FileStep, int> occurrences;
    for (std::size_t index = 0; index < steps.size(); ++index) {
        const auto& [step, file] = steps[index];
        refusals.push_back({step, occurrences[step]++, diskErrors[index % std::size(diskErrors)], file});
    }
    return refusals;
}

platform::ScopedFileFault refuse(const Refusal& refusal) {
    return platform::ScopedFileFault(
        [refusal, seen = std::map<FileStep, int>{}](FileStep step, const fs::path&) mutable {
            return step == refusal.step && seen[step]++ == refusal.occurrence ? refusal.error : 0;
        });
}

std::string describe(const Refusal& refusal) {
    static const char* names[] = {"open", "write", "sync", "close", "rename", "syncFolder"};
    return std::string(names[static_cast<int>(refusal.step)]) + " #" + std::to_string(refusal.occurrence + 1) +
           " fails with " + std::strerror(refusal.error);
}

struct Library {
    quillon::testing::TemporaryFolder folder;
    platform::Preferences preferences = platform::Preferences::inMemory();
    SermonStorage storage = SermonStorage::atRoot(folder / "Library");
    SermonNotesManager manager{storage, preferences};
    model::SermonNote sermon = quillon::testing::makeSermon("Grace");

    Library() {
        manager.add(sermon);
        fs::create_directories(folder / "Exports");
    }
};

TEST(IoFault, aRefusedSaveKeepsTheOldFileAndIsLoggedAsAnError) {
    Library library;
    auto edited = library.sermon;
    const auto steps = stepsOf([&] { library.manager.update(edited); });
    for (const Refusal& refusal : refusalsFor(steps)) {
        SCOPED_TRACE(describe(refusal));
        const std::string before = platform::readFile(library.storage.sermonFile(edited.id));
        edited.notes += " more";
        quillon::testing::LogCapture log;
        bool saved = true;
        {
            auto fault = refuse(refusal);
            saved = library.manager.update(edited);
        }
        EXPECT_FALSE(saved);
        EXPECT_TRUE(log.contains("error: Failed to save sermon \"Grace\": Could not write"));
        const std::string after = platform::readFile(library.storage.sermonFile(edited.id));
        if (refusal.step != FileStep::syncFolder) {
            EXPECT_EQ(after, before);
        }
        EXPECT_NE(after.find("For God so loved"), std::string::npos) << "the file is not whole";
        EXPECT_EQ(testing::entryNames(library.storage.sermonsFolder()).size(), 1u);
        EXPECT_EQ(library.manager.sermon(edited.id)->notes, edited.notes) << "the edit was lost in memory";
    }
    EXPECT_TRUE(library.manager.update(edited));
}

TEST(IoFault, aRefusedBackupSaysWhyAndLeavesNoPartOfItself) {
    Library library;
    library.storage.saveCoverImage(library.sermon.id, "jpeg bytes");
    auto withCover = library.sermon;
    withCover.coverImageFileName = library.sermon.id.text() + "_cover.jpg";
    library.manager.update(withCover);
    const SermonBackupManager backups([&] { return library.storage.mediaFolder(); }, library.preferences);
    const fs::path exports = library.folder / "Exports";
    const auto steps = stepsOf([&] { fs::remove_all(backups.backUp(library.manager.sermons(), exports)); });
    for (const Refusal& refusal : refusalsFor(steps)) {
        SCOPED_TRACE(describe(refusal));
        std::optional<fs::path> written;
        std::string sentence;
        {
            auto fault = refuse(refusal);
            try {
                written = backups.backUp(library.manager.sermons(), exports);
            } catch (const platform::FileError& failure) {
                sentence = failure.what();
            }
        }
        const auto left = testing::entryNames(exports);
        // A cover image that cannot be copied is left out; the backup still has every sermon.
        const bool imageCopy = refusal.file.filename() == *withCover.coverImageFileName;
        EXPECT_EQ(written.has_value(), imageCopy) << sentence;
        if (written) {
            EXPECT_FALSE(fs::exists(*written / "Media" / *withCover.coverImageFileName));
        } else {
            EXPECT_TRUE(sentence.starts_with("Could not ")) << sentence;
            EXPECT_NE(sentence.find(std::strerror(refusal.error)), std::string::npos) << sentence;
        }
        // Only a destination that cannot be synced after the backup is in place keeps the (whole) backup.
        if (!left.empty()) {
            ASSERT_EQ(left.size(), 1u);
            const fs::path kept = exports / left.front();
            EXPECT_TRUE(imageCopy || refusal.step == FileStep::syncFolder) << left.front();
            EXPECT_EQ(SermonBackupManager::decodeManifest(platform::readFile(kept / "manifest.json")).sermonCount, 1);
            fs::remove_all(kept);
        }
    }
}

TEST(IoFault, aRefusedExportReportsItsSentenceAndLeavesNoFile) {
    Library library;
    const exports::NoVerseText noBible;
    const exports::SermonMarkdownExporter markdown(noBible);
    const fs::path exports = library.folder / "Exports";
    const auto steps = stepsOf([&] { fs::remove(markdown.exportSermon(library.sermon, exports)); });
    for (const Refusal& refusal : refusalsFor(steps)) {
        SCOPED_TRACE(describe(refusal));
        quillon::testing::LogCapture log;
        std::string sentence;
        bool archived = true;
        {
            auto fault = refuse(refusal);
            try {
                markdown.exportSermon(library.sermon, exports);
            } catch (const exports::ExportError& failure) {
                sentence = failure.what();
            }
        }
        EXPECT_EQ(sentence, markdown.failureSentence());
        EXPECT_TRUE(log.contains("error: Writing export"));
        {
            auto fault = refuse(refusal);
            archived = library.manager.exportArchive(exports).has_value();
        }
        EXPECT_FALSE(archived);
        EXPECT_TRUE(log.contains("error: Failed to write the sermon archive"));
        for (const auto& name : testing::entryNames(exports)) {
            EXPECT_EQ(refusal.step, FileStep::syncFolder) << name << " was left behind";
            fs::remove(exports / name);
        }
    }
}

} // namespace
} // namespace quillon::store
