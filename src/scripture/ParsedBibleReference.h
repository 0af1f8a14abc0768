#pragma once

#include "scripture/ScriptureReference.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::scripture {

/// A reference in its compact range form, where only a first and a last verse are kept: the book
/// as the table names it, a chapter, and an optional verse range (no start: the whole chapter; no
/// end: one verse).
struct ParsedBibleReference {
    std::string book;
    int chapter = 1;
    std::optional<int> startVerse;
    std::optional<int> endVerse;

    /// The compact form of a library reference: its lowest and highest verse ("John 3:16, 18"
    /// becomes 16 to 18); a single verse has no end.
    static ParsedBibleReference from(const ScriptureReference& reference);
    /// A typed reference read by the one parser, in compact form.
    static std::optional<ParsedBibleReference> parse(std::string_view text);

    /// The library reference the range stands for, validated against the book table; nothing for
    /// an unknown book, a chapter outside it, or an end without a start or before it.
    std::optional<ScriptureReference> reference() const;
    /// "John 3", "John 3:16", "John 3:16-18".
    std::string description() const;

    bool operator==(const ParsedBibleReference&) const = default;
};

} // namespace quillon::scripture
