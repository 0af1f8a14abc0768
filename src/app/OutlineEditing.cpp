#include "app/OutlineEditing.h"

#include <algorithm>

namespace quillon::app {

namespace {

template <class Item>
auto byId(std::vector<Item>& items, const model::Uuid& id) {
    return std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.id == id; });
}

/// Takes the item at `from` out of `source` and puts it at `to` in `target` (clamped to its end).
template <class Item>
void transfer(std::vector<Item>& source, typename std::vector<Item>::iterator from, std::vector<Item>& target,
              std::size_t to) {
    Item item = std::move(*from);
    source.erase(from);
    to = std::min(to, target.size());
    target.insert(target.begin() + static_cast<std::ptrdiff_t>(to), std::move(item));
}

} // namespace

const model::SermonTopic* findTopic(const model::SermonNote& sermon, const model::Uuid& id) {
    return findTopic(const_cast<model::SermonNote&>(sermon), id);
}

model::SermonTopic* findTopic(model::SermonNote& sermon, const model::Uuid& id) {
    auto found = byId(sermon.topics, id);
    return found == sermon.topics.end() ? nullptr : &*found;
}

const model::SermonSubTopic* findSubTopic(const model::SermonNote& sermon, const model::Uuid& id) {
    return findSubTopic(const_cast<model::SermonNote&>(sermon), id);
}

model::SermonSubTopic* findSubTopic(model::SermonNote& sermon, const model::Uuid& id) {
    for (auto& topic : sermon.topics) {
        auto found = byId(topic.subTopics, id);
        if (found != topic.subTopics.end())
            return &*found;
    }
    return nullptr;
}

const model::SermonScripture* findScripture(const model::SermonNote& sermon, const model::Uuid& id) {
    return findScripture(const_cast<model::SermonNote&>(sermon), id);
}

model::SermonScripture* findScripture(model::SermonNote& sermon, const model::Uuid& id) {
    for (auto& topic : sermon.topics)
        for (auto& subTopic : topic.subTopics) {
            auto found = byId(subTopic.scriptures, id);
            if (found != subTopic.scriptures.end())
                return &*found;
        }
    return nullptr;
}

std::optional<OutlineLocation> locate(const model::SermonNote& sermon, const model::Uuid& id) {
    for (const auto& topic : sermon.topics) {
        if (topic.id == id)
            return OutlineLocation{topic.id, std::nullopt, std::nullopt};
        for (const auto& subTopic : topic.subTopics) {
            if (subTopic.id == id)
                return OutlineLocation{topic.id, subTopic.id, std::nullopt};
            for (const auto& scripture : subTopic.scriptures)
                if (scripture.id == id)
                    return OutlineLocation{topic.id, subTopic.id, scripture.id};
        }
    }
    return std::nullopt;
}

void renumber(model::SermonNote& sermon) {
    int topicOrder = 0;
    for (auto& topic : sermon.topics) {
        topic.sortOrder = topicOrder++;
        int subTopicOrder = 0;
        for (auto& subTopic : topic.subTopics) {
            subTopic.sortOrder = subTopicOrder++;
            int scriptureOrder = 0;
            for (auto& scripture : subTopic.scriptures)
                scripture.sortOrder = scriptureOrder++;
        }
    }
}

bool removeOutlineItem(model::SermonNote& sermon, DeleteType type, const model::Uuid& id) {
    const auto location = locate(sermon, id);
    if (!location || location->type() != type)
        return false;
    auto topic = byId(sermon.topics, location->topicId);
    if (type == DeleteType::topic) {
        sermon.topics.erase(topic);
    } else {
        auto subTopic = byId(topic->subTopics, *location->subTopicId);
        if (type == DeleteType::subTopic)
            topic->subTopics.erase(subTopic);
        else
            subTopic->scriptures.erase(byId(subTopic->scriptures, id));
    }
    renumber(sermon);
    return true;
}

bool moveTopic(model::SermonNote& sermon, const model::Uuid& id, std::size_t to) {
    auto found = byId(sermon.topics, id);
    if (found == sermon.topics.end())
        return false;
    transfer(sermon.topics, found, sermon.topics, to);
    renumber(sermon);
    return true;
}

bool moveSubTopic(model::SermonNote& sermon, const model::Uuid& id, std::size_t to,
                  std::optional<model::Uuid> toTopic) {
    const auto location = locate(sermon, id);
    if (!location || location->type() != DeleteType::subTopic)
        return false;
    model::SermonTopic* target = findTopic(sermon, toTopic.value_or(location->topicId));
    if (!target)
        return false;
    model::SermonTopic* source = findTopic(sermon, location->topicId);
    transfer(source->subTopics, byId(source->subTopics, id), target->subTopics, to);
    renumber(sermon);
    return true;
}

bool moveScripture(model::SermonNote& sermon, const model::Uuid& id, std::size_t to,
                   std::optional<model::Uuid> toSubTopic) {
    const auto location = locate(sermon, id);
    if (!location || location->type() != DeleteType::scripture)
        return false;
    model::SermonSubTopic* target = findSubTopic(sermon, toSubTopic.value_or(*location->subTopicId));
    if (!target)
        return false;
    model::SermonSubTopic* source = findSubTopic(sermon, *location->subTopicId);
    transfer(source->scriptures, byId(source->scriptures, id), target->scriptures, to);
    renumber(sermon);
    return true;
}

} // namespace quillon::app
