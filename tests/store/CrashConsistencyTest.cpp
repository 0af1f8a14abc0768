// The store under SIGKILL and a full disk: whatever moment a write is cut off at, every sermon file
// holds its previous or its new state, the library loads, and nothing half-written stays behind.
#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "platform/Preferences.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/LogCapture.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quillon::store {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;

/// How many times each test kills its child; QUILLON_CRASH_RUNS raises it for a longer soak.
int runs(int standard) {
    const char* text = std::getenv("QUILLON_CRASH_RUNS");
    return text && std::atoi(text) > 0 ? std::atoi(text) : standard;
}

/// Reads up to the child's "R" line, which it prints once its library is loaded (or until it exits).
void waitUntilReady(int output) {
    char c = 0;
    while (::read(output, &c, 1) == 1 && c != '\n') {
    }
}

/// Starts the edit-stream program, lets it work for `delay` once it is ready, kills it and returns
/// what it printed after that.
std::string runAndKill(const std::vector<std::string>& arguments, std::chrono::microseconds delay) {
    int output[2];
    if (::pipe2(output, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe failed");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::vector<char*> argv;
    std::string program = QUILLON_EDIT_STREAM;
    argv.push_back(program.data());
    std::vector<std::string> copies = arguments;
    for (auto& argument : copies)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    pid_t child = 0;
    const int spawned = ::posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    if (spawned != 0) {
        ::close(output[0]);
        throw std::runtime_error("could not start " + program);
    }
    waitUntilReady(output[0]);
    std::this_thread::sleep_for(delay);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    std::string printed;
    char buffer[4096];
    for (ssize_t count; (count = ::read(output[0], buffer, sizeof buffer)) > 0;)
        printed.append(buffer, static_cast<std::size_t>(count));
    ::close(output[0]);
    return printed;
}

int generationOf(const model::SermonNote& sermon) {
    return sermon.notes.starts_with("generation ") ? std::atoi(sermon.notes.c_str() + 11) : -1;
}

/// Hidden entries of a folder: work files of writes in progress or cut off.
std::vector<std::string> hiddenEntries(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        if (it->path().filename().string().starts_with("."))
            names.push_back(it->path().filename().string());
    return names;
}

/// Every "*.json" of the sermon folder, decoded; a file that does not decode fails the test.
std::map<model::Uuid, model::SermonNote> sermonFiles(const fs::path& root) {
    std::map<model::Uuid, model::SermonNote> sermons;
    for (const auto& entry : fs::directory_iterator(root / "Sermons")) {
        if (entry.path().extension() != ".json" || entry.path().filename().string().starts_with("."))
            continue;
        try {
            auto sermon = model::decodeSermonFile(platform::readFile(entry.path()));
            sermons.emplace(sermon.id, std::move(sermon));
        } catch (const std::exception& failure) {
            ADD_FAILURE() << entry.path().filename() << " does not decode: " << failure.what();
        }
    }
    return sermons;
}

/// Random moments from the program's start up to a few dozen edits in.
std::chrono::microseconds killMoment(std::mt19937& random) {
    return std::chrono::microseconds(std::uniform_int_distribution<int>(0, 40'000)(random));
}

// What each write the child announced may have left: its previous state (the last one it
// finished) or the new one, and nothing else.
TEST(CrashConsistency, everySermonFileIsItsPreviousOrNewStateAfterAKill) {
    TemporaryFolder library;
    std::mt19937 random(20251123);
    struct Expected {
        std::optional<int> finished;
        std::optional<int> started;
    };
    std::map<std::string, Expected> expected;
    int edits = 0;
    int cut = 0; // writes announced and never finished: the kills that landed inside a write
    for (int run = 0; run < runs(300); ++run) {
        const std::string printed =
            runAndKill({library.path().string(), std::to_string(random()), "edit"}, killMoment(random));
        std::istringstream lines(printed);
        char phase = 0;
        std::string id;
        int generation = 0;
        while (lines >> phase >> id >> generation) {
            auto& state = expected[id];
            if (phase == 'B') {
                state.started = generation;
                ++cut;
            } else {
                --cut;
                state.finished = generation;
                state.started.reset();
                ++edits;
            }
        }

        const auto files = sermonFiles(library.path());
        for (const auto& [id, sermon] : files)
            EXPECT_TRUE(expected.contains(id.text())) << "run " << run << ": a file no write announced";
        for (auto it = expected.begin(); it != expected.end();) {
            auto& [text, state] = *it;
            const auto found = files.find(*model::Uuid::parse(text));
            if (found == files.end()) {
                EXPECT_FALSE(state.finished) << "run " << run << ": a saved sermon's file is gone";
                it = expected.erase(it); // an addition cut off before its file appeared
                continue;
            }
            const int onDisk = generationOf(found->second);
            EXPECT_TRUE(onDisk == state.finished || onDisk == state.started)
                << "run " << run << ": generation " << onDisk << " is neither the previous nor the new state";
            state.finished = onDisk; // what the next run starts from
            state.started.reset();
            ++it;
        }

        // The next start reads the whole library and clears what the killed write left.
        auto storage = SermonStorage::atRoot(library.path());
        EXPECT_EQ(storage.loadAllSermons().sermons.size(), files.size());
        EXPECT_EQ(hiddenEntries(library / "Sermons"), std::vector<std::string>{}) << "run " << run;
        platform::Preferences reopened(library / "preferences.json");
        EXPECT_EQ(hiddenEntries(library.path()), std::vector<std::string>{}) << "run " << run;
        if (fs::exists(library / "preferences.json")) {
            EXPECT_TRUE(
                nlohmann::json::parse(platform::readFile(library / "preferences.json"), nullptr, false).is_object());
        }
        if (::testing::Test::HasFailure())
            return;
    }
    // Kills that never let a write finish, or never landed inside one, would prove nothing.
    EXPECT_GT(edits, 0);
    EXPECT_GT(cut, 0);
    std::printf("%d writes finished, %d cut off by a kill\n", edits, cut);
}

std::vector<model::SermonNote> librarySermons(int count, int generation) {
    std::vector<model::SermonNote> sermons;
    for (int i = 0; i < count; ++i) {
        auto sermon = quillon::testing::makeSermon("Backed up " + std::to_string(i));
        sermon.id = *model::Uuid::parse("00000000-0000-4000-8000-" + std::string(12 - std::to_string(i).size(), '0') +
                                        std::to_string(i));
        sermon.notes = "generation " + std::to_string(generation) + "\n" + std::string(8000, 'x');
        sermons.push_back(sermon);
    }
    return sermons;
}

void writeLibrary(const fs::path& root, const std::vector<model::SermonNote>& sermons) {
    auto storage = SermonStorage::atRoot(root);
    for (const auto& sermon : sermons)
        ASSERT_TRUE(storage.saveSermon(sermon));
}

TEST(CrashConsistency, aBackupKilledMidwayLeavesOnlyWholeBackupsAndTheNextOneWorks) {
    TemporaryFolder folder;
    const fs::path destination = folder / "Backups";
    writeLibrary(folder / "Library", librarySermons(150, 1));
    std::mt19937 random(7);
    auto preferences = platform::Preferences::inMemory();
    SermonBackupManager backups([&] { return folder / "Library" / "Media"; }, preferences);
    for (int run = 0; run < runs(300) / 10; ++run) {
        runAndKill({(folder / "Library").string(), std::to_string(random()), "backup", destination.string()},
                   killMoment(random) * 4);
        if (!fs::exists(destination))
            continue; // killed before its first backup began
        for (const auto& entry : fs::directory_iterator(destination)) {
            if (entry.path().filename().string().starts_with("."))
                continue;
            std::vector<model::SermonNote> restored;
            backups.restore(entry.path(), [&](const std::vector<model::SermonNote>& sermons) {
                restored = sermons;
                return static_cast<int>(sermons.size());
            });
            EXPECT_EQ(restored.size(), 150u) << entry.path().filename();
        }
    }
    const auto made = backups.backUp(librarySermons(150, 1), destination);
    EXPECT_TRUE(fs::exists(made / "manifest.json"));
    EXPECT_EQ(hiddenEntries(destination), std::vector<std::string>{});
}

// Restores alternate between two backups of the same sermons; a restore cut off anywhere leaves
// each sermon as it was or as the backup has it, never twice and never missing.
TEST(CrashConsistency, aRestoreKilledMidwayLosesAndDuplicatesNothing) {
    TemporaryFolder folder;
    const fs::path library = folder / "Library";
    auto preferences = platform::Preferences::inMemory();
    SermonBackupManager backups([&] { return library / "Media"; }, preferences);
    const fs::path older = backups.backUp(librarySermons(150, 2), folder / "Older");
    const fs::path newer = backups.backUp(librarySermons(150, 3), folder / "Newer");
    writeLibrary(library, librarySermons(150, 1));

    std::map<model::Uuid, int> before;
    for (const auto& [id, sermon] : sermonFiles(library))
        before[id] = generationOf(sermon);
    std::mt19937 random(11);
    for (int run = 0; run < runs(300) / 10; ++run) {
        const int restoring = run % 2 == 0 ? 2 : 3;
        runAndKill({library.string(), std::to_string(random()), "restore", (run % 2 == 0 ? older : newer).string()},
                   killMoment(random) * 4);
        const auto files = sermonFiles(library);
        EXPECT_EQ(files.size(), 150u) << "run " << run;
        for (const auto& [id, sermon] : files) {
            EXPECT_TRUE(generationOf(sermon) == before[id] || generationOf(sermon) == restoring) << "run " << run;
            before[id] = generationOf(sermon);
        }
        if (::testing::Test::HasFailure())
            return;
    }
    SermonStorage storage = SermonStorage::atRoot(library);
    SermonNotesManager manager(storage, preferences);
    manager.load();
    EXPECT_EQ(hiddenEntries(library / "Sermons"), std::vector<std::string>{});
    EXPECT_EQ(hiddenEntries(library / "Media"), std::vector<std::string>{});
    const auto result = backups.restoreInto(manager, newer);
    EXPECT_EQ(result.sermonsRestored, 150);
    const auto files = sermonFiles(library);
    EXPECT_EQ(files.size(), 150u);
    for (const auto& [id, sermon] : files)
        EXPECT_EQ(generationOf(sermon), 3);
}

} // namespace
} // namespace quillon::store
