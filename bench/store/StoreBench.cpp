// The sermon store against a library of 10,000 realistic sermons: load(), one update, encode and
// decode throughput and the peak memory of a process that only loads the library. The floor is
// `cat` reading the same files: load() should stay within 8x of it, an update under 5 ms plus the
// fsync, and memory under 3x the library's size on disk.

#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "platform/Preferences.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

namespace {
namespace fs = std::filesystem;
using namespace quillon;
using Clock = std::chrono::steady_clock;

constexpr int sermonCount = 10'000;
constexpr int topicsPerSermon = 5;
constexpr int subTopicsPerTopic = 3;
constexpr int scripturesPerSubTopic = 2;
constexpr int manuscriptWords = 2'000;

const char* const vocabulary[] = {
    "grace",    "faith",    "the",      "and",       "of",           "love",      "kingdom",    "mercy",
    "to",       "in",       "shepherd", "light",     "world",        "covenant",  "promise",    "he",
    "was",      "that",     "spirit",   "righteous", "heart",        "hope",      "redemption", "servant",
    "glory",    "a",        "people",   "prayer",    "wilderness",   "bread",     "living",     "water",
    "forgiven", "peace",    "joy",      "cross",     "resurrection", "disciples", "Jerusalem",  "temple",
    "law",      "prophets", "for",      "with",      "who",          "is"};
const char* const books[] = {"Genesis", "Exodus", "Psalms", "Isaiah", "Matthew", "John", "Romans", "Hebrews"};

std::string words(std::mt19937_64& random, int count) {
    std::string text;
    text.reserve(static_cast<std::size_t>(count) * 7);
    std::uniform_int_distribution<std::size_t> pick(0, std::size(vocabulary) - 1);
    for (int index = 0; index < count; ++index) {
        if (index > 0)
            text += index % 17 == 0 ? ". " : (index % 180 == 0 ? ".\n\n" : " ");
        text += vocabulary[pick(random)];
    }
    return text + ".";
}

model::SermonNote generateSermon(std::mt19937_64& random, int index) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Sermon " + std::to_string(index) + ": " + words(random, 4);
    sermon.date = model::DateTime{std::chrono::seconds{1'700'000'000 + index * 86'400LL}};
    sermon.speaker = "Pastor Ann Lee";
    sermon.series = "Series " + std::to_string(index % 40);
    sermon.notes = words(random, manuscriptWords);
    sermon.createdAt = sermon.date;
    sermon.modifiedAt = sermon.date + std::chrono::hours{index % 100};
    sermon.tags = {"grace", "series-" + std::to_string(index % 40)};
    for (int t = 0; t < topicsPerSermon; ++t) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = words(random, 5);
        topic.details = words(random, 40);
        topic.sortOrder = t;
        for (int s = 0; s < subTopicsPerTopic; ++s) {
            model::SermonSubTopic subTopic;
            subTopic.id = model::Uuid::random();
            subTopic.title = words(random, 4);
            subTopic.details = words(random, 25);
            subTopic.sortOrder = s;
            for (int p = 0; p < scripturesPerSubTopic; ++p) {
                model::SermonScripture scripture;
                scripture.id = model::Uuid::random();
                scripture.bookName = books[random() % std::size(books)];
                scripture.chapter = 1 + static_cast<int>(random() % 20);
                scripture.startVerse = 1 + static_cast<int>(random() % 20);
                scripture.endVerse = scripture.startVerse + static_cast<int>(random() % 4);
                scripture.sortOrder = p;
                scripture.wordHighlights = {{2, "yellow"}, {5, "blue"}};
                scripture.breakIndicators = {4};
                subTopic.scriptures.push_back(std::move(scripture));
            }
            topic.subTopics.push_back(std::move(subTopic));
        }
        sermon.topics.push_back(std::move(topic));
    }
    return sermon;
}

/// The generated library on disk, written once per run without fsync (the set-up is not measured).
struct BenchLibrary {
    fs::path root;
    std::uintmax_t bytesOnDisk = 0;
    std::string oneSermonFile;
    double catSeconds = 0;

