#pragma once

#include <QSyntaxHighlighter>

namespace quillon::desktop {

class SpellChecker;

/// Underlines misspelt words with the usual red wave as the preacher types.
class SpellHighlighter : public QSyntaxHighlighter {
    Q_OBJECT
public:
    /// `checker` must outlive the highlighter.
    SpellHighlighter(const SpellChecker& checker, QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;

private:
    const SpellChecker& m_checker;
};

/// The word (letters and apostrophes) around position `at` of `text`: its start and length, or a
/// length of 0 when `at` is not inside a word.
std::pair<int, int> wordAround(const QString& text, int at);

} // namespace quillon::desktop
