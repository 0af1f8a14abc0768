#include "app/ExportFormat.h"

#include "export/SermonMarkdownExporter.h"
#include "export/SermonPdfExporter.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"

namespace quillon::app {

std::string_view exportedTitle(ExportFormat format) {
    switch (format) {
    case ExportFormat::pdf:
        return "PDF Exported";
    case ExportFormat::powerPoint:
        return "PowerPoint Exported";
    case ExportFormat::word:
        return "Word Exported";
    case ExportFormat::rtf:
        return "RTF Exported";
    case ExportFormat::markdown:
        return "Markdown Exported";
    } // no default case, so the compiler can warn about missing cases
    return {};
}

std::string_view exportFailureSentence(ExportFormat format) {
    switch (format) {
    case ExportFormat::pdf:
        return "Quillon could not create the PDF.";
    case ExportFormat::powerPoint:
        return "Quillon could not create the PowerPoint file.";
    case ExportFormat::word:
        return "Quillon could not create the Word document.";
    case ExportFormat::rtf:
        return "Quillon could not create the RTF document.";
    case ExportFormat::markdown:
        return "Quillon could not create the Markdown file.";
    } // no default case, so the compiler can warn about missing cases
    return {};
}

std::optional<ExportFormat> exportFormatFromExtension(std::string_view extension) {
    if (extension == "pdf")
        return ExportFormat::pdf;
    if (extension == "pptx")
        return ExportFormat::powerPoint;
    if (extension == "docx")
        return ExportFormat::word;
    if (extension == "rtf")
        return ExportFormat::rtf;
    if (extension == "md")
        return ExportFormat::markdown;
    return std::nullopt;
}

std::unique_ptr<exports::SermonExporter> makeExporter(ExportFormat format, const exports::VerseTextSource& verses) {
    switch (format) {
    case ExportFormat::pdf:
        return std::make_unique<exports::SermonPdfExporter>(verses);
    case ExportFormat::powerPoint:
        return std::make_unique<exports::SermonPowerPointExporter>(verses);
    case ExportFormat::word:
        return std::make_unique<exports::SermonWordExporter>(verses);
    case ExportFormat::rtf:
        return std::make_unique<exports::SermonRtfExporter>(verses);
    case ExportFormat::markdown:
        return std::make_unique<exports::SermonMarkdownExporter>(verses);
    } // no default case, so the compiler can warn about missing cases
    return nullptr;
}

} // namespace quillon::app
