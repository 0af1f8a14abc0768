#include "cli/ExportCommand.h"

#include "cli/ExportVerses.h"
#include "export/ExportError.h"
#include "export/SermonMarkdownExporter.h"
#include "export/SermonPdfExporter.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"
#include "platform/Paths.h"

#include <ostream>

namespace quillon::cli {

namespace {

std::unique_ptr<exports::SermonExporter> exporterFor(const std::string& format,
                                                     const exports::VerseTextSource& verses) {
    if (format == "docx")
        return std::make_unique<exports::SermonWordExporter>(verses);
    if (format == "pptx")
        return std::make_unique<exports::SermonPowerPointExporter>(verses);
    if (format == "md")
        return std::make_unique<exports::SermonMarkdownExporter>(verses);
    if (format == "rtf")
        return std::make_unique<exports::SermonRtfExporter>(verses);
    return std::make_unique<exports::SermonPdfExporter>(verses);
}

} // namespace

void ExportCommand::configure(CLI::App& command) {
    command.add_option("id", m_id, "The sermon's id")->required();
    command.add_option("--format", m_format, "docx, pptx, md, rtf or pdf")
        ->required()
        ->check(CLI::IsMember({"docx", "pptx", "md", "rtf", "pdf"}));
    command.add_option("-o,--output", m_output, "File or folder to write (default: the temporary folder)")
        ->type_name("PATH");
}

int ExportCommand::run(CommandContext& context, Library& library) {
    // Through the store, so the sync folder chosen in preferences is honoured like everywhere else.
    const model::SermonNote& sermon = library.find(m_id);
    const auto verses = exportVerseSource();
    const auto exporter = exporterFor(m_format, *verses);
    try {
        std::filesystem::path written;
        std::error_code ignored;
        if (m_output.empty()) {
            written = exporter->exportSermon(sermon, platform::temporaryFolder());
        } else if (std::filesystem::is_directory(m_output, ignored)) {
            written = exporter->exportSermon(sermon, m_output);
        } else {
            written = m_output;
            exporter->exportSermonTo(sermon, written);
        }
        context.out << written.string() << "\n";
        return 0;
    } catch (const exports::ExportError& error) {
        context.err << "Export Failed\n" << error.what() << "\n";
        return 1;
    }
}

} // namespace quillon::cli
