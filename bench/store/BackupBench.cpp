// Backing up and restoring a large library, against `cp -r` of the same folders: copying the
// files is the floor any backup has to pay, so the figure worth watching is the ratio.

#include "model/SermonCoding.h"
#include "store/SampleSermons.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {
namespace fs = std::filesystem;
using namespace quillon;

constexpr int sermonCount = 2000;
constexpr int coverCount = 200;
constexpr std::size_t coverBytes = 180 * 1024;

/// A library on disk: "Sermons" with one file per sermon and "Media" with the cover images.
struct BenchLibrary {
    fs::path root;
    std::vector<model::SermonNote> sermons;

    BenchLibrary() {
        std::string pattern = (fs::temp_directory_path() / "quillon-backup-bench-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        fs::create_directories(root / "Sermons");
        fs::create_directories(root / "Media");
        const auto samples = store::buildSampleSermons(model::DateTime{std::chrono::seconds{1'741'500'000}});
        std::mt19937_64 random{42};
        std::string cover(coverBytes, '\0');
        for (int index = 0; index < sermonCount; ++index) {
            model::SermonNote sermon = samples[static_cast<std::size_t>(index) % samples.size()];
            sermon.id = model::Uuid::random();
            sermon.title += " " + std::to_string(index);
            if (index < coverCount) {
                sermon.coverImageFileName = sermon.id.text() + "_cover.jpg";
                for (char& byte : cover)
                    byte = static_cast<char>(random());
                std::ofstream(root / "Media" / *sermon.coverImageFileName, std::ios::binary) << cover;
            }
            std::ofstream(root / "Sermons" / (sermon.id.text() + ".json"), std::ios::binary)
                << model::encodeSermonFile(sermon);
            sermons.push_back(std::move(sermon));
        }
    }
    ~BenchLibrary() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
};

BenchLibrary& library() {
    static BenchLibrary shared;
    return shared;
}

void clear(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    fs::create_directories(folder);
}

void copyFloor(benchmark::State& state) {
    BenchLibrary& lib = library();
    const fs::path target = lib.root / "cp-target";
    for (auto _ : state) {
        state.PauseTiming();
        clear(target);
        state.ResumeTiming();
        const std::string command = "cp -r '" + (lib.root / "Sermons").string() + "' '" +
                                    (lib.root / "Media").string() + "' '" + target.string() + "'";
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("cp failed");
    }
}
BENCHMARK(copyFloor)->Unit(benchmark::kMillisecond)->UseRealTime();

void backUp(benchmark::State& state) {
    BenchLibrary& lib = library();
    platform::Preferences preferences = platform::Preferences::inMemory();
    store::SermonBackupManager manager([&] { return lib.root / "Media"; }, preferences);
    const fs::path target = lib.root / "backups";
    for (auto _ : state) {
        state.PauseTiming();
        clear(target);
        state.ResumeTiming();
        benchmark::DoNotOptimize(manager.backUp(lib.sermons, target));
    }
}
// Backups encode and restores decode sermons on several threads: the CPU column counts every thread.
BENCHMARK(backUp)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

void restore(benchmark::State& state) {
    BenchLibrary& lib = library();
    platform::Preferences preferences = platform::Preferences::inMemory();
    store::SermonBackupManager source([&] { return lib.root / "Media"; }, preferences);
    clear(lib.root / "source-backup");
    const fs::path backup = source.backUp(lib.sermons, lib.root / "source-backup");
    const fs::path restored = lib.root / "restored";
    for (auto _ : state) {
        state.PauseTiming();
        clear(restored);
        // The real store's import, as `quillon restore` runs it, into an empty library.
        store::SermonStorage storage = store::SermonStorage::atRoot(restored);
        store::SermonNotesManager manager(storage, preferences);
        manager.load();
        store::SermonBackupManager target([&] { return storage.mediaFolder(); }, preferences);
        // A restore makes its files durable with one flush of the file system; without this it would
        // also pay for the writes of the backup and the copies made just before it.
        ::sync();
        state.ResumeTiming();
        benchmark::DoNotOptimize(target.restoreInto(manager, backup));
    }
}
BENCHMARK(restore)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

} // namespace

BENCHMARK_MAIN();
