#include "export/LibraryReferences.h"

#include "scripture/ReferenceParser.h"

namespace quillon::exports {

ReferenceRecognizer libraryReferenceRecognizer() {
    return [](std::string_view text) -> std::optional<RecognizedPassage> {
        const auto reference = scripture::parse(text);
        if (!reference)
            return std::nullopt;
        RecognizedPassage passage;
        passage.bookName = reference->book.name;
        passage.chapter = reference->chapter;
        passage.startVerse = reference->firstVerse().value_or(1);
        passage.endVerse = reference->lastVerse().value_or(reference->book.verseCount(reference->chapter));
        return passage;
    };
}

} // namespace quillon::exports
