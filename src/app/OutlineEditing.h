#pragma once

#include "app/DeleteType.h"
#include "model/SermonNote.h"

#include <cstddef>
#include <optional>

namespace quillon::app {

// Changes to one sermon's outline, made on a copy that the controller then hands to the store.
// Lists keep the order the preacher gave them; every change renumbers `sortOrder` to match it.

const model::SermonTopic* findTopic(const model::SermonNote& sermon, const model::Uuid& id);
model::SermonTopic* findTopic(model::SermonNote& sermon, const model::Uuid& id);
const model::SermonSubTopic* findSubTopic(const model::SermonNote& sermon, const model::Uuid& id);
model::SermonSubTopic* findSubTopic(model::SermonNote& sermon, const model::Uuid& id);
const model::SermonScripture* findScripture(const model::SermonNote& sermon, const model::Uuid& id);
model::SermonScripture* findScripture(model::SermonNote& sermon, const model::Uuid& id);

/// Where an outline item sits: its topic, and its sub-topic and scripture when it is that deep.
struct OutlineLocation {
    model::Uuid topicId;
    std::optional<model::Uuid> subTopicId;
    std::optional<model::Uuid> scriptureId;

    DeleteType type() const {
        return scriptureId ? DeleteType::scripture : subTopicId ? DeleteType::subTopic : DeleteType::topic;
    }
    /// The item itself: the deepest id present.
    model::Uuid itemId() const { return scriptureId ? *scriptureId : subTopicId ? *subTopicId : topicId; }
    bool operator==(const OutlineLocation&) const = default;
};

/// The topic, sub-topic or scripture with `id` in `sermon`; nothing when it holds none.
std::optional<OutlineLocation> locate(const model::SermonNote& sermon, const model::Uuid& id);

/// Sets every `sortOrder` to the item's position in its list, from 0.
void renumber(model::SermonNote& sermon);

/// Removes the item and everything under it; false when there is no such item.
bool removeOutlineItem(model::SermonNote& sermon, DeleteType type, const model::Uuid& id);

/// Moves a topic to position `to` (past the end means last); false when there is no such topic.
bool moveTopic(model::SermonNote& sermon, const model::Uuid& id, std::size_t to);
/// Moves a sub-topic to position `to` of `toTopic` (default: the topic that holds it).
bool moveSubTopic(model::SermonNote& sermon, const model::Uuid& id, std::size_t to,
                  std::optional<model::Uuid> toTopic = std::nullopt);
/// Moves a scripture to position `to` of `toSubTopic` (default: the sub-topic that holds it).
bool moveScripture(model::SermonNote& sermon, const model::Uuid& id, std::size_t to,
                   std::optional<model::Uuid> toSubTopic = std::nullopt);

} // namespace quillon::app
