#include "desktop/editor/RichTextEditor.h"

#include "desktop/editor/RichTextConversion.h"
#include "desktop/editor/SpellChecker.h"
#include "desktop/editor/SpellHighlighter.h"

#include <QColorDialog>
#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>
#include <QTextBlock>
#include <QTextList>

namespace quillon::desktop {

namespace {

enum Format { bold, italic, underline };

} // namespace

RichTextEditor::RichTextEditor(const SpellChecker* checker, QWidget* parent) : QTextEdit(parent), m_checker(checker) {
    setAcceptRichText(true);
    setTabChangesFocus(true);
    if (m_checker)
        m_highlighter = new SpellHighlighter(*m_checker, document());
    connect(document(), &QTextDocument::contentsChange, this, [this](int, int removed, int added) {
        if (!m_loading && (removed > 0 || added > 0))
            emit edited();
    });
}

void RichTextEditor::setContent(const std::string& plain, const std::optional<std::string>& rtf) {
    m_loadedPlain = plainText();
    m_loadedRtf = this->rtf();
    if (m_loadedPlain == plain && (!rtf || *rtf == m_loadedRtf))
        return;
    m_loading = true;
    int position = textCursor().position();
    loadDocument(*document(), plain, rtf);
    QTextCursor cursor = textCursor();
    cursor.setPosition(std::min(position, document()->characterCount() - 1));
    setTextCursor(cursor);
    document()->clearUndoRedoStacks();
    m_loading = false;
    m_loadedPlain = plainText();
    m_loadedRtf = this->rtf();
}

bool RichTextEditor::differsFromLoaded() const {
    return plainText() != m_loadedPlain || rtf() != m_loadedRtf;
}

std::string RichTextEditor::plainText() const {
    return richTextFrom(*document()).plainText();
}

std::string RichTextEditor::rtf() const {
    return rtfFrom(*document());
}

void RichTextEditor::setReading(bool reading) {
    setReadOnly(reading);
    setTextInteractionFlags(reading ? Qt::TextBrowserInteraction : Qt::TextEditorInteraction);
}

void RichTextEditor::recheckSpelling() {
    if (m_highlighter) {
        m_loading = true;
        m_highlighter->rehighlight();
        m_loading = false;
    }
}

bool RichTextEditor::event(QEvent* event) {
    // Undo and redo belong to the whole sermon: leave the keys to the window's actions.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->ignore();
            return false;
        }
    }
    return QTextEdit::event(event);
}

