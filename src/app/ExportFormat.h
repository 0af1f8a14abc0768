#pragma once

#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

#include <memory>
#include <optional>
#include <string_view>

namespace quillon::app {

/// The formats one sermon can be exported to.
enum class ExportFormat { pdf, powerPoint, word, rtf, markdown };

/// The toast title after a successful export ("Word Exported").
std::string_view exportedTitle(ExportFormat format);
/// The sentence under "Export Failed" ("Quillon could not create the Word document.").
std::string_view exportFailureSentence(ExportFormat format);
/// The format written with `extension` ("docx", "pptx", "md", "rtf", "pdf"); else nothing.
std::optional<ExportFormat> exportFormatFromExtension(std::string_view extension);
/// The exporter for `format`, quoting passages from `verses` (which must outlive it).
std::unique_ptr<exports::SermonExporter> makeExporter(ExportFormat format, const exports::VerseTextSource& verses);

} // namespace quillon::app
