// Bible library figures: cold load and parse of the KJV, word-index build, reference parsing and
// warm full-text queries. Targets: load under 25 ms, index under 60 ms, a warm query under 2 ms,
// at least 1,000,000 reference parses a second on the mixed list (pasted and abbreviated forms included).
#include "platform/AtomicFile.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace quillon;
using namespace quillon::scripture;

namespace {

std::filesystem::path shippedBibles() {
    return std::filesystem::path(QUILLON_SOURCE_RESOURCES) / "bibles";
}

BibleResourceBundle shippedBundle() {
    return BibleResourceBundle({shippedBibles()});
}

void kjvColdLoadAndParse(benchmark::State& state) {
    for (auto _ : state) {
        BibleLoader loader(shippedBundle());
        auto verses = loader.loadVerses(model::BibleVersion::kjv);
        benchmark::DoNotOptimize(verses->size());
    }
}
BENCHMARK(kjvColdLoadAndParse)->Unit(benchmark::kMillisecond);

void kjvWordIndexBuild(benchmark::State& state) {
    BibleLoader loader(shippedBundle());
    auto verses = loader.loadVerses(model::BibleVersion::kjv);
    for (auto _ : state) {
        auto index = WordIndex::build(verses);
        benchmark::DoNotOptimize(index->wordCount());
    }
}
BENCHMARK(kjvWordIndexBuild)->Unit(benchmark::kMillisecond);

/// A thousand references as people type them: names, aliases, ordinals, ranges, lists, near
/// misses, descriptive forms, and some text that is no reference at all.
std::vector<std::string> typedReferences() {
    const std::vector<std::string> shapes = {
        "John 3:16",
        "1 cor 13",
        "first john 1:9",
        "ps 23",
        "Philipians 4:13",
        "Rom 8:28-39",
        "Gen 1:1, 3, 5-7",
        "Jud 1",
        "ii kings 2:11",
        "the last chapter of Revelation",
        "Matt 5.3",
        "Isaiah 40 31",
        "Pslam 119:105",
        "Heb 11",
        "verses about grace",
        "Song of Solomon 2:4",
        "1st Peter 5:7",
        "Revalation 21:4",
        "Jo 3:16",
        "last verse of Jude",
        // As preachers paste and abbreviate them: read through the normalising step.
        "Rom. 8:28",
        "1 Jn 1:9",
        "Jude 3",
        "John 3:16 NIV",
        "Lev 1 (ESV)",
        "\u201cJohn 3:16\u201d",
        "John\u00a03:16",
        "John 3:16\u201318",
        "23rd Psalm",
        "Phlm 6",
        "NKJV: Matt 5:6",
        "Psalm 119:170-1000",
    };
    std::vector<std::string> references;
    references.reserve(1000);
    for (std::size_t i = 0; i < 1000; ++i)
        references.push_back(shapes[i % shapes.size()]);
    return references;
}

void referenceParse(benchmark::State& state) {
    const auto references = typedReferences();
    for (auto _ : state)
        for (const auto& text : references)
            benchmark::DoNotOptimize(parse(text));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * references.size()));
}
BENCHMARK(referenceParse)->Unit(benchmark::kMillisecond);

void warmFullTextQuery(benchmark::State& state, const char* query) {
    static BibleLoader loader(shippedBundle());
    loader.search(query, {}, 50); // builds the index once
    for (auto _ : state)
        benchmark::DoNotOptimize(loader.search(query, {}, 50));
}
BENCHMARK_CAPTURE(warmFullTextQuery, loveNotHate, "love NOT hate")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(warmFullTextQuery, faithOrHope, "faith OR hope")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(warmFullTextQuery, livingWaterPhrase, "\"living water\"")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(warmFullTextQuery, shepherd, "shepherd")->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
