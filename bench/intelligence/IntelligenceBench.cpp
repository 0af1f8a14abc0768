// Prompt building and reply parsing for every feature (target: under 1 ms each, 4 KB replies),
// commentary lookups warm (target: under 20 ms) and Preach Preview of the largest sample sermon
// (target: under 5 ms).
#include "intelligence/AskYourLibrary.h"
#include "intelligence/CommentaryTool.h"
#include "intelligence/HighlightSuggester.h"
#include "intelligence/PassageCommentary.h"
#include "intelligence/SectionQuestions.h"
#include "intelligence/SermonArticleGenerator.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SermonTitleAndSummary.h"
#include "orvane/NumberedChoice.h"
#include "preach/PreachTimeCategoriser.h"
#include "scripture/ReferenceParser.h"
#include "store/SampleSermons.h"

#include <benchmark/benchmark.h>

namespace {

using namespace quillon;

/// The sample sermon with the most words: the heaviest realistic input.
const model::SermonNote& largestSample() {
    static const model::SermonNote sermon = [] {
        std::vector<model::SermonNote> samples = store::buildSampleSermons(model::DateTime{});
        auto size = [](const model::SermonNote& note) {
            std::size_t total = note.notes.size();
            for (const auto& topic : note.topics) {
                total += topic.details.size();
                for (const auto& sub : topic.subTopics)
                    total += sub.details.size();
            }
            return total;
        };
        return *std::max_element(samples.begin(), samples.end(),
                                 [&](const auto& a, const auto& b) { return size(a) < size(b); });
    }();
    return sermon;
}

/// `line` repeated (numbered from 0 where it holds {n}) until the reply is 4 KB.
std::string reply4k(const std::string& line, int modulo = 1000) {
    std::string reply;
    for (int n = 0; reply.size() < 4096; ++n) {
        std::string text = line;
        std::size_t at = text.find("{n}");
        if (at != std::string::npos)
            text.replace(at, 3, std::to_string(n % modulo));
        reply += text + "\n";
    }
    return reply;
}

const std::vector<orvane::Passage>& extracts() {
    static const std::vector<orvane::Passage> passages = [] {
        std::vector<orvane::Passage> result;
        for (int i = 0; i < 6; ++i)
            result.push_back({"Matthew Henry's Concise Commentary — Romans 8:" + std::to_string(28 + i),
                              std::string(1500, 'a') + " providence and grace"});
        return result;
    }();
    return passages;
}

void promptPassageCommentary(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            intelligence::PassageCommentary::prompt("Romans 8:28", "What is promised?", extracts()));
}
void parsePassageCommentary(benchmark::State& state) {
    std::string reply = reply4k("Matthew Henry's Concise Commentary says providence serves the saints.");
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::PassageCommentary::answerFrom(reply, extracts()));
}

std::vector<intelligence::LibrarySource> librarySources() {
    std::vector<intelligence::LibrarySource> sources;
    for (int i = 0; i < 10; ++i)
        sources.push_back({intelligence::LibrarySource::Sermon{
            "Sermon " + std::to_string(i), std::string(300, 'x'), {*scripture::parse("Romans 8:28-39")}}});
    for (int verse = 1; verse <= 10; ++verse)
        sources.push_back(
            {intelligence::LibrarySource::Verse{"John", 3, verse, model::BibleVersion::kjv, std::string(120, 'v')}});
    return sources;
}
void promptAskYourLibrary(benchmark::State& state) {
    intelligence::AskYourLibrary::Input input{"What have I taught about providence?", librarySources()};
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::AskYourLibrary::prompt(input));
}
void parseAskYourLibrary(benchmark::State& state) {
    std::vector<intelligence::LibrarySource> sources = librarySources();
    std::string reply = reply4k("{n} || God works all things for good, as Romans 8:28 says.", 20);
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::AskYourLibrary::pointsFrom(reply, sources));
}

void promptDiscussionQuestions(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::SectionQuestions::prompt(intelligence::sermonSections(largestSample())));
}
void parseDiscussionQuestions(benchmark::State& state) {
    std::vector<intelligence::SermonSection> sections = intelligence::sermonSections(largestSample());
    std::string reply =
        reply4k("{n} || Where will you practise this at home this week?", static_cast<int>(sections.size()));
    intelligence::GenerateDiscussionQuestions feature;
    for (auto _ : state)
        benchmark::DoNotOptimize(feature.questionsFrom(reply, sections));
}

void promptTags(benchmark::State& state) {
    intelligence::SermonTagSuggester feature;
    for (auto _ : state) {
        benchmark::DoNotOptimize(feature.instructions());
        benchmark::DoNotOptimize(intelligence::SermonTagSuggester::prompt(largestSample()));
    }
}
void parseTags(benchmark::State& state) {
    intelligence::SermonTagSuggester feature;
    std::string reply = reply4k("- providence and grace");
    for (auto _ : state)
        benchmark::DoNotOptimize(feature.tagsFrom(reply));
}