void RichTextEditor::keyPressEvent(QKeyEvent* event) {
    const bool control = event->modifiers() & Qt::ControlModifier;
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    if (control && !shift && event->key() == Qt::Key_B)
        return toggleFormat(bold);
    if (control && !shift && event->key() == Qt::Key_I)
        return toggleFormat(italic);
    if (control && !shift && event->key() == Qt::Key_U)
        return toggleFormat(underline);
    if (control && shift && (event->key() == Qt::Key_8 || event->key() == Qt::Key_Asterisk))
        return toggleList(QTextListFormat::ListDisc);
    if (control && shift && (event->key() == Qt::Key_7 || event->key() == Qt::Key_Slash))
        return toggleList(QTextListFormat::ListDecimal);
    // Ctrl+K belongs to the window's command palette, so a link takes the shifted key.
    if (control && shift && event->key() == Qt::Key_K)
        return insertLink();
    if (event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)) {
        event->ignore();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void RichTextEditor::toggleFormat(int which) {
    if (isReadOnly())
        return;
    QTextCharFormat current = currentCharFormat();
    QTextCharFormat change;
    if (which == bold)
        change.setFontWeight(current.fontWeight() >= QFont::Bold ? QFont::Normal : QFont::Bold);
    else if (which == italic)
        change.setFontItalic(!current.fontItalic());
    else
        change.setFontUnderline(!current.fontUnderline());
    mergeCurrentCharFormat(change);
}

void RichTextEditor::toggleList(int style) {
    if (isReadOnly())
        return;
    QTextCursor cursor = textCursor();
    QTextList* list = cursor.currentList();
    if (list && list->format().style() == style) {
        for (int i = list->count() - 1; i >= 0; --i) {
            QTextBlock block = list->item(i);
            if (block.position() <= cursor.selectionEnd() &&
                block.position() + block.length() > cursor.selectionStart())
                list->remove(block);
        }
        QTextBlockFormat plain = cursor.blockFormat();
        plain.setIndent(0);
        cursor.setBlockFormat(plain);
        return;
    }
    cursor.createList(static_cast<QTextListFormat::Style>(style));
}

void RichTextEditor::chooseColour() {
    QColor colour = QColorDialog::getColor(textColor(), this, tr("Text Colour"));
    if (!colour.isValid())
        return;
    QTextCharFormat change;
    change.setForeground(colour);
    mergeCurrentCharFormat(change);
}

void RichTextEditor::insertLink() {
    if (isReadOnly())
        return;
    bool ok = false;
    QString url = QInputDialog::getText(this, tr("Insert Link"), tr("Address (https://… or quillscripture://…):"),
                                        QLineEdit::Normal, QString(), &ok);
    if (!ok || url.trimmed().isEmpty())
        return;
    QTextCursor cursor = textCursor();
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(url.trimmed());
    link.setFontUnderline(true);
    link.setForeground(palette().link());
    if (!cursor.hasSelection())
        cursor.insertText(url.trimmed(), link);
    else
        cursor.mergeCharFormat(link);
}

void RichTextEditor::mouseReleaseEvent(QMouseEvent* event) {
    QString anchor = anchorAt(event->position().toPoint());
    if (!anchor.isEmpty() && (isReadOnly() || event->modifiers() & Qt::ControlModifier)) {
        emit linkActivated(anchor);
        return;
    }
    QTextEdit::mouseReleaseEvent(event);
}

void RichTextEditor::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = createStandardContextMenu(event->pos());
    QTextCursor at = cursorForPosition(event->pos());
    auto [start, length] = wordAround(at.block().text(), at.positionInBlock());
    QString word = at.block().text().mid(start, length);
    if (!isReadOnly() && m_checker && length > 0 && !m_checker->isCorrect(word)) {
        QAction* first = menu->actions().value(0);
        QStringList suggestions = m_checker->suggestions(word);
        if (suggestions.isEmpty()) {
            QAction* none = new QAction(tr("No spelling suggestions"), menu);
            none->setEnabled(false);
            menu->insertAction(first, none);
        }
        for (const QString& suggestion : suggestions.mid(0, 6)) {
            QAction* replace = new QAction(suggestion, menu);
            QFont font = replace->font();
            font.setBold(true);
            replace->setFont(font);
            const int blockStart = at.block().position();
            connect(replace, &QAction::triggered, this, [this, blockStart, start, length, suggestion] {
                QTextCursor cursor(document());
                cursor.setPosition(blockStart + start);
                cursor.setPosition(blockStart + start + length, QTextCursor::KeepAnchor);
                cursor.insertText(suggestion);
            });
            menu->insertAction(first, replace);
        }
        menu->insertSeparator(first);
    }
    if (!isReadOnly()) {
        QMenu* format = menu->addMenu(tr("Format"));
        format->addAction(tr("Bold"), QKeySequence(Qt::CTRL | Qt::Key_B), this, [this] { toggleFormat(bold); });
        format->addAction(tr("Italic"), QKeySequence(Qt::CTRL | Qt::Key_I), this, [this] { toggleFormat(italic); });
        format->addAction(tr("Underline"), QKeySequence(Qt::CTRL | Qt::Key_U), this,
                          [this] { toggleFormat(underline); });
        format->addAction(tr("Colour…"), this, &RichTextEditor::chooseColour);
        QMenu* size = format->addMenu(tr("Size"));
        for (int points : {10, 12, 14, 18, 24}) {
            size->addAction(QString::number(points), this, [this, points] {
                QTextCharFormat change;
                change.setFontPointSize(points);
                mergeCurrentCharFormat(change);
            });
        }
        format->addAction(tr("Bulleted List"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_8), this,
                          [this] { toggleList(QTextListFormat::ListDisc); });
        format->addAction(tr("Numbered List"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_7), this,
                          [this] { toggleList(QTextListFormat::ListDecimal); });
        format->addAction(tr("Link…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_K), this,
                          &RichTextEditor::insertLink);
    }
    menu->exec(event->globalPos());
    delete menu;
}

} // namespace quillon::desktop
