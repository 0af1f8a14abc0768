// Transcription speed on this computer: pocketsphinx with the US English model over about a minute
// of speech (target: a real-time factor of 0.5 or less, that is at least twice as fast as the
// recording plays), and decoding and resampling alone.
#include "speech/AudioDecoder.h"
#include "speech/PocketSphinxRecognizer.h"
#include "speech/Transcriber.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

namespace {

using namespace quillon;

constexpr const char* paragraph =
    "Good morning church. Please turn with me to Philippians chapter four verse thirteen. I can do all things "
    "through Christ who strengthens me. Paul wrote these words from a prison cell, not from a place of comfort. "
    "He had learned to be content whether he had plenty or whether he was in need. ";

/// About a minute of speech, made once with espeak-ng in the temporary folder.
const std::filesystem::path& recording() {
    static const std::filesystem::path file = [] {
        std::filesystem::path path = std::filesystem::temp_directory_path() / "quillon-speech-bench.wav";
        std::string text;
        for (int i = 0; i < 4; ++i)
            text += paragraph;
        const std::string command = "espeak-ng -v en-us+klatt4 -s 150 -w '" + path.string() + "' '" + text + "'";
        if (std::system(command.c_str()) != 0)
            std::abort();
        return path;
    }();
    return file;
}

double lengthSeconds(const std::filesystem::path& file) {
    speech::AudioDecoder decoder(file);
    std::vector<std::int16_t> block;
    while (decoder.read(block)) {
    }
    return decoder.positionSeconds();
}

void BM_PocketSphinxRealTimeFactor(benchmark::State& state) {
    speech::TranscriptionSettings settings;
    if (!speech::PocketSphinxRecognizer::isInstalled(settings.modelFolder)) {
        state.SkipWithError("pocketsphinx-en-us is not installed");
        return;
    }
    const double seconds = lengthSeconds(recording());
    speech::Transcriber transcriber(settings);
    transcriber.transcribe(recording()); // loads the model outside the timing
    double cpuSeconds = 0;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        auto transcript = transcriber.transcribe(recording());
        cpuSeconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        benchmark::DoNotOptimize(transcript);
    }
    state.counters["audioSeconds"] = seconds;
    // On a shared machine the wall clock counts other programs' turns; the processor time does not.
    state.counters["cpuRealTimeFactor"] = cpuSeconds / (seconds * static_cast<double>(state.iterations()));
    state.counters["realTimeFactor"] = benchmark::Counter(seconds * static_cast<double>(state.iterations()),
                                                          benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_PocketSphinxRealTimeFactor)->Unit(benchmark::kSecond)->Iterations(2)->UseRealTime();

void BM_DecodeAndResample(benchmark::State& state) {
    const double seconds = lengthSeconds(recording());
    for (auto _ : state)
        benchmark::DoNotOptimize(lengthSeconds(recording()));
    state.counters["realTimeFactor"] = benchmark::Counter(seconds * static_cast<double>(state.iterations()),
                                                          benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_DecodeAndResample)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
