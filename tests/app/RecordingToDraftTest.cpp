#include "app/RecordingToDraft.h"
#include "ControllerHarness.h"
#include "platform/PlatformWording.h"
#include "support/SilentWav.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

/// The desk with a transcription server on loopback and no on-device model, so
/// every transcript is the one the test scripts.
class RecordingFlow : public ::testing::Test {
protected:
    RecordingFlow() {
        speech::TranscriptionSettings settings;
        settings.endpoint = server.endpoint();
        settings.modelFolder = harness.folder / "no-model";
        settings.replyTimeout = std::chrono::milliseconds(500);
        transcriber = std::make_unique<speech::Transcriber>(settings);
        controller = &harness.open();
        flow = std::make_unique<RecordingToDraft>(*controller, *transcriber, nullptr, harness.clock);
        // Any readable audio will do: the server decides what was said.
        recording = harness.folder.write("Easter_Sunday.wav", quillon::testing::silentWav());
    }

    void says(const std::string& segmentsJson) {
        server.queueTranscription(Behaviour::statusCode(200, R"({"segments":)" + segmentsJson + "}"));
    }

    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const StatusMessage& message : harness.listener.messages)
            result.push_back(message.title);
        return result;
    }

    StubModelServer server;
    testing::ControllerHarness harness;
    std::unique_ptr<speech::Transcriber> transcriber;
    SermonNotesViewModel* controller = nullptr;
    std::unique_ptr<RecordingToDraft> flow;
    std::filesystem::path recording;
};

TEST_F(RecordingFlow, walksFromRecordingToDraftWithTheTextsOfEachStage) {
    ASSERT_TRUE(flow->begin());
    EXPECT_EQ(controller->recordingStage(), RecordingTranscriptionStage::pickFile);
    says(R"([{"start":0,"end":4,"text":"Please turn to John chapter 3 verse 16."},
             {"start":4.5,"end":8,"text":"God so loved the world."}])");
    ASSERT_TRUE(flow->transcribe(recording));
    EXPECT_EQ(controller->recordingStage(), RecordingTranscriptionStage::review);
    EXPECT_EQ(harness.listener.messages.back(),
              (StatusMessage{"Transcription Ready", "Easter Sunday is ready to review in Quillon.",
                             StatusMessage::Kind::toast}));

    auto draft = flow->accept(false);
    ASSERT_TRUE(draft);
    EXPECT_FALSE(controller->recordingStage());
    const model::SermonNote* sermon = controller->sermon(draft->id);
    ASSERT_TRUE(sermon);
    EXPECT_EQ(sermon->title, "Easter Sunday");
    EXPECT_EQ(sermon->notes, "Please turn to John chapter 3 verse 16. God so loved the world.");
    EXPECT_EQ(draft->scriptures, 1u);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Transcription Ready", "Draft Created"}));
    EXPECT_EQ(harness.listener.messages.back().detail, "Created Easter Sunday");
    EXPECT_FALSE(flow->accept(false)) << "a transcript is accepted once";
}

TEST_F(RecordingFlow, organisesTheDraftIntoTopicsWhenAsked) {
    ASSERT_TRUE(flow->begin());
    says(
        R"([{"start":0,"end":9,"text":"Welcome to this morning, it is good to see so many of you here with us as we open the word of God together and pray."},
             {"start":12,"end":15,"text":"Turn to Romans 8:28."},
             {"start":15.2,"end":20,"text":"All things work together for good to them that love God and are called."}])");
    ASSERT_TRUE(flow->transcribe(recording));
    auto draft = flow->accept(true);
    ASSERT_TRUE(draft);
    EXPECT_EQ(draft->topics, 2u);
    EXPECT_FALSE(draft->generated);
    EXPECT_EQ(harness.listener.messages.back(),
              (StatusMessage{"Draft Organized", "Quillon grouped “Easter Sunday” into 2 topics",
                             StatusMessage::Kind::toast}));
    EXPECT_EQ(controller->sermon(draft->id)->topics[1].title, "Romans 8:28");
    EXPECT_EQ(RecordingToDraft::draftOrganized("A", 1).detail, "Quillon grouped “A” into 1 topic");
}

TEST_F(RecordingFlow, failsWithTheFileNameAndTheReason) {
    struct Case {
        const char* name;
        std::function<std::filesystem::path()> file;
        std::string reason;
    };
    server.setDefaultTranscription(Behaviour::statusCode(200, R"({"text":"  "})"));
    const Case cases[] = {
        {"nothing said", [&] { return recording; }, RecordingToDraft::nothingHeard},
        {"not audio", [&] { return harness.folder.write("notes.txt", "I. Grace"); },
         "Quillon could not read audio from “notes.txt”."},
    };
    for (const Case& c : cases) {
        harness.listener.messages.clear();
        ASSERT_TRUE(flow->begin());
        const std::filesystem::path file = c.file();
        EXPECT_FALSE(flow->transcribe(file)) << c.name;
        EXPECT_EQ(controller->recordingStage(), RecordingTranscriptionStage::failed) << c.name;
        ASSERT_FALSE(harness.listener.messages.empty());
        EXPECT_EQ(harness.listener.messages.back(),
                  (StatusMessage{"Transcription Failed",
                                 "Quillon couldn't transcribe " + file.filename().string() +
                                     ". Nothing usable came back from that file. "
                                     "Confirm it actually contains "
                                     "speech, and try again — " +
                                     c.reason,
                                 StatusMessage::Kind::alert}))
            << c.name;
        EXPECT_FALSE(flow->accept(false));
    }
}

TEST_F(RecordingFlow, saysWhatToInstallWhenNoRecogniserCanBeUsed) {
    speech::TranscriptionSettings nothing;
    nothing.modelFolder = harness.folder / "no-model";
    speech::Transcriber none(nothing);
    RecordingToDraft unusable(*controller, none, nullptr, harness.clock);
    EXPECT_FALSE(unusable.begin());
    EXPECT_EQ(controller->recordingStage(), RecordingTranscriptionStage::failed);
    EXPECT_EQ(harness.listener.messages.back(),
              (StatusMessage{RecordingToDraft::unavailableTitle, platform::wording::speechRecognitionNotPermitted,
                             StatusMessage::Kind::alert}));
}

TEST_F(RecordingFlow, goesBackToPickingAFileWhenStopped) {
    ASSERT_TRUE(flow->begin());
    std::stop_source stop;
    stop.request_stop();
    says(R"([{"start":0,"end":1,"text":"never heard"}])");
    EXPECT_FALSE(flow->transcribe(recording, stop.get_token()));
    EXPECT_EQ(controller->recordingStage(), RecordingTranscriptionStage::pickFile);
    EXPECT_TRUE(harness.listener.messages.empty());
}

} // namespace
} // namespace quillon::app
