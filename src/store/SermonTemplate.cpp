#include "store/SermonTemplate.h"

#include <initializer_list>
#include <string>

namespace quillon::store {

namespace {

struct TemplateText {
    SermonTemplate sermonTemplate;
    std::string_view rawValue;
    std::string_view displayName;
    std::string_view description;
};

constexpr TemplateText texts[] = {
    {SermonTemplate::blank, "blank", "Blank", "No starting outline — build the sermon from a blank sheet."},
    {SermonTemplate::expository, "expository", "Expository",
     "One passage worked through in order: Context, Observation, Interpretation, Application."},
    {SermonTemplate::topical, "topical", "Topical (Three Points)",
     "Three supporting points under a single theme, each with its own scripture and application."},
    {SermonTemplate::textual, "textual", "Textual (Verse by Verse)",
     "Verse-by-verse through a short passage: Verse 1, Verse 2, Verse 3."},
    {SermonTemplate::seriesKickoff, "seriesKickoff", "Series Kickoff",
     "Opens a series: Introduction, Series Overview, This Week's Passage, What to Expect Next Week."},
};

const TemplateText& textFor(SermonTemplate sermonTemplate) {
    for (const TemplateText& text : texts)
        if (text.sermonTemplate == sermonTemplate)
            return text;
    return texts[0];
}

model::SermonTopic topic(std::string title, std::initializer_list<const char*> subTopicTitles) {
    model::SermonTopic topic;
    topic.id = model::Uuid::random();
    topic.title = std::move(title);
    int position = 0;
    for (const char* subTitle : subTopicTitles) {
        model::SermonSubTopic subTopic;
        subTopic.id = model::Uuid::random();
        subTopic.title = subTitle;
        subTopic.sortOrder = position++;
        topic.subTopics.push_back(std::move(subTopic));
    }
    return topic;
}

} // namespace

std::string_view rawValue(SermonTemplate sermonTemplate) {
    return textFor(sermonTemplate).rawValue;
}

std::optional<SermonTemplate> sermonTemplateFromRawValue(std::string_view text) {
    for (const TemplateText& entry : texts)
        if (entry.rawValue == text)
            return entry.sermonTemplate;
    return std::nullopt;
}

std::string_view displayName(SermonTemplate sermonTemplate) {
    return textFor(sermonTemplate).displayName;
}

std::string_view templateDescription(SermonTemplate sermonTemplate) {
    return textFor(sermonTemplate).description;
}

std::vector<model::SermonTopic> outline(SermonTemplate sermonTemplate) {
    std::vector<model::SermonTopic> topics;
    switch (sermonTemplate) {
    case SermonTemplate::blank:
        break;
    case SermonTemplate::expository:
        topics.push_back(topic("The Passage", {"Context", "Observation", "Interpretation", "Application"}));
        break;
    case SermonTemplate::topical:
        for (const char* point : {"Point 1", "Point 2", "Point 3"})
            topics.push_back(topic(point, {"Supporting Scripture", "Application"}));
        break;
    case SermonTemplate::textual:
        topics.push_back(topic("The Passage", {"Verse 1", "Verse 2", "Verse 3"}));
        break;
    case SermonTemplate::seriesKickoff:
        for (const char* title : {"Introduction", "Series Overview", "This Week's Passage", "What to Expect Next Week"})
            topics.push_back(topic(title, {}));
        break;
    } // no default case, so the compiler can warn about missing cases
    for (std::size_t position = 0; position < topics.size(); ++position)
        topics[position].sortOrder = static_cast<int>(position);
    return topics;
}

} // namespace quillon::store
