#pragma once

#include "model/BibleVersion.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// A typed or pasted reference rewritten into the forms the reference parser reads, with what was
/// taken off on the way.
struct NormalisedReference {
    /// The text for the parser ("Rom. 8:28 (NIV)" becomes "Romans 8:28").
    std::string text;
    /// The translation tag as written, in capitals ("NIV"); empty when the text carries none.
    std::string translation;
    /// The version the tag names when it is one Quillon has.
    std::optional<model::BibleVersion> version;
    /// One sentence per change, in the order made; filled only when asked to explain.
    std::vector<std::string> changes;

    /// True when the text differs from what was typed or a tag was taken off.
    bool changed = false;
};

/// Rewrites what preachers type and paste into the parser's forms: Unicode spaces, dashes, quotes
/// and brackets as plain characters; wrapping quotes, brackets and trailing punctuation removed; a
/// translation tag before or after the reference taken off; periods after book abbreviations and
/// leading numerals dropped; the style guides' abbreviations and spaced short forms ("1 Jn") spelt
/// out; "chapter 8 verse 29" as "8:29"; a one-chapter book's verse cited alone ("Jude 3") given its
/// chapter; "the 23rd Psalm" as "Psalms 23". Never fails: text it cannot improve comes back as it is.
/// `explain` fills `changes`; without it no sentence is built.
NormalisedReference normaliseReference(std::string_view text, bool explain = false);

/// The text with no-break, thin and other Unicode spaces as plain spaces and zero-width
/// characters removed, as pasted text needs before it is split into words.
std::string withPlainSpaces(std::string_view text);

/// The version named by a translation tag ("nkjv" or "NKJV"), when it is one of Quillon's.
std::optional<model::BibleVersion> versionForTranslationTag(std::string_view tag);
/// True for the common English translation tags (ours and others: "NIV", "ESV", "NASB" …).
bool isTranslationTag(std::string_view tag);

} // namespace quillon::scripture
