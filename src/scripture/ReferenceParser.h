#pragma once

#include "scripture/BibleBook.h"
#include "scripture/ScriptureReference.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::scripture {

/// Reads a typed reference ("John 3:16", "1 cor 13", "first john 1:9", "ps 23:1-3, 6",
/// "the last chapter of Revelation") and validates book and chapter against the book table.
/// Nothing when the text is not a reference; verses beyond the chapter are kept (lookups skip
/// them). A descending range ("18-16") is read as 16 to 18; a piece that is not a number, or a
/// verse number above 999, makes the whole text not a reference.
std::optional<ScriptureReference> parse(std::string_view text);

/// The book a typed name stands for: full name, alias, unique prefix (3 characters or more) or
/// the closest name within a quarter of its length in edits.
std::optional<BibleBook> resolveBook(std::string_view name);
/// Same as resolveBook without copying the book.
const BibleBook* resolveBookInTable(std::string_view name);

/// The key resolveBook compares: lower case, trimmed, a leading ordinal word ("first ", "1st ",
/// "ii ") turned into its digit and a space, single spaces between words.
std::string normaliseBookName(std::string_view name);

} // namespace quillon::scripture
