// Exports one large sermon (60 topics, 180 sub-topics, 360 passages) to every format.
// Targets: Word and PowerPoint under 50 ms each, PDF under 500 ms.
// `export_bench --write-samples DIR` writes the sermon's Markdown and Word exports for
// bench/pandoc_compare instead of running the benchmarks.
#include "export/SermonMarkdownExporter.h"
#include "export/SermonPdfExporter.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>

namespace {

using namespace quillon;

/// Every passage reads as a typical two-verse text, so layout work is realistic.
class BenchVerses : public exports::VerseTextSource {
public:
    exports::PassageText passage(const model::SermonScripture&) const override {
        return {true, "For God so loved the world, that he gave his only begotten Son, that whosoever believeth in "
                      "him should not perish, but have everlasting life. For God sent not his Son into the world to "
                      "condemn the world; but that the world through him might be saved."};
    }
};

model::SermonNote largeSermon() {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "The Whole Counsel of God";
    sermon.speaker = "Ada Preacher";
    sermon.series = "Foundations";
    sermon.notes = "A manuscript paragraph that opens the sermon and sets the scene for the listeners.\n"
                   "A second paragraph that closes it.";
    for (int t = 1; t <= 60; ++t) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Main point " + std::to_string(t);
        topic.details = "Notes for the main point, a sentence or two long, as preachers write them before Sunday.";
        for (int s = 1; s <= 3; ++s) {
            model::SermonSubTopic sub;
            sub.id = model::Uuid::random();
            sub.title = "Sub-point " + std::to_string(t) + "." + std::to_string(s);
            sub.details = "What this means for the listener on Monday morning, with an illustration.";
            for (int p = 0; p < 2; ++p) {
                model::SermonScripture scripture;
                scripture.id = model::Uuid::random();
                scripture.bookName = p == 0 ? "John" : "Romans";
                scripture.chapter = 3 + p * 5;
                scripture.startVerse = 16;
                scripture.endVerse = 17;
                scripture.version = p == 0 ? model::BibleVersion::kjv : model::BibleVersion::nkjv;
                sub.scriptures.push_back(scripture);
            }
            topic.subTopics.push_back(sub);
        }
        sermon.topics.push_back(topic);
    }
    return sermon;
}

const model::SermonNote& sermon() {
    static const model::SermonNote instance = largeSermon();
    return instance;
}

const BenchVerses verses;

template <class Exporter>
void exportTo(benchmark::State& state) {
    const Exporter exporter(verses);
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string file = exporter.render(sermon());
        bytes = file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void wordDocument(benchmark::State& state) {
    exportTo<exports::SermonWordExporter>(state);
}
void powerPoint(benchmark::State& state) {
    exportTo<exports::SermonPowerPointExporter>(state);
}
void markdown(benchmark::State& state) {
    exportTo<exports::SermonMarkdownExporter>(state);
}
void richText(benchmark::State& state) {
    exportTo<exports::SermonRtfExporter>(state);
}
void pdfHandout(benchmark::State& state) {
    exportTo<exports::SermonPdfExporter>(state);
}

BENCHMARK(wordDocument)->Unit(benchmark::kMillisecond);
BENCHMARK(powerPoint)->Unit(benchmark::kMillisecond);
BENCHMARK(markdown)->Unit(benchmark::kMillisecond);
BENCHMARK(richText)->Unit(benchmark::kMillisecond);
BENCHMARK(pdfHandout)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--write-samples") == 0) {
        const std::filesystem::path folder = argv[2];
        std::ofstream(folder / "sermon.md", std::ios::binary)
            << exports::SermonMarkdownExporter(verses).render(sermon());
        std::ofstream(folder / "sermon.docx", std::ios::binary) << exports::SermonWordExporter(verses).render(sermon());
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