void promptHighlights(benchmark::State& state) {
    intelligence::HighlightSuggester feature;
    for (auto _ : state) {
        std::vector<std::string> sentences = intelligence::HighlightSuggester::sentencesOf(largestSample());
        benchmark::DoNotOptimize(orvane::NumberedChoice::format(sentences));
        benchmark::DoNotOptimize(feature.instructions());
    }
}
void parseHighlights(benchmark::State& state) {
    intelligence::HighlightSuggester feature;
    std::vector<std::string> sentences = intelligence::HighlightSuggester::sentencesOf(largestSample());
    std::string reply = reply4k("{n} || a turn in the argument worth seeing", static_cast<int>(sentences.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(feature.highlightsFrom(reply, sentences));
}

void promptTitles(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(intelligence::SermonTitleAndSummary::instructions(largestSample()));
        benchmark::DoNotOptimize(intelligence::SermonTitleAndSummary::prompt(largestSample()));
    }
}
void parseTitles(benchmark::State& state) {
    std::string reply = reply4k("TITLE: Held by Grace in the Storm") + "SUMMARY: " + std::string(400, 's');
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::SermonTitleAndSummary::copyFrom(reply, largestSample()));
}

void promptArticle(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(intelligence::SermonArticleGenerator::instructions(largestSample()));
        benchmark::DoNotOptimize(intelligence::SermonArticleGenerator::prompt(largestSample()));
    }
}
void parseArticle(benchmark::State& state) {
    std::string reply = reply4k("Grace holds us when we cannot hold on, and the promise stands for every believer.");
    for (auto _ : state)
        benchmark::DoNotOptimize(intelligence::SermonArticleGenerator::articleFrom(reply, largestSample()));
}

void promptPreachCategoriser(benchmark::State& state) {
    auto sections = preach::PreachTimeEstimate::sectionsOf(largestSample());
    for (auto _ : state)
        benchmark::DoNotOptimize(preach::PreachTimeCategoriser::prompt(sections));
}
void parsePreachCategoriser(benchmark::State& state) {
    auto sections = preach::PreachTimeEstimate::sectionsOf(largestSample());
    std::string reply = reply4k("{n}: list", static_cast<int>(sections.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(preach::PreachTimeCategoriser::parseReply(reply, sections));
}

const intelligence::CommentaryTool& commentaryTool() {
    static const intelligence::CommentaryTool tool(
        std::make_shared<intelligence::CommentaryLibrary>(std::vector<std::filesystem::path>{"/usr/share/sword"}));
    return tool;
}
void commentaryVerse(benchmark::State& state) {
    commentaryTool().lookup("Romans 8:28"); // warm: the chapter is read once
    for (auto _ : state)
        benchmark::DoNotOptimize(commentaryTool().lookup("Romans 8:28"));
}
void commentaryChapter(benchmark::State& state) {
    commentaryTool().lookup("John 3");
    for (auto _ : state)
        benchmark::DoNotOptimize(commentaryTool().lookup("John 3"));
}
void commentaryChapterCold(benchmark::State& state) {
    for (auto _ : state) {
        intelligence::CommentaryTool fresh(
            std::make_shared<intelligence::CommentaryLibrary>(std::vector<std::filesystem::path>{"/usr/share/sword"}));
        benchmark::DoNotOptimize(fresh.lookup("Psalm 119"));
    }
}

void preachPreviewLargestSample(benchmark::State& state) {
    const std::string verse = "For God so loved the world, that he gave his only begotten Son, that whosoever "
                              "believeth in him should not perish, but have everlasting life.";
    preach::ScriptureTextProvider text = [&](const model::SermonScripture&) { return verse; };
    for (auto _ : state)
        benchmark::DoNotOptimize(preach::PreachTimeEstimate::estimate(largestSample(), preach::PreachPace{}, text));
}

} // namespace

BENCHMARK(promptPassageCommentary);
BENCHMARK(parsePassageCommentary);
BENCHMARK(promptAskYourLibrary);
BENCHMARK(parseAskYourLibrary);
BENCHMARK(promptDiscussionQuestions);
BENCHMARK(parseDiscussionQuestions);
BENCHMARK(promptTags);
BENCHMARK(parseTags);
BENCHMARK(promptHighlights);
BENCHMARK(parseHighlights);
BENCHMARK(promptTitles);
BENCHMARK(parseTitles);
BENCHMARK(promptArticle);
BENCHMARK(parseArticle);
BENCHMARK(promptPreachCategoriser);
BENCHMARK(parsePreachCategoriser);
BENCHMARK(commentaryVerse)->Unit(benchmark::kMillisecond);
BENCHMARK(commentaryChapter)->Unit(benchmark::kMillisecond);
BENCHMARK(commentaryChapterCold)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(preachPreviewLargestSample)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
