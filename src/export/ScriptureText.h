#pragma once

#include "export/VerseTextSource.h"
#include "model/SermonScripture.h"

#include <string>

namespace quillon::exports {

/// "John 3", "John 3:16" or "John 3:16-18" (plain hyphen); an empty book name reads "Unknown book".
std::string referenceText(const model::SermonScripture& scripture);

/// The reference followed by " (", the version abbreviation and ")": "John 3:16 (KJV)".
std::string referenceWithVersion(const model::SermonScripture& scripture);

/// The passage text, or the one line that says why there is none, so a slide or hand-out is
/// never silently blank.
std::string passageOrNote(const model::SermonScripture& scripture, const VerseTextSource& verses);

} // namespace quillon::exports
