#pragma once

#include "model/BibleVersion.h"
#include "scripture/BibleVerse.h"

#include <nlohmann/json.hpp>

#include <string>

namespace quillon::scripture {

/// One verse found by a lookup or search, tagged with the version it came from.
struct BibleSearchResult {
    /// The version's code, "-", the verse key: "KJV-Joh 3:16". Unique across versions.
    std::string id;
    model::BibleVersion version = model::BibleVersion::kjv;
    BibleVerse verse;

    bool operator==(const BibleSearchResult&) const = default;
};

/// JSON keys "id", "version" (the code text), "verse".
nlohmann::ordered_json encodeBibleSearchResult(const BibleSearchResult& result);

} // namespace quillon::scripture
