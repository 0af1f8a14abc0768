#include "app/ControllerTexts.h"

#include "app/OutlineEditing.h"
#include "app/TextRules.h"

namespace quillon::app {

namespace {

std::string scriptureDeletion(const model::SermonNote& sermon, const model::Uuid& id) {
    for (const auto& topic : sermon.topics)
        for (const auto& subTopic : topic.subTopics)
            for (const auto& scripture : subTopic.scriptures)
                if (scripture.id == id)
                    return curlyQuoted(scriptureReferenceText(scripture)) + " will be removed from " +
                           curlyQuoted(subTopic.title) + ".";
    return "This scripture reference will be deleted.";
}

std::string subTopicDeletion(const model::SermonNote& sermon, const model::Uuid& id) {
    const model::SermonSubTopic* subTopic = findSubTopic(sermon, id);
    if (!subTopic)
        return "This subtopic will be deleted.";
    if (subTopic->scriptures.empty())
        return curlyQuoted(subTopic->title) + " will be deleted.";
    return curlyQuoted(subTopic->title) + " will be deleted along with " +
           counted(subTopic->scriptures.size(), "scripture reference", "scripture references") + ".";
}

std::string topicDeletion(const model::SermonNote& sermon, const model::Uuid& id) {
    const model::SermonTopic* topic = findTopic(sermon, id);
    if (!topic)
        return "This topic will be deleted.";
    std::string message = curlyQuoted(topic->title) + " will be deleted";
    if (!topic->subTopics.empty()) {
        std::size_t scriptures = 0;
        for (const auto& subTopic : topic->subTopics)
            scriptures += subTopic.scriptures.size();
        message += " along with " + counted(topic->subTopics.size(), "subtopic", "subtopics");
        if (scriptures > 0)
            message += " and " + counted(scriptures, "scripture reference", "scripture references");
    }
    return message + ".";
}

} // namespace

std::string counted(std::size_t count, std::string_view singular, std::string_view plural) {
    return std::to_string(count) + " " + std::string(count == 1 ? singular : plural);
}

std::string outlineDeletionMessage(const model::SermonNote* sermon, DeleteType type, const model::Uuid& id) {
    static const model::SermonNote empty;
    const model::SermonNote& holder = sermon ? *sermon : empty;
    switch (type) {
    case DeleteType::topic:
        return topicDeletion(holder, id);
    case DeleteType::subTopic:
        return subTopicDeletion(holder, id);
    case DeleteType::scripture:
        return scriptureDeletion(holder, id);
    } // no default case, so the compiler can warn about missing cases
    return {};
}

std::string trashConfirmationMessage(const std::vector<std::string>& titles, std::size_t selectedCount,
                                     int retentionDays) {
    const std::string days = std::to_string(retentionDays);
    if (selectedCount <= 1) {
        if (titles.empty())
            return "This sermon will move to Trash.";
        return curlyQuoted(titles.front()) + " will move to Trash. It can be restored from Setup > Trash… for " + days +
               " days, after which it is removed automatically.";
    }
    std::string named;
    const std::size_t naming = std::min(titles.size(), batchTrashNamedTitles);
    for (std::size_t i = 0; i < naming; ++i)
        named += (i == 0 ? "" : ", ") + curlyQuoted(titles[i]);
    if (naming == 0)
        named = counted(selectedCount, "sermon", "sermons");
    else if (selectedCount > naming)
        named += " and " + std::to_string(selectedCount - naming) + " more";
    return named + " — will move to Trash. Each can be restored from Setup > Trash… for " + days + " days.";
}

std::string movedToTrashDetail(std::size_t count) {
    return counted(count, "sermon", "sermons") + " moved to Trash.";
}

std::string restoreDetail(int sermons, int coverImages) {
    std::string detail = "Restored " + counted(static_cast<std::size_t>(std::max(sermons, 0)), "sermon", "sermons");
    if (coverImages > 0)
        detail += " and " + counted(static_cast<std::size_t>(coverImages), "cover image", "cover images");
    return detail + ".";
}

std::string restoreConfirmationMessage(std::string_view backupName) {
    return "Restore sermons from " + curlyQuoted(backupName) +
           "? A restored sermon replaces any sermon in your library with the same identity; anything else in your "
           "library is left untouched.";
}

std::string printFailedDetail(std::string_view title) {
    return "Quillon could not prepare " + std::string(title) + " for printing.";
}

std::string notSavedDetail(std::string_view title) {
    return "Quillon could not save “" + std::string(title) +
           "”. The change is kept and saved again with your next edit.";
}

std::string scriptureReferenceText(const model::SermonScripture& scripture) {
    std::string text =
        scripture.bookName + " " + std::to_string(scripture.chapter) + ":" + std::to_string(scripture.startVerse);
    if (scripture.endVerse != scripture.startVerse)
        text += "-" + std::to_string(scripture.endVerse);
    return text;
}

} // namespace quillon::app
