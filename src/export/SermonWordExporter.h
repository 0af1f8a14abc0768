#pragma once

#include "export/OfficePackage.h"
#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

namespace quillon::exports {

/// A sermon as a Word document (.docx): title, metadata lines, the numbered outline with each
/// passage's text, and a "Scripture Index" table of every attached passage.
class SermonWordExporter : public SermonExporter {
public:
    explicit SermonWordExporter(const VerseTextSource& verses) : m_verses(verses) {}

    /// The seven parts in packing order, "[Content_Types].xml" first.
    OfficePackage package(const model::SermonNote& sermon) const;
    /// The body part, word/document.xml.
    std::string documentXml(const model::SermonNote& sermon) const;

    std::string render(const model::SermonNote& sermon) const override;
    std::string_view extension() const override { return "docx"; }
    std::string failureSentence() const override { return "Quillon could not create the Word document."; }

private:
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
