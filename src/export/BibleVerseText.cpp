#include "export/BibleVerseText.h"

#include "scripture/ReferenceParser.h"

#include <algorithm>

namespace quillon::exports {

PassageText BibleVerseText::passage(const model::SermonScripture& passage) const {
    PassageText result;
    result.versionAvailable = m_loader.isAvailable(passage.version);
    if (!result.versionAvailable)
        return result;
    const scripture::BibleBook* book = scripture::resolveBookInTable(passage.bookName);
    if (!book || passage.chapter < 1 || passage.chapter > book->chapterCount())
        return result;

    scripture::ScriptureReference reference;
    reference.book = *book;
    reference.chapter = passage.chapter;
    if (passage.startVerse >= 1) {
        // A stored range may be reversed or run past the chapter; the chapter bounds the work.
        const int last = std::min(std::max(passage.startVerse, passage.endVerse), book->verseCount(passage.chapter));
        std::vector<int> verses;
        for (int verse = passage.startVerse; verse <= last; ++verse)
            verses.push_back(verse);
        reference.verses = std::move(verses);
    }
    for (const auto& found : m_loader.verses(reference, {passage.version})) {
        if (!result.text.empty())
            result.text += ' ';
        result.text += found.verse.text;
    }
    return result;
}

} // namespace quillon::exports
