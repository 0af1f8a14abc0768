#include "speech/TranscriptDraft.h"

#include "scripture/SpokenReferences.h"

#include <algorithm>

namespace quillon::speech::transcriptDraft {

namespace {

model::SermonScripture scriptureFor(const scripture::ScriptureReference& reference) {
    model::SermonScripture scripture;
    scripture.id = model::Uuid::random();
    scripture.bookName = reference.book.name;
    scripture.chapter = reference.chapter;
    scripture.startVerse = reference.firstVerse().value_or(1);
    scripture.endVerse = reference.lastVerse().value_or(reference.book.verseCount(reference.chapter));
    return scripture;
}

/// One sub-topic per distinct reference in `text`, named for it, appended to `topic`.
void attachReferences(model::SermonTopic& topic, const std::string& text) {
    for (const scripture::SpokenReference& spoken : scripture::spokenReferences(text)) {
        const std::string name = spoken.reference.description();
        const bool known = std::any_of(topic.subTopics.begin(), topic.subTopics.end(),
                                       [&](const model::SermonSubTopic& subTopic) { return subTopic.title == name; });
        if (known)
            continue;
        model::SermonSubTopic subTopic;
        subTopic.id = model::Uuid::random();
        subTopic.title = name;
        subTopic.sortOrder = static_cast<int>(topic.subTopics.size());
        subTopic.scriptures.push_back(scriptureFor(spoken.reference));
        topic.subTopics.push_back(std::move(subTopic));
    }
}

std::string joined(const Transcript& transcript, std::size_t first, std::size_t last) {
    std::string text;
    for (std::size_t i = first; i < last && i < transcript.segments.size(); ++i) {
        if (transcript.segments[i].text.empty())
            continue;
        text += (text.empty() ? "" : " ") + transcript.segments[i].text;
    }
    return text;
}

} // namespace

std::string titleFor(const std::filesystem::path& file) {
    std::string title;
    for (char c : file.stem().string()) {
        const bool blank = c == '_' || c == ' ' || c == '\t';
        if (blank) {
            if (!title.empty() && title.back() != ' ')
                title += ' ';
            continue;
        }
        title += c;
    }
    while (!title.empty() && title.back() == ' ')
        title.pop_back();
    return title.empty() ? "Recording" : title;
}

model::SermonNote draft(const Transcript& transcript, std::string title, model::DateTime now) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = std::move(title);
    sermon.date = now;
    sermon.createdAt = sermon.modifiedAt = now;
    sermon.notes = transcript.text();
    model::SermonTopic topic;
    topic.id = model::Uuid::random();
    topic.title = referencesTopicTitle;
    attachReferences(topic, sermon.notes);
    if (!topic.subTopics.empty())
        sermon.topics.push_back(std::move(topic));
    return sermon;
}

std::vector<intelligence::SpokenPassage> passages(const Transcript& transcript) {
    std::vector<intelligence::SpokenPassage> result;
    double previousEnd = 0;
    for (const TranscriptSegment& segment : transcript.segments) {
        result.push_back({segment.text, std::max(0.0, segment.startSeconds - previousEnd)});
        previousEnd = segment.endSeconds;
    }
    if (!result.empty())
        result.front().pauseBefore = 0;
    return result;
}

void organise(model::SermonNote& draft, const Transcript& transcript,
              const std::vector<intelligence::OutlineSection>& sections) {
    std::vector<model::SermonTopic> topics;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const std::size_t last = i + 1 < sections.size() ? sections[i + 1].firstPassage : transcript.segments.size();
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = sections[i].title;
        topic.details = joined(transcript, sections[i].firstPassage, last);
        topic.sortOrder = static_cast<int>(topics.size());
        attachReferences(topic, topic.details);
        topics.push_back(std::move(topic));
    }
    draft.topics = std::move(topics);
}

} // namespace quillon::speech::transcriptDraft
