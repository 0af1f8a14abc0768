#include "speech/Transcriber.h"
#include "SpokenAudio.h"
#include "platform/PlatformWording.h"
#include "scripture/SpokenReferences.h"
#include "speech/PocketSphinxRecognizer.h"
#include "speech/TranscriptionEndpoint.h"
#include "speech/TranscriptionError.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <set>
#include <sstream>

using namespace std::string_literals;

namespace quillon::speech {
namespace {

using testing::SpokenAudio;
using testing::StubModelServer;
using testing::TemporaryFolder;
using Behaviour = StubModelServer::Behaviour;

constexpr const char* passage = "Good morning church. Please turn with me to Romans chapter eight verse twenty eight. "
                                "And we know that all things work together for good to them that love God.";

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (char c : text + " ") {
        if (std::isalpha(static_cast<unsigned char>(c))) {
            word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    return words;
}

/// The share of `said`'s words that occur anywhere in `heard`.
double wordsHeard(const std::string& said, const std::string& heard) {
    const std::vector<std::string> heardWords = wordsOf(heard);
    const std::set<std::string> vocabulary(heardWords.begin(), heardWords.end());
    const std::vector<std::string> saidWords = wordsOf(said);
    std::size_t found = 0;
    for (const std::string& word : saidWords)
        found += vocabulary.contains(word);
    return static_cast<double>(found) / static_cast<double>(saidWords.size());
}

TranscriptionSettings onDevice() {
    TranscriptionSettings settings;
    settings.replyTimeout = std::chrono::milliseconds(500);
    return settings;
}

/// Skips a test on a machine without Debian's US English model.
#define REQUIRE_SPEECH_MODEL()                                                                                         \
    if (!PocketSphinxRecognizer::isInstalled(TranscriptionSettings::defaultModelFolder))                               \
    GTEST_SKIP() << "pocketsphinx-en-us is not installed"

/// An endpoint on loopback where nothing listens.
std::string deadEndpoint() {
    StubModelServer server;
    return server.endpoint();
}

TEST(Transcriber, hearsMostWordsAndTheReferenceOnThisComputer) {
    REQUIRE_SPEECH_MODEL();
    TemporaryFolder folder;
    const auto recording = SpokenAudio(folder).speak("sunday.wav", passage);
    Transcriber transcriber(onDevice());
    std::vector<double> progress;
    auto transcript = transcriber.transcribe(recording, {}, [&](double heard, double) { progress.push_back(heard); });
    ASSERT_TRUE(transcript);
    EXPECT_EQ(transcript->recognizer, "pocketsphinx");
    EXPECT_GE(wordsHeard(passage, transcript->text()), 0.5) << transcript->text();

    std::vector<std::string> references;
    for (const auto& spoken : scripture::spokenReferences(transcript->text()))
        references.push_back(spoken.reference.description());
    EXPECT_EQ(references, std::vector<std::string>{"Romans 8:28"}) << transcript->text();

    ASSERT_FALSE(progress.empty());
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_NEAR(progress.back(), transcript->durationSeconds, 1e-6);
    for (const TranscriptSegment& segment : transcript->segments) {
        EXPECT_LE(segment.startSeconds, segment.endSeconds);
        EXPECT_LE(segment.endSeconds, transcript->durationSeconds + 0.05);
    }
}

TEST(Transcriber, splitsSegmentsAtPausesAndHearsNothingInSilence) {
    REQUIRE_SPEECH_MODEL();
    TemporaryFolder folder;
    SpokenAudio audio(folder);
    const auto recording = audio.joined("paused.wav", audio.speak("one.wav", "Let us pray together."), 2.5,
                                        audio.speak("two.wav", "Amen and amen."));
    Transcriber transcriber(onDevice());
    auto transcript = transcriber.transcribe(recording);
    ASSERT_TRUE(transcript);
    ASSERT_GE(transcript->segments.size(), 2u) << transcript->text();
    bool pauseFound = false;
    for (std::size_t i = 1; i < transcript->segments.size(); ++i)
        pauseFound = pauseFound || transcript->segments[i].startSeconds - transcript->segments[i - 1].endSeconds >= 2;
    EXPECT_TRUE(pauseFound);

    auto silent = transcriber.transcribe(audio.silence("quiet.wav", 3));
    ASSERT_TRUE(silent);
    EXPECT_TRUE(silent->isEmpty()) << silent->text();
}

TEST(Transcriber, stopsWhenAsked) {
    REQUIRE_SPEECH_MODEL();
    TemporaryFolder folder;
    std::stop_source stop;
    stop.request_stop();
    Transcriber transcriber(onDevice());
    EXPECT_FALSE(transcriber.transcribe(SpokenAudio(folder).speak("a.wav", "Hello there."), stop.get_token()));
}

TEST(Transcriber, usesTheServerFirstInHalfMinutePiecesPlacedInTime) {
    TemporaryFolder folder;
    const auto recording = SpokenAudio(folder).tone("long.wav", 40, 16000, 1);
    StubModelServer server;
    server.queueTranscription(Behaviour::statusCode(
        200, R"({"text":"first part","segments":[{"start":1.0,"end":2.5,"text":" first part"}]})"));
    server.queueTranscription(Behaviour::statusCode(200, R"({"text":" second part "})"));
    TranscriptionSettings settings = onDevice();
    settings.endpoint = server.endpoint();
    settings.modelFolder = folder / "no-model";
    Transcriber transcriber(settings);
    std::vector<double> progress;
    auto transcript = transcriber.transcribe(recording, {}, [&](double heard, double) { progress.push_back(heard); });
    ASSERT_TRUE(transcript);
    EXPECT_EQ(transcript->recognizer, server.endpoint());
    ASSERT_EQ(transcript->segments.size(), 2u);
    EXPECT_EQ(transcript->segments[0], (TranscriptSegment{"first part", 1.0, 2.5}));
    EXPECT_EQ(transcript->segments[1].text, "second part");
    // The second piece starts where the first was cut: within its last five seconds.
    EXPECT_GE(transcript->segments[1].startSeconds, 25.0);
    EXPECT_LE(transcript->segments[1].startSeconds, 30.0);
    EXPECT_NEAR(transcript->segments[1].endSeconds, 40.0, 0.05);
    EXPECT_EQ(progress.size(), 2u);

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0].target, "/v1/audio/transcriptions");
    EXPECT_NE(requests[0].body.find("name=\"response_format\"\r\n\r\nverbose_json"), std::string::npos);
    EXPECT_NE(requests[0].body.find("name=\"model\"\r\n\r\nwhisper-1"), std::string::npos);
    EXPECT_NE(requests[0].body.find("RIFF"), std::string::npos);
}

TEST(Transcriber, fallsBackToThisComputerWhenTheServerFails) {
    REQUIRE_SPEECH_MODEL();
    TemporaryFolder folder;
    const auto recording = SpokenAudio(folder).speak("short.wav", "Grace and peace to you.");
    struct Case {
        const char* name;
        Behaviour behaviour;
    };
    const Case cases[] = {
        {"error status", Behaviour::statusCode(500, R"({"error":{"message":"model crashed"}})")},
        {"not a transcription", Behaviour::statusCode(200, "[1,2,3]")},
        {"dropped", Behaviour::dropConnection()},
        {"too slow", Behaviour::neverReply()},
    };
    // One transcriber throughout, so the model is loaded once: the server changes its ways
    // between recordings, and last it is gone altogether.
    auto server = std::make_unique<StubModelServer>();
    TranscriptionSettings settings = onDevice();
    settings.endpoint = server->endpoint();
    Transcriber transcriber(settings);
    for (const Case& c : cases) {
        server->setDefaultTranscription(c.behaviour);
        auto transcript = transcriber.transcribe(recording);
        ASSERT_TRUE(transcript) << c.name;
        EXPECT_EQ(transcript->recognizer, "pocketsphinx") << c.name;
        EXPECT_FALSE(transcript->isEmpty()) << c.name;
    }
    server.reset();
    EXPECT_EQ(transcriber.transcribe(recording)->recognizer, "pocketsphinx");
}

TEST(Transcriber, saysWhatToInstallOrStartWhenNothingCanRecognise) {
    TemporaryFolder folder;
    StubModelServer answering;
    struct Case {
        const char* name;
        bool model;
        std::string endpoint;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"nothing set up", false, "", platform::wording::speechRecognitionNotPermitted},
        {"server silent", false, deadEndpoint(), platform::wording::speechRecognitionNotGranted},
        {"server answers", false, answering.endpoint(), std::nullopt},
        {"model installed", true, deadEndpoint(), std::nullopt},
    };
    for (const Case& c : cases) {
        TranscriptionSettings settings = onDevice();
        settings.endpoint = c.endpoint;
        if (!c.model)
            settings.modelFolder = folder / "no-model";
        else if (!PocketSphinxRecognizer::isInstalled(settings.modelFolder))
            continue;
        EXPECT_EQ(Transcriber(settings).unavailableReason(), c.expected) << c.name;
    }
    TranscriptionSettings nothing = onDevice();
    nothing.modelFolder = folder / "no-model";
    const auto recording = SpokenAudio(folder).tone("tone.wav", 0.5);
    EXPECT_THROW(Transcriber(nothing).transcribe(recording), TranscriptionError);
}

