// The companions' work per keystroke and per edit: the settings search and the help search (target
// under 10 ms a keystroke), the command palette's matching, and the Preach Preview recount of a
// 2,500-word sermon after an edit (target under 5 ms).

#include "app/CommandMatching.h"
#include "app/HelpLibrary.h"
#include "app/SettingsSearch.h"
#include "preach/PreachTimeEstimate.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace {
using namespace quillon;

void settingsSearch(benchmark::State& state) {
    app::SettingsSearch search;
    const char* const keystrokes[] = {"p", "pa", "pas", "pase", "model sever", "trahs retention"};
    for (auto _ : state)
        for (const char* typed : keystrokes)
            benchmark::DoNotOptimize(search.keys(typed));
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(std::size(keystrokes)));
}
BENCHMARK(settingsSearch)->Unit(benchmark::kMicrosecond);

app::HelpLibrary shippedHelp() {
    std::vector<app::HelpArticle> articles;
    for (const auto& entry : std::filesystem::directory_iterator(QUILLON_HELP_DIR)) {
        std::ifstream file(entry.path());
        std::stringstream text;
        text << file.rdbuf();
        articles.push_back(app::HelpArticle::fromMarkdown(entry.path().stem().string(), text.str()));
    }
    return app::HelpLibrary(std::move(articles));
}

void helpSearch(benchmark::State& state) {
    const app::HelpLibrary help = shippedHelp();
    const char* const keystrokes[] = {"s", "sy", "syn", "sync fold", "preech previw", "how do I back up"};
    for (auto _ : state)
        for (const char* typed : keystrokes)
            benchmark::DoNotOptimize(help.search(typed));
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(std::size(keystrokes)));
}
BENCHMARK(helpSearch)->Unit(benchmark::kMicrosecond);

void paletteMatching(benchmark::State& state) {
    std::vector<std::string> names;
    for (int i = 0; i < 80; ++i)
        names.push_back("Menu " + std::to_string(i % 7) + " › Command number " + std::to_string(i));
    names.push_back("Tools › Preach Preview");
    for (auto _ : state) {
        benchmark::DoNotOptimize(app::CommandMatching::rank("prech prev", names));
        benchmark::DoNotOptimize(app::CommandMatching::rank("pp", names));
    }
}
BENCHMARK(paletteMatching)->Unit(benchmark::kMicrosecond);

/// Five topics of three sub-topics with a scripture each and a 1,500-word manuscript: about 2,500 words.
model::SermonNote typicalSermon() {
    std::mt19937_64 random(7);
    const char* const vocabulary[] = {"grace", "faith", "the",   "and",   "of",   "love", "kingdom", "mercy",
                                      "to",    "in",    "light", "world", "hope", "a",    "peace",   "cross"};
    auto words = [&](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += (i ? " " : "") + std::string(vocabulary[random() % std::size(vocabulary)]);
        return text + ".";
    };
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Grace upon grace";
    for (int t = 0; t < 5; ++t) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = words(4);
        topic.details = words(60);
        for (int s = 0; s < 3; ++s) {
            model::SermonSubTopic subTopic;
            subTopic.id = model::Uuid::random();
            subTopic.title = words(5);
            subTopic.details = words(40);
            model::SermonScripture scripture;
            scripture.id = model::Uuid::random();
            scripture.bookName = "John";
            scripture.chapter = 3;
            scripture.startVerse = 16;
            scripture.endVerse = 17;
            subTopic.scriptures.push_back(scripture);
            topic.subTopics.push_back(subTopic);
        }
        sermon.topics.push_back(topic);
    }
    sermon.notes = words(1500);
    return sermon;
}

void preachPreviewRecount(benchmark::State& state) {
    const model::SermonNote sermon = typicalSermon();
    const std::string verse(300, 'a');
    const preach::ScriptureTextProvider text = [&verse](const model::SermonScripture&) { return verse; };
    for (auto _ : state)
        benchmark::DoNotOptimize(preach::PreachTimeEstimate::estimate(sermon, preach::PreachPace(), text));
}
BENCHMARK(preachPreviewRecount)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
