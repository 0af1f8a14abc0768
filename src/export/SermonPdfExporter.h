#pragma once

#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

namespace quillon::exports {

/// A printable hand-out of a sermon: US Letter with 0.75-inch margins, the title, metadata, the
/// outline indented by level with each passage's text, the manuscript, and "Page N of M" at the
/// foot of every page. Laid out with Pango on a cairo PDF surface in DejaVu fonts. A heading (a
/// point, a sub-point, a passage's reference) never ends a page: it moves over with the first
/// line of what it introduces.
class SermonPdfExporter : public SermonExporter {
public:
    static constexpr double pageWidth = 612;  // points, 8.5 inches
    static constexpr double pageHeight = 792; // points, 11 inches
    static constexpr double margin = 54;      // points, 0.75 inch

    explicit SermonPdfExporter(const VerseTextSource& verses) : m_verses(verses) {}

    std::string render(const model::SermonNote& sermon) const override;
    std::string_view extension() const override { return "pdf"; }
    std::string failureSentence() const override { return "Quillon could not create the PDF hand-out."; }

private:
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
