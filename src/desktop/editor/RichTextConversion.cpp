#include "desktop/editor/RichTextConversion.h"

#include "export/RtfReader.h"
#include "export/RtfWriter.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

namespace quillon::desktop {

namespace {

constexpr int twipsPerPixel = 15;

exports::RichRun runFrom(const QTextFragment& fragment, const QFont& defaultFont) {
    QTextCharFormat format = fragment.charFormat();
    exports::RichRun run;
    run.text = fragment.text().replace(QChar::LineSeparator, u'\n').toStdString();
    run.bold = format.fontWeight() >= QFont::Bold;
    run.italic = format.fontItalic();
    run.underline = format.fontUnderline();
    if (format.hasProperty(QTextFormat::ForegroundBrush) && format.foreground().style() != Qt::NoBrush)
        run.colorHex = format.foreground().color().name().mid(1).toUpper().toStdString();
    if (format.hasProperty(QTextFormat::FontPointSize) && format.fontPointSize() > 0 &&
        format.fontPointSize() != defaultFont.pointSizeF())
        run.fontSize = format.fontPointSize();
    if (format.isAnchor())
        run.link = format.anchorHref().toStdString();
    return run;
}

QTextCharFormat formatFor(const exports::RichRun& run) {
    QTextCharFormat format;
    if (run.bold)
        format.setFontWeight(QFont::Bold);
    format.setFontItalic(run.italic);
    format.setFontUnderline(run.underline || !run.link.empty());
    if (!run.colorHex.empty())
        format.setForeground(QColor(QStringLiteral("#") + QString::fromStdString(run.colorHex)));
    if (run.fontSize > 0)
        format.setFontPointSize(run.fontSize);
    if (!run.link.empty()) {
        format.setAnchor(true);
        format.setAnchorHref(QString::fromStdString(run.link));
    }
    return format;
}

} // namespace

exports::RichText richTextFrom(const QTextDocument& document) {
    exports::RichText text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        exports::RichParagraph paragraph;
        paragraph.bullet = block.textList() != nullptr;
        paragraph.leftIndent = static_cast<int>(block.blockFormat().leftMargin()) * twipsPerPixel;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().isValid())
                paragraph.runs.push_back(runFrom(it.fragment(), document.defaultFont()));
        }
        text.paragraphs.push_back(std::move(paragraph));
    }
    return text;
}

void fillDocument(QTextDocument& document, const exports::RichText& text) {
    document.clear();
    QTextCursor cursor(&document);
    QTextList* list = nullptr;
    bool first = true;
    for (const auto& paragraph : text.paragraphs) {
        if (!first)
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        first = false;
        QTextBlockFormat block;
        block.setLeftMargin(paragraph.leftIndent / twipsPerPixel);
        cursor.setBlockFormat(block);
        if (paragraph.bullet) {
            if (list)
                list->add(cursor.block());
            else
                list = cursor.createList(QTextListFormat::ListDisc);
        } else {
            list = nullptr;
        }
        for (const auto& run : paragraph.runs)
            cursor.insertText(QString::fromStdString(run.text), formatFor(run));
    }
}

std::string rtfFrom(const QTextDocument& document) {
    return exports::RtfWriter::write(richTextFrom(document));
}

void loadDocument(QTextDocument& document, const std::string& plain, const std::optional<std::string>& rtf) {
    if (rtf && !rtf->empty()) {
        exports::RichText text = exports::RtfReader::read(*rtf);
        // A twin written for another text (edited elsewhere as plain text) must not hide the words.
        if (text.plainText() == plain) {
            fillDocument(document, text);
            return;
        }
    }
    document.setPlainText(QString::fromStdString(plain));
}

} // namespace quillon::desktop
