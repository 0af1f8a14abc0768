#include "speech/TranscriptDraft.h"

#include <gtest/gtest.h>

namespace quillon::speech {
namespace {

Transcript transcriptOf(std::vector<TranscriptSegment> segments) {
    Transcript transcript;
    transcript.segments = std::move(segments);
    transcript.recognizer = "pocketsphinx";
    return transcript;
}

std::vector<std::string> subTopicTitles(const model::SermonTopic& topic) {
    std::vector<std::string> titles;
    for (const model::SermonSubTopic& subTopic : topic.subTopics)
        titles.push_back(subTopic.title);
    return titles;
}

TEST(TranscriptDraft, titlesTheDraftAfterTheFile) {
    const std::pair<const char*, const char*> cases[] = {
        {"/recordings/2024-05-05_Easter_Sunday.m4a", "2024-05-05 Easter Sunday"},
        {"Grace  Abounds.wav", "Grace Abounds"},
        {"_.mp3", "Recording"},
        {".ogg", ".ogg"},
        {"sermon.final.flac", "sermon.final"},
    };
    for (const auto& [file, title] : cases)
        EXPECT_EQ(transcriptDraft::titleFor(file), title) << file;
}

TEST(TranscriptDraft, keepsTheTranscriptAsNotesAndAttachesEachReferenceOnce) {
    const Transcript transcript = transcriptOf({
        {"turn to john chapter three verse sixteen", 0, 3},
        {"and psalm twenty three", 4, 6},
        {"again john three sixteen", 8, 9},
    });
    const model::DateTime now = model::DateTime(std::chrono::seconds(1'700'000'000));
    const model::SermonNote draft = transcriptDraft::draft(transcript, "Easter", now);
    EXPECT_EQ(draft.title, "Easter");
    EXPECT_EQ(draft.date, now);
    EXPECT_EQ(draft.notes, "turn to john chapter three verse sixteen and psalm twenty three again john three sixteen");
    ASSERT_EQ(draft.topics.size(), 1u);
    EXPECT_EQ(draft.topics[0].title, transcriptDraft::referencesTopicTitle);
    EXPECT_EQ(subTopicTitles(draft.topics[0]), (std::vector<std::string>{"John 3:16", "Psalms 23"}));
    const model::SermonScripture& psalm = draft.topics[0].subTopics[1].scriptures.at(0);
    // A whole chapter spans its verses.
    EXPECT_EQ(std::tie(psalm.bookName, psalm.chapter, psalm.startVerse, psalm.endVerse),
              std::make_tuple(std::string("Psalms"), 23, 1, 6));
    EXPECT_EQ(draft.topics[0].subTopics[1].sortOrder, 1);

    EXPECT_TRUE(transcriptDraft::draft(transcriptOf({{"no references here", 0, 1}}), "x", now).topics.empty());
}

TEST(TranscriptDraft, organisesTopicsWithTheirOwnPassagesAndReferences) {
    const Transcript transcript = transcriptOf({
        {"welcome everyone", 0, 2},
        {"read romans eight twenty eight", 5, 7},
        {"all things work together", 7.2, 9},
        {"finally first john one nine", 12, 14},
    });
    const auto passages = transcriptDraft::passages(transcript);
    ASSERT_EQ(passages.size(), 4u);
    EXPECT_DOUBLE_EQ(passages[0].pauseBefore, 0);
    EXPECT_DOUBLE_EQ(passages[1].pauseBefore, 3);
    EXPECT_NEAR(passages[2].pauseBefore, 0.2, 1e-9);

    model::SermonNote draft = transcriptDraft::draft(transcript, "Hope", {});
    transcriptDraft::organise(draft, transcript, {{"Welcome", 0}, {"Romans 8:28", 1}, {"Finally", 3}});
    ASSERT_EQ(draft.topics.size(), 3u);
    EXPECT_EQ(draft.topics[1].title, "Romans 8:28");
    EXPECT_EQ(draft.topics[1].details, "read romans eight twenty eight all things work together");
    EXPECT_EQ(draft.topics[1].sortOrder, 1);
    EXPECT_TRUE(draft.topics[0].subTopics.empty());
    EXPECT_EQ(subTopicTitles(draft.topics[1]), std::vector<std::string>{"Romans 8:28"});
    EXPECT_EQ(subTopicTitles(draft.topics[2]), std::vector<std::string>{"1 John 1:9"});
    EXPECT_EQ(draft.notes, transcript.text());
}

} // namespace
} // namespace quillon::speech
