// Tokenising and stemming throughput over a whole Bible: the word index and full-text search do this on load.

#include "orvane/LexicalTokenizer.h"
#include "orvane/QueryExpansion.h"
#include "orvane/ScriptureStemmer.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t bibleVerseCount = 31102;

// The shipped KJV text when it is there; otherwise the same number of verses cycled from a small sample, so the
// figures stay comparable on a fresh checkout.
const std::vector<std::string>& bibleVerses() {
    static const std::vector<std::string> verses = [] {
        std::vector<std::string> result;
        // QUILLON_BENCH_BIBLE names another text in the same "reference|text" line format.
        const char* other = std::getenv("QUILLON_BENCH_BIBLE");
        std::ifstream file(other != nullptr ? std::string(other)
                                            : std::string(QUILLON_SOURCE_DIR) + "/resources/bibles/KJV.txt");
        for (std::string line; std::getline(file, line);)
            if (const auto bar = line.find('|'); bar != std::string::npos)
                result.push_back(line.substr(bar + 1));
        if (result.size() >= bibleVerseCount / 2)
            return result;
        result.clear();
        const std::array<const char*, 8> sample = {
            "In the beginning God created the heaven and the earth.",
            "And the earth was without form, and void; and darkness was upon the face of the deep. And the Spirit "
            "of God moved upon the face of the waters.",
            "For God so loved the world, that he gave his only begotten Son, that whosoever believeth in him "
            "should not perish, but have everlasting life.",
            "The LORD is my shepherd; I shall not want.",
            "He maketh me to lie down in green pastures: he leadeth me beside the still waters.",
            "Jesus saith unto him, I am the way, the truth, and the life: no man cometh unto the Father, but by me.",
            "And now abideth faith, hope, charity, these three; but the greatest of these is charity.",
            "Blessed are the poor in spirit: for their's is the kingdom of heaven.",
        };
        for (std::size_t i = 0; i < bibleVerseCount; ++i)
            result.emplace_back(sample[i % sample.size()]);
        return result;
    }();
    return verses;
}

void setCounters(benchmark::State& state, std::size_t words) {
    std::size_t bytes = 0;
    for (const auto& verse : bibleVerses())
        bytes += verse.size();
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * bibleVerses().size()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    state.counters["verses"] = static_cast<double>(bibleVerses().size());
    state.counters["tokens"] = static_cast<double>(words);
}

void tokeniseBible(benchmark::State& state) {
    std::size_t count = 0;
    for (auto _ : state) {
        count = 0;
        for (const auto& verse : bibleVerses())
            orvane::LexicalTokenizer::forEachToken(verse, 2, true, [&](std::string_view) { ++count; });
        benchmark::DoNotOptimize(count);
    }
    setCounters(state, count);
}
BENCHMARK(tokeniseBible)->Unit(benchmark::kMillisecond);

void tokeniseBibleIntoVectors(benchmark::State& state) {
    std::size_t count = 0;
    for (auto _ : state) {
        count = 0;
        for (const auto& verse : bibleVerses())
            count += orvane::LexicalTokenizer::tokens(verse, 2, true).size();
        benchmark::DoNotOptimize(count);
    }
    setCounters(state, count);
}
BENCHMARK(tokeniseBibleIntoVectors)->Unit(benchmark::kMillisecond);

void tokeniseAndStemBible(benchmark::State& state) {
    std::size_t count = 0;
    for (auto _ : state) {
        count = 0;
        for (const auto& verse : bibleVerses())
            orvane::LexicalTokenizer::forEachToken(verse, 2, true, [&](std::string_view token) {
                benchmark::DoNotOptimize(orvane::ScriptureStemmer::stem(token));
                ++count;
            });
        benchmark::DoNotOptimize(count);
    }
    setCounters(state, count);
}
BENCHMARK(tokeniseAndStemBible)->Unit(benchmark::kMillisecond);

void stemmerTermsOfBible(benchmark::State& state) {
    std::size_t count = 0;
    for (auto _ : state) {
        count = 0;
        for (const auto& verse : bibleVerses())
            count += orvane::ScriptureStemmer::terms(verse).size();
        benchmark::DoNotOptimize(count);
    }
    setCounters(state, count);
}
BENCHMARK(stemmerTermsOfBible)->Unit(benchmark::kMillisecond);

// Text outside ASCII goes through ICU; this shows what that costs per verse.
void tokeniseAccentedVerse(benchmark::State& state) {
    const std::string verse =
        "Car Dieu a tant aim\u00e9 le monde qu\u2019il a donn\u00e9 son Fils unique, afin que "
        "quiconque croit en lui ne p\u00e9risse point, mais qu\u2019il ait la vie \u00e9ternelle.";
    for (auto _ : state)
        benchmark::DoNotOptimize(orvane::LexicalTokenizer::tokens(verse, 2, true));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(tokeniseAccentedVerse);

// A misspelt query word checked against every distinct token of the Bible.
void correctAgainstBibleVocabulary(benchmark::State& state) {
    orvane::QueryExpansion expansion;
    for (const auto& verse : bibleVerses())
        orvane::LexicalTokenizer::forEachToken(verse, 2, true,
                                               [&](std::string_view token) { expansion.vocabulary.emplace(token); });
    for (auto _ : state)
        benchmark::DoNotOptimize(expansion.correction("forgivness"));
    state.counters["vocabulary"] = static_cast<double>(expansion.vocabulary.size());
}
BENCHMARK(correctAgainstBibleVocabulary)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
