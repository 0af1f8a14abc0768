#pragma once

#include "export/RichText.h"

#include <optional>
#include <string>

class QTextDocument;

namespace quillon::desktop {

/// Reads an editor's document as the project's rich text (paragraphs, bullets, bold, italic,
/// underline, colour, size, links). Numbered lists are kept as bulleted paragraphs, the one list
/// kind the RTF twin holds.
exports::RichText richTextFrom(const QTextDocument& document);
/// Fills `document` with `text`, replacing what it held.
void fillDocument(QTextDocument& document, const exports::RichText& text);

/// The document's RTF twin, as the controller stores it beside the plain text.
std::string rtfFrom(const QTextDocument& document);
/// Fills `document` from a stored text: the RTF twin when it holds the same words as the plain
/// text (RichText::plainText), else the plain text.
void loadDocument(QTextDocument& document, const std::string& plain, const std::optional<std::string>& rtf);

} // namespace quillon::desktop
