#pragma once

#include <QTextEdit>

#include <optional>
#include <string>

namespace quillon::desktop {

class SpellChecker;
class SpellHighlighter;

/// A rich-text field for the manuscript and the outline's details: bold, italic, underline,
/// colour, size, bulleted and numbered lists and links, spelling marked as the preacher types
/// with suggestions in the context menu. It keeps nothing of its own: what it shows is loaded
/// with setContent, and each change is announced with edited() for the controller to store.
class RichTextEditor : public QTextEdit {
    Q_OBJECT
public:
    /// `checker` (may be null) must outlive the editor.
    explicit RichTextEditor(const SpellChecker* checker, QWidget* parent = nullptr);

    /// Shows a stored text (the RTF twin when it matches the plain text). Nothing changes, and
    /// the cursor stays, when the editor already shows these words.
    void setContent(const std::string& plain, const std::optional<std::string>& rtf);
    /// The words as stored beside the twin: paragraphs joined by new lines, bullets as "• ".
    std::string plainText() const;
    std::string rtf() const;
    /// True when the words or their formatting differ from what setContent last showed.
    bool differsFromLoaded() const;
    /// Reading mode: shown, selectable, links followed, not editable.
    void setReading(bool reading);
    /// Marks misspelt words again (after the checker learnt new words).
    void recheckSpelling();

signals:
    /// The user changed the text.
    void edited();
    /// A link was followed (a click in reading mode, Ctrl+click while editing).
    void linkActivated(const QString& url);

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void toggleList(int style);
    void toggleFormat(int which);
    void chooseColour();
    void insertLink();

    const SpellChecker* m_checker = nullptr;
    SpellHighlighter* m_highlighter = nullptr;
    bool m_loading = false;
    std::string m_loadedPlain;
    std::string m_loadedRtf;
};

} // namespace quillon::desktop
