#pragma once

// Header-only so that only suites which link the model pull it in.

#include "model/SermonNote.h"

#include <chrono>
#include <string>

namespace quillon::testing {

inline model::DateTime at(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    return std::chrono::sys_days{std::chrono::year{year} / month / day} + std::chrono::hours{hour} +
           std::chrono::minutes{minute} + std::chrono::seconds{second};
}

/// A small but complete sermon: one topic, one sub-topic, one scripture, a manuscript.
inline model::SermonNote makeSermon(const std::string& title, model::DateTime modifiedAt = at(2025, 3, 9, 14, 30)) {
    model::SermonScripture scripture;
    scripture.id = model::Uuid::random();
    scripture.bookName = "John";
    scripture.chapter = 3;
    scripture.startVerse = 16;
    scripture.endVerse = 17;
    scripture.wordHighlights = {{3, "yellow"}};
    scripture.breakIndicators = {5};

    model::SermonSubTopic subTopic;
    subTopic.id = model::Uuid::random();
    subTopic.title = "Given";
    subTopic.details = "Love gives first.";
    subTopic.scriptures = {scripture};

    model::SermonTopic topic;
    topic.id = model::Uuid::random();
    topic.title = "The love of God";
    topic.details = "Broad and deep.";
    topic.subTopics = {subTopic};

    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = title;
    sermon.date = at(2025, 3, 16);
    sermon.speaker = "Ann Lee";
    sermon.topics = {topic};
    sermon.notes = "For God so loved the world.";
    sermon.createdAt = at(2025, 3, 1);
    sermon.modifiedAt = modifiedAt;
    sermon.tags = {"grace"};
    return sermon;
}

} // namespace quillon::testing
