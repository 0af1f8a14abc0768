#pragma once

#include "export/RichText.h"
#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

namespace quillon::exports {

/// A sermon as an RTF document. Notes come from their rich-text twins (`detailsRTFData`,
/// `notesRTFData`) when present, so their formatting survives; otherwise from the plain text.
class SermonRtfExporter : public SermonExporter {
public:
    explicit SermonRtfExporter(const VerseTextSource& verses) : m_verses(verses) {}

    RichText richText(const model::SermonNote& sermon) const;

    std::string render(const model::SermonNote& sermon) const override;
    std::string_view extension() const override { return "rtf"; }
    std::string failureSentence() const override { return "Quillon could not create the rich-text document."; }

private:
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
