#pragma once

#include "model/SermonNote.h"
#include "scripture/ScriptureReference.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::intelligence {

/// Small text helpers shared by the model-backed features.
namespace featureText {

/// Without leading and trailing blanks and line breaks.
std::string trimmed(std::string_view text);
/// True when the whole reply is the single word NONE, in any letter case.
bool isNone(std::string_view reply);
/// The reply's non-empty lines, each trimmed.
std::vector<std::string> lines(std::string_view reply);
/// Case-folded with ICU (locale-independent full folding), for case-insensitive comparison.
std::string folded(std::string_view text);
/// The number of user-perceived characters.
std::size_t characterCount(std::string_view text);
/// At most `limit` user-perceived characters, cut at a word where possible, with "…" when cut.
std::string shortened(std::string_view text, std::size_t limit);

/// The scripture references a text names ("John 3:16", "1 Cor 13:4-7", "Psalm 23"), recognised
/// by the reference parser. A chapter without a verse counts only after a capitalised book name,
/// so ordinary words before numbers are not taken for books.
std::vector<scripture::ScriptureReference> referencesIn(std::string_view text);
/// True when `named` lies within `given`: same book and chapter, and every verse named is given
/// (a whole chapter is within only a whole chapter of the same book).
bool isWithin(const scripture::ScriptureReference& named, const scripture::ScriptureReference& given);
/// True when every reference `text` names lies within one of `allowed`.
bool namesOnly(std::string_view text, const std::vector<scripture::ScriptureReference>& allowed);

/// "John 3:16" or "John 3:16-18" for an attached passage.
std::string referenceText(const model::SermonScripture& scripture);
/// The attached passage as a reference, when its book is known.
std::optional<scripture::ScriptureReference> referenceOf(const model::SermonScripture& scripture);

} // namespace featureText

/// One part of a sermon offered to a model: a topic with its sub-points and cited scripture.
struct SermonSection {
    std::string heading;
    /// The topic's details and each sub-topic's title and details, one paragraph each.
    std::string notes;
    /// The references attached under this topic, printed ("John 3:16-18").
    std::vector<std::string> scriptures;

    /// The text offered to the model: heading, notes, then "\nScripture cited here:" and the
    /// references when there are any.
    std::string offered() const;
    /// Heading and notes, the words a rewrite works on.
    std::string body() const;
};

/// The sermon's topics in outline order as sections; topics with neither a title nor notes are left out.
std::vector<SermonSection> sermonSections(const model::SermonNote& sermon);
/// Every attached reference of the sermon, in outline order, without repeats.
std::vector<scripture::ScriptureReference> sermonReferences(const model::SermonNote& sermon);

} // namespace quillon::intelligence
