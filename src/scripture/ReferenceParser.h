#pragma once

#include "model/BibleVersion.h"
#include "scripture/BibleBook.h"
#include "scripture/ScriptureReference.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// Reads a typed or pasted reference ("John 3:16", "1 cor 13", "first john 1:9", "ps 23:1-3, 6",
/// "the last chapter of Revelation", "Rom. 8:28 (NIV)", "1 Jn 1:9", "Jude 3") and validates book
/// and chapter against the book table. The one entry point for every typed reference: a text the
/// parser does not read as written is normalised (see normaliseReference) and read once more.
/// Nothing when the text is not a reference.
std::optional<ScriptureReference> parse(std::string_view text);

/// The parser without the normalising step. Verses beyond the chapter are kept (lookups skip
/// them), a range stops at the chapter's last verse, a descending range ("18-16") is read as 16
/// to 18, and a piece that is not a number makes the whole text not a reference.
std::optional<ScriptureReference> parseAsWritten(std::string_view text);

/// How a text was read: the reference (if any), the text the parser read and what the normalising
/// step changed to get there.
struct ReferenceReading {
    std::optional<ScriptureReference> reference;
    /// The text as the parser read it: the typed text when it was read as written.
    std::string readAs;
    /// A translation tag taken off the text ("NIV"), in capitals; empty when there was none.
    std::string translation;
    /// The version that tag names when it is one of Quillon's.
    std::optional<model::BibleVersion> version;
    /// One sentence per change the normalising step made (filled only with `explain`).
    std::vector<std::string> changes;
};

/// parse with its working shown: also gives the translation tag a caller may honour.
ReferenceReading readReference(std::string_view text, bool explain = false);

/// The book a typed name stands for: full name, alias, unique prefix (3 characters or more) or
/// the closest name within a quarter of its length in edits.
std::optional<BibleBook> resolveBook(std::string_view name);
/// Same as resolveBook without copying the book.
const BibleBook* resolveBookInTable(std::string_view name);

/// The key resolveBook compares: lower case, trimmed, a leading ordinal word ("first ", "1st ",
/// "ii ") turned into its digit and a space, single spaces between words.
std::string normaliseBookName(std::string_view name);

} // namespace quillon::scripture
