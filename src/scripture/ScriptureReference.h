#pragma once

#include "scripture/BibleBook.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane {
struct ScriptureReference;
}

namespace quillon::scripture {

/// A reference validated against the book table: a book, a chapter within it, and either the
/// verses named (ranges held expanded, in the order written) or, when absent, the whole chapter.
struct ScriptureReference {
    BibleBook book;
    int chapter = 1;
    std::optional<std::vector<int>> verses;

    /// The lowest and highest verse named; nothing for a whole chapter.
    std::optional<int> firstVerse() const;
    std::optional<int> lastVerse() const;

    /// "John 3", "John 3:16", "John 3:16-18" (first to last verse named), with the full book name.
    std::string description() const;
    /// The shared form exchanged with the intelligence layer (full name, first and last verse).
    orvane::ScriptureReference shared() const;

    bool operator==(const ScriptureReference&) const = default;
};

} // namespace quillon::scripture
