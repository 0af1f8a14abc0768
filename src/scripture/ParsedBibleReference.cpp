#include "scripture/ParsedBibleReference.h"

#include "orvane/ScriptureReference.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <vector>

namespace quillon::scripture {

ParsedBibleReference ParsedBibleReference::from(const ScriptureReference& reference) {
    const orvane::ScriptureReference shared = reference.shared();
    return ParsedBibleReference{reference.book.name, reference.chapter, shared.startVerse, shared.endVerse};
}

std::optional<ParsedBibleReference> ParsedBibleReference::parse(std::string_view text) {
    if (auto reference = scripture::parse(text))
        return from(*reference);
    return std::nullopt;
}

std::optional<ScriptureReference> ParsedBibleReference::reference() const {
    const BibleBook* book = resolveBookInTable(this->book);
    if (!book || chapter < 1 || chapter > book->chapterCount())
        return std::nullopt;
    if (!startVerse)
        return endVerse ? std::nullopt : std::optional(ScriptureReference{*book, chapter, std::nullopt});
    const int last = endVerse.value_or(*startVerse);
    if (*startVerse < 1 || last < *startVerse)
        return std::nullopt;
    // Stop at the chapter's end as the parser does, so a stored range cannot expand without bound.
    const int stop = std::min(last, std::max(*startVerse, book->verseCount(chapter)));
    std::vector<int> verses;
    for (int verse = *startVerse; verse <= stop; ++verse)
        verses.push_back(verse);
    return ScriptureReference{*book, chapter, std::move(verses)};
}

std::string ParsedBibleReference::description() const {
    return orvane::ScriptureReference{book, chapter, startVerse, endVerse}.description();
}

} // namespace quillon::scripture
