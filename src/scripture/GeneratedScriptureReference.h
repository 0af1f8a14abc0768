#pragma once

#include "orvane/ScriptureReference.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace quillon::scripture {

/// A reference as a language model is asked to produce it. While generation is in progress any
/// field may still be missing, so every field is optional here.
struct GeneratedScriptureReference {
    std::optional<std::string> book;
    std::optional<int> chapter;
    std::optional<int> startVerse;
    std::optional<int> endVerse;

    /// The texts the generation schema gives the model for each field.
    static constexpr const char* bookDescription = "The book of the Bible, spelled out in full, e.g. Philippians";
    static constexpr const char* chapterDescription = "The chapter number";
    static constexpr const char* startVerseDescription = "The first verse, or omit for a whole chapter";
    static constexpr const char* endVerseDescription = "The last verse of a range, or omit for a single verse";

    /// A JSON schema of the object (book and chapter required) with the descriptions above.
    static nlohmann::ordered_json generationSchema();
    /// Reads a (possibly partial) model reply; members of the wrong type count as missing.
    static GeneratedScriptureReference fromJSON(const nlohmann::ordered_json& json);

    /// The finished reference, once book and chapter are present.
    std::optional<orvane::ScriptureReference> completed() const;

    bool operator==(const GeneratedScriptureReference&) const = default;
};

} // namespace quillon::scripture
