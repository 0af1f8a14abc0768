#pragma once

#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

namespace quillon::exports {

/// A sermon as Markdown: title, metadata, topics as "##" headings, sub-topics as "###", notes as
/// paragraphs, passages as quotations with their text and version, then the manuscript.
class SermonMarkdownExporter : public SermonExporter {
public:
    explicit SermonMarkdownExporter(const VerseTextSource& verses) : m_verses(verses) {}

    std::string render(const model::SermonNote& sermon) const override;
    std::string_view extension() const override { return "md"; }
    std::string failureSentence() const override { return "Quillon could not create the Markdown file."; }

    /// Text with the characters Markdown would read as formatting escaped by a backslash.
    static std::string escapeMarkdown(std::string_view text);

private:
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
