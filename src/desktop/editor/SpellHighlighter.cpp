#include "desktop/editor/SpellHighlighter.h"

#include "desktop/editor/SpellChecker.h"

#include <QTextCharFormat>

namespace quillon::desktop {

namespace {

bool isWordCharacter(QChar c) {
    return c.isLetter() || c == u'\'' || c == u'’';
}

} // namespace

SpellHighlighter::SpellHighlighter(const SpellChecker& checker, QTextDocument* document)
    : QSyntaxHighlighter(document), m_checker(checker) {}

void SpellHighlighter::highlightBlock(const QString& text) {
    if (!m_checker.isAvailable())
        return;
    QTextCharFormat misspelt;
    misspelt.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    misspelt.setUnderlineColor(Qt::red);
    int start = 0;
    while (start < text.size()) {
        while (start < text.size() && !isWordCharacter(text[start]))
            ++start;
        int end = start;
        while (end < text.size() && isWordCharacter(text[end]))
            ++end;
        // Apostrophes that only quote the word are not part of it.
        int wordStart = start;
        int wordEnd = end;
        while (wordStart < wordEnd && !text[wordStart].isLetter())
            ++wordStart;
        while (wordEnd > wordStart && !text[wordEnd - 1].isLetter())
            --wordEnd;
        if (wordEnd > wordStart && !m_checker.isCorrect(text.mid(wordStart, wordEnd - wordStart)))
            setFormat(wordStart, wordEnd - wordStart, misspelt);
        start = end;
    }
}

std::pair<int, int> wordAround(const QString& text, int at) {
    if (at < 0 || at > text.size())
        return {at, 0};
    int start = at;
    while (start > 0 && isWordCharacter(text[start - 1]))
        --start;
    int end = at;
    while (end < text.size() && isWordCharacter(text[end]))
        ++end;
    while (start < end && !text[start].isLetter())
        ++start;
    while (end > start && !text[end - 1].isLetter())
        --end;
    return {start, end - start};
}

} // namespace quillon::desktop
