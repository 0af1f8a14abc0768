#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace orvane {

/// A Bible reference as the intelligence layer exchanges it with a language model: the book
/// spelled out in full, a chapter, and an optional verse range. It carries no book table, so
/// `isValid` checks only its own numbers.
struct ScriptureReference {
    std::string book;
    int chapter = 1;
    /// Absent: the whole chapter.
    std::optional<int> startVerse;
    /// Absent: a single verse.
    std::optional<int> endVerse;

    /// "Psalms 23", "John 3:16" (also when the end equals the start), "John 3:16-18".
    std::string description() const;
    /// Chapter at least 1; no end without a start; a start of at least 1 with no end before it.
    bool isValid() const;

    bool operator==(const ScriptureReference&) const = default;
};

/// JSON keys "book", "chapter", "startVerse", "endVerse"; absent verses are left out.
nlohmann::ordered_json encodeScriptureReference(const ScriptureReference& reference);
/// Reads the same keys; nothing when "book" or "chapter" is missing or has the wrong type.
std::optional<ScriptureReference> decodeScriptureReference(const nlohmann::ordered_json& json);

} // namespace orvane
