#pragma once

#include "scripture/BibleBook.h"

#include <span>
#include <string_view>
#include <utility>

namespace quillon::scripture {

/// The book a standard abbreviation stands for when the book table's own names and aliases do not
/// cover it: the short forms of the Chicago Manual of Style, the SBL Handbook of Style, the MLA
/// Handbook, the OSIS book names and the Paratext (USFM) book codes. `compactKey` is lower case
/// with no space after a leading digit ("1tm", "phlm", "qoh"). Forms that would take a name from a
/// book the table already reads differently ("Jo", "Ez") are left out on purpose.
const BibleBook* bookForStyleGuideAbbreviation(std::string_view compactKey);
/// Every abbreviation of that table with the canonical position of its book.
std::span<const std::pair<std::string_view, int>> styleGuideAbbreviations();

} // namespace quillon::scripture
