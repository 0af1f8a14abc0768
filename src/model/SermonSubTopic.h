#pragma once

#include "model/SermonScripture.h"

namespace quillon::model {

/// A sub-point of a topic, with its attached scriptures.
struct SermonSubTopic {
    Uuid id;
    std::string title;
    std::string details;
    /// RTF bytes, the rich twin of `details`.
    std::optional<std::string> detailsRTFData;
    std::vector<SermonScripture> scriptures;
    int sortOrder = 0;
    std::optional<std::string> textColorHex;
    UnknownFields unknownFields;

    bool operator==(const SermonSubTopic&) const = default;
};

} // namespace quillon::model
