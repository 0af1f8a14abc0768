#pragma once

#include "model/BibleVersion.h"
#include "model/UnknownJSONValue.h"
#include "model/Uuid.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon::model {

/// A Bible passage attached to a sub-point.
struct SermonScripture {
    Uuid id;
    std::string bookName;
    int chapter = 1;
    int startVerse = 1;
    int endVerse = 1;
    BibleVersion version = BibleVersion::kjv;
    int sortOrder = 0;
    /// Word position in the passage text → highlighter colour name.
    std::map<int, std::string> wordHighlights;
    /// Word positions after which a line break is shown.
    std::vector<int> breakIndicators;
    std::optional<std::string> textColorHex;
    UnknownFields unknownFields;

    bool operator==(const SermonScripture&) const = default;
};

} // namespace quillon::model
