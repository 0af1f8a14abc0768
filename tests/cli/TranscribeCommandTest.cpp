#include "LibraryRun.h"
#include "speech/PocketSphinxRecognizer.h"
#include "speech/TranscriptionSettings.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>

namespace quillon::testing {
namespace {

class TranscribeCommand : public LibraryRun {
protected:
    void SetUp() override {
        if (!speech::PocketSphinxRecognizer::isInstalled(speech::TranscriptionSettings::defaultModelFolder))
            GTEST_SKIP() << "pocketsphinx-en-us is not installed";
    }

    std::filesystem::path speech(const std::string& name, const std::string& text) {
        const std::filesystem::path file = folder / name;
        const std::string line = "espeak-ng -v en-us+klatt4 -s 150 -w '" + file.string() + "' '" + text + "'";
        EXPECT_EQ(std::system(line.c_str()), 0);
        return file;
    }

    std::vector<model::SermonNote> sermons() const {
        std::vector<model::SermonNote> found;
        for (const auto& entry : std::filesystem::directory_iterator(library() / "Sermons"))
            found.push_back(model::decodeSermonFile(readText(entry.path())));
        return found;
    }
};

TEST_F(TranscribeCommand, printsTheStagesAndCreatesTheDraft) {
    const auto file =
        speech("Morning_Prayer.wav", "Good morning church. Please turn with me to Romans chapter eight verse twenty "
                                     "eight. And we know that all things work together for good.");
    const Result result = run({"transcribe", file.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char* expected : {"[authorizing]", "[pickFile]", "[transcribing]", "[review]",
                                 "Transcription Ready\nMorning Prayer is ready to review in Quillon.\n",
                                 "Draft Created\nCreated Morning Prayer\n"})
        EXPECT_NE(result.out.find(expected), std::string::npos) << expected << "\n" << result.out;
    const auto drafts = sermons();
    ASSERT_EQ(drafts.size(), 1u);
    EXPECT_EQ(drafts[0].title, "Morning Prayer");
    EXPECT_NE(result.out.find("Created Morning Prayer\n" + drafts[0].id.text() + "\n"), std::string::npos);
    EXPECT_FALSE(drafts[0].notes.empty());
    ASSERT_EQ(drafts[0].topics.size(), 1u);
    ASSERT_EQ(drafts[0].topics[0].subTopics.size(), 1u);
    EXPECT_EQ(drafts[0].topics[0].subTopics[0].title, "Romans 8:28");
}

TEST_F(TranscribeCommand, organisesAndReportsAsJson) {
    const auto file = speech("talk.wav", "Welcome everyone.");
    const Result result = run({"--json", "transcribe", file.string(), "--organize"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out);
    ASSERT_EQ(json["messages"].size(), 3u);
    EXPECT_EQ(json["messages"][0]["title"], "Transcription Ready");
    EXPECT_EQ(json["messages"][1]["title"], "Draft Created");
    EXPECT_EQ(json["messages"][2]["title"], "Draft Organized");
    EXPECT_EQ(json["messages"][2]["detail"], "Quillon grouped “talk” into 1 topic");
    EXPECT_EQ(json["draft"]["title"], "talk");
    EXPECT_EQ(json["draft"]["topics"], 1);
    EXPECT_EQ(json["stages"][0]["stage"], "authorizing");
    EXPECT_EQ(json["stages"].back()["recognizer"], "pocketsphinx");
}

TEST_F(TranscribeCommand, failsOnARecordingWithoutSpeech) {
    const auto file = folder / "quiet.wav";
    ASSERT_EQ(std::system(("sox -n -r 16000 -c 1 '" + file.string() + "' trim 0 2").c_str()), 0);
    const Result result = run({"transcribe", file.string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("Transcription Failed\nQuillon couldn't transcribe "
                              "quiet.wav. Nothing usable came back "
                              "from that file. Confirm it actually contains "
                              "speech, and try again — "),
              std::string::npos)
        << result.err;
    EXPECT_NE(result.out.find("[failed]"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(library() / "Sermons") && !sermons().empty());
}

} // namespace
} // namespace quillon::testing
