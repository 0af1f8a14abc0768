// A process that works on a library without end, for the crash-consistency tests to kill at random.
//
//   store_edit_stream <library root> <seed> edit
//   store_edit_stream <library root> <seed> backup <destination>
//   store_edit_stream <library root> <seed> restore <backup folder>
//
// edit: every sermon's notes begin with "generation <n>". Before each write it prints "B <id> <n>"
// and after the store reports it saved "E <id> <n>", so the test knows which two states a killed
// write may have left. backup and restore repeat that operation and print "E" after each. A line
// "R" comes first, once the library is loaded.
#include "model/Uuid.h"
#include "platform/Preferences.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/FakeClock.h"

#include <spdlog/spdlog.h>

#include <cstdio>
#include <random>
#include <string>

namespace {

using namespace quillon;

constexpr std::size_t librarySize = 6;

int generationOf(const model::SermonNote& sermon) {
    return sermon.notes.starts_with("generation ") ? std::atoi(sermon.notes.c_str() + 11) : 0;
}

/// Notes of a few to several tens of kilobytes, so that a write takes long enough to be cut.
std::string notesFor(int generation, std::mt19937& random) {
    std::string notes = "generation " + std::to_string(generation) + "\n";
    const std::size_t paragraphs = std::uniform_int_distribution<std::size_t>(20, 600)(random);
    for (std::size_t i = 0; i < paragraphs; ++i)
        notes += "Love gives first, and it gives again; the gift is never taken back. ";
    return notes;
}

void announce(char phase, const model::SermonNote& sermon, int generation) {
    std::printf("%c %s %d\n", phase, sermon.id.text().c_str(), generation);
    std::fflush(stdout);
}

model::SermonNote newSermon(std::mt19937& random) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Edit stream";
    sermon.speaker = "Ann Lee";
    sermon.notes = notesFor(0, random);
    return sermon;
}

void editForever(store::SermonNotesManager& manager, std::mt19937& random) {
    while (manager.sermons().size() < librarySize) {
        const auto sermon = newSermon(random);
        announce('B', sermon, 0);
        if (manager.add(sermon))
            announce('E', sermon, 0);
    }
    for (unsigned edit = 0;; ++edit) {
        const auto& sermons = manager.sermons();
        model::SermonNote sermon = sermons[std::uniform_int_distribution<std::size_t>(0, sermons.size() - 1)(random)];
        const int generation = generationOf(sermon) + 1;
        sermon.notes = notesFor(generation, random);
        announce('B', sermon, generation);
        manager.update(sermon);
        announce('E', sermon, generation);
        // The preferences file is rewritten too, as pinning and selecting do.
        if (edit % 4 == 0)
            manager.setPinned(sermon.id, edit % 8 == 0);
    }
}

/// Backs up into `destination` again and again, a minute apart on its own clock: a backup's name
/// has whole seconds, and the names must not collide.
void backUpForever(store::SermonNotesManager& manager, store::SermonStorage& storage,
                   const platform::Preferences& preferences, const std::filesystem::path& destination,
                   std::mt19937& random) {
    testing::FakeClock clock(std::chrono::system_clock::now() +
                             std::chrono::hours(std::uniform_int_distribution<int>(0, 1'000'000)(random)));
    store::SermonBackupManager backups([&storage] { return storage.mediaFolder(); }, preferences, clock);
    for (unsigned run = 0;; ++run) {
        clock.advance(std::chrono::minutes(1));
        backups.backUp(manager.sermons(), destination);
        std::printf("E backup %u\n", run);
        std::fflush(stdout);
    }
}

void restoreForever(store::SermonNotesManager& manager, store::SermonStorage& storage,
                    const platform::Preferences& preferences, const std::filesystem::path& backup) {
    store::SermonBackupManager backups([&storage] { return storage.mediaFolder(); }, preferences);
    for (unsigned run = 0;; ++run) {
        backups.restoreInto(manager, backup);
        std::printf("E restore %u\n", run);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: store_edit_stream <library root> <seed> edit|backup DIR|restore DIR\n");
        return 2;
    }
    spdlog::set_level(spdlog::level::off);
    const std::filesystem::path root = argv[1];
    std::mt19937 random(static_cast<unsigned>(std::stoul(argv[2])));
    const std::string mode = argv[3];
    platform::Preferences preferences(root / "preferences.json");
    store::SermonStorage storage = store::SermonStorage::atRoot(root);
    store::SermonNotesManager manager(storage, preferences);
    manager.load();
    // The test times its kill from here, so a slow start (a sanitizer build, a busy machine) does
    // not use up the moments meant for the writes.
    std::printf("R\n");
    std::fflush(stdout);
    if (mode == "backup" && argc == 5)
        backUpForever(manager, storage, preferences, argv[4], random);
    else if (mode == "restore" && argc == 5)
        restoreForever(manager, storage, preferences, argv[4]);
    else
        editForever(manager, random);
    return 0;
}