TEST(TranscriptionEndpoint, readsVerboseAndPlainReplies) {
    struct Case {
        const char* reply;
        std::optional<std::vector<TranscriptSegment>> expected;
    };
    const Case cases[] = {
        {R"({"text":"hello"})", std::vector<TranscriptSegment>{{"hello", 10, 40}}},
        {R"({"segments":[{"start":2,"end":3,"text":"a"},{"start":29,"end":99,"text":"b"}]})",
         std::vector<TranscriptSegment>{{"a", 12, 13}, {"b", 39, 40}}},
        {R"({"segments":[{"start":2}]})", std::nullopt},
        {R"({"error":"busy"})", std::nullopt},
        {"not json", std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TranscriptionEndpoint::segmentsOf(c.reply, 10, 30), c.expected) << c.reply;

    TranscriptionSettings settings;
    settings.endpoint = "http://127.0.0.1:9000/v1/audio/transcriptions/";
    EXPECT_EQ(TranscriptionEndpoint(settings).target(), "/v1/audio/transcriptions");
    settings.endpoint = "https://example.org";
    EXPECT_FALSE(TranscriptionEndpoint(settings).target());

    const std::string wav = TranscriptionEndpoint::wavFile({1, -1});
    EXPECT_EQ(wav.size(), 48u);
    EXPECT_EQ(wav.substr(0, 4), "RIFF");
    EXPECT_EQ(wav.substr(44), "\x01\x00\xff\xff"s);
}

} // namespace
} // namespace quillon::speech
