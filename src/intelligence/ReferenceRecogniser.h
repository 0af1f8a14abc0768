#pragma once

#include "scripture/ScriptureReference.h"

#include <string_view>
#include <vector>

namespace quillon::intelligence {

/// Finds the scripture references a running text names, the way a reader would take them, so that
/// every generated text is checked against the references it was given. It reads what the typed
/// reference parser reads ("John 3:16", "1 Cor 13:4-7", "Psalm 23") and the forms prose uses
/// around it: dash ranges of any kind ("Romans 8:28–29"), lists ("Romans 8:28, 29", "Romans 8:28;
/// 12:1"), a bare "8:29" or "verse 29" after a reference, glued book numbers ("2Cor 5:17"), spelled
/// ordinals ("Second Corinthians"), "Romans chapter 8 verse 29", and any kind of space between the
/// parts. Books are resolved with the scripture module's book table and parser.
///
/// A chapter without a verse counts only after a book name that cannot be an ordinary word: a
/// capitalised name or abbreviation, or a full name in lower case ("romans 8", but not "mark 2").
class ReferenceRecogniser {
public:
    ReferenceRecogniser() = delete;

    /// Every reference named, in text order; a list yields one reference per chapter.
    static std::vector<scripture::ScriptureReference> referencesIn(std::string_view text);
    /// True when `named` lies within `given`: same book and chapter, and every verse named is given
    /// (a whole chapter is within only a whole chapter of the same book).
    static bool isWithin(const scripture::ScriptureReference& named, const scripture::ScriptureReference& given);
    /// True when every reference `text` names lies within one of `allowed`.
    static bool namesOnly(std::string_view text, const std::vector<scripture::ScriptureReference>& allowed);
};

} // namespace quillon::intelligence