    BenchLibrary() {
        std::string pattern = (fs::temp_directory_path() / "quillon-store-bench-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        fs::create_directories(root / "Sermons");
        std::mt19937_64 random{20250309};
        for (int index = 0; index < sermonCount; ++index) {
            std::string bytes = model::encodeSermonFile(generateSermon(random, index));
            bytesOnDisk += bytes.size();
            std::ofstream(root / "Sermons" / (std::to_string(index) + ".json"), std::ios::binary) << bytes;
            if (index == 0)
                oneSermonFile = std::move(bytes);
        }
        // File names must be the ids for the store; renaming keeps the generator simple above.
        for (const auto& entry : fs::directory_iterator(root / "Sermons")) {
            auto sermon = model::decodeSermonFile(platform::readFile(entry.path()));
            fs::rename(entry.path(), root / "Sermons" / (sermon.id.text() + ".json"));
        }
        catSeconds = timeCat();
    }
    ~BenchLibrary() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    double timeCat() const {
        const std::string command =
            "find '" + (root / "Sermons").string() + "' -name '*.json' -print0 | xargs -0 cat > /dev/null";
        double best = 1e9;
        for (int run = 0; run < 3; ++run) {
            auto start = Clock::now();
            if (std::system(command.c_str()) != 0)
                return 0;
            best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
        }
        return best;
    }
};

BenchLibrary& library() {
    static BenchLibrary shared;
    return shared;
}

double megabytes(std::uintmax_t bytes) {
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

void catFloor(benchmark::State& state) {
    BenchLibrary& lib = library();
    for (auto _ : state)
        state.SetIterationTime(lib.timeCat());
    state.counters["libraryMB"] = megabytes(lib.bytesOnDisk);
}
BENCHMARK(catFloor)->Name("cat_floor")->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void load(benchmark::State& state) {
    BenchLibrary& lib = library();
    auto preferences = platform::Preferences::inMemory();
    auto storage = store::SermonStorage::atRoot(lib.root);
    double seconds = 0;
    std::size_t loaded = 0;
    for (auto _ : state) {
        store::SermonNotesManager manager(storage, preferences);
        auto start = Clock::now();
        manager.load();
        double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
        state.SetIterationTime(elapsed);
        seconds += elapsed;
        loaded = manager.sermons().size();
    }
    if (loaded != sermonCount)
        state.SkipWithError("not every sermon loaded");
    state.counters["sermons"] = static_cast<double>(loaded);
    state.counters["xCat"] = seconds / static_cast<double>(state.iterations()) / lib.catSeconds;
}
// Files are decoded on several threads: the CPU column counts every thread of the process.
BENCHMARK(load)->UseManualTime()->MeasureProcessCPUTime()->Iterations(3)->Unit(benchmark::kMillisecond);

/// Peak resident memory of a fresh process that does nothing but load the library.
void peakMemory(benchmark::State& state) {
    BenchLibrary& lib = library();
    double peakMB = 0;
    for (auto _ : state) {
        const std::string command =
            "'" + fs::read_symlink("/proc/self/exe").string() + "' --measure-load '" + lib.root.string() + "'";
        FILE* child = ::popen(command.c_str(), "r");
        long kilobytes = 0;
        if (!child || std::fscanf(child, "%ld", &kilobytes) != 1)
            state.SkipWithError("the measuring process failed");
        if (child)
            ::pclose(child);
        peakMB = static_cast<double>(kilobytes) / 1024.0;
    }
    state.counters["peakMB"] = peakMB;
    state.counters["libraryMB"] = megabytes(lib.bytesOnDisk);
    state.counters["xLibrary"] = peakMB / megabytes(lib.bytesOnDisk);
}
BENCHMARK(peakMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

void updateOne(benchmark::State& state, bool withSync) {
    BenchLibrary& lib = library();
    auto preferences = platform::Preferences::inMemory();
    auto storage = store::SermonStorage::atRoot(lib.root);
    if (!withSync)
        storage.setWriter([](const fs::path& target, std::string_view bytes) {
            // The same steps as the atomic write minus the two fsyncs, to show what the store adds.
            fs::path temporary = target;
            temporary += ".tmp";
            std::ofstream(temporary, std::ios::binary) << bytes;
            fs::rename(temporary, target);
        });
    store::SermonNotesManager manager(storage, preferences);
    manager.load();
    model::SermonNote sermon = manager.sermons().front();
    int edit = 0;
    for (auto _ : state) {
        sermon.title = "Edited " + std::to_string(++edit);
        manager.update(sermon);
    }
    state.counters["undoDepth"] = static_cast<double>(manager.undoStack().size());
}
BENCHMARK_CAPTURE(updateOne, with_fsync, true)->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK_CAPTURE(updateOne, without_fsync, false)->Unit(benchmark::kMillisecond)->Iterations(200);

void encode(benchmark::State& state) {
    auto sermon = model::decodeSermonFile(library().oneSermonFile);
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string encoded = model::encodeSermonFile(sermon);
        bytes += encoded.size();
        benchmark::DoNotOptimize(encoded);
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(encode)->Unit(benchmark::kMicrosecond);

void decode(benchmark::State& state) {
    const std::string& file = library().oneSermonFile;
    for (auto _ : state)
        benchmark::DoNotOptimize(model::decodeSermonFile(file));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.size()));
}
BENCHMARK(decode)->Unit(benchmark::kMicrosecond);

int measureLoad(const char* root) {
    auto preferences = platform::Preferences::inMemory();
    auto storage = store::SermonStorage::atRoot(root);
    store::SermonNotesManager manager(storage, preferences);
    manager.load();
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::cout << usage.ru_maxrss << "\n";
    return manager.sermons().empty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--measure-load") == 0)
        return measureLoad(argv[2]);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
