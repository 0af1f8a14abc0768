#pragma once

#include <map>
#include <optional>
#include <string>

namespace quillon::mesh {

/// A reference as peers exchange it: the book spelled out, a chapter, and an optional verse range.
struct MeshScriptureReference {
    std::string book;
    int chapter = 0;
    std::optional<int> startVerse;
    std::optional<int> endVerse;

    /// "Psalms 23", "John 3:16" or "John 3:16-18".
    std::string description() const;

    /// Reads "book"/"chapter"/"startVerse"/"endVerse" when "book" and "chapter" are present, else
    /// the printed "reference"; nothing when neither gives a usable reference.
    static std::optional<MeshScriptureReference> fromPayload(const std::map<std::string, std::string>& payload);
    /// A typed reference ("John 3:16-18", "1 cor 13"), read by the scripture library's parser.
    static std::optional<MeshScriptureReference> parse(const std::string& text);

    bool operator==(const MeshScriptureReference&) const = default;
};

} // namespace quillon::mesh
