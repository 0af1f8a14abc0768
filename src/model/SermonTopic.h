#pragma once

#include "model/SermonSubTopic.h"

namespace quillon::model {

/// A main point of the sermon's outline.
struct SermonTopic {
    Uuid id;
    std::string title;
    std::string details;
    /// RTF bytes, the rich twin of `details`.
    std::optional<std::string> detailsRTFData;
    std::vector<SermonSubTopic> subTopics;
    int sortOrder = 0;
    std::optional<std::string> textColorHex;
    UnknownFields unknownFields;

    bool operator==(const SermonTopic&) const = default;
};

} // namespace quillon::model
