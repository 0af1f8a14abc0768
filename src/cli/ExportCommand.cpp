#include "cli/ExportCommand.h"

#include "cli/ExportVerses.h"
#include "export/ExportError.h"
#include "export/SermonMarkdownExporter.h"
#include "export/SermonPdfExporter.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"
#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "platform/Paths.h"

#include <ostream>

namespace quillon::cli {

namespace {

/// The sermon's own file in the library: <root>/Sermons/<UUID>.json.
model::SermonNote loadSermon(const CommandContext& context, const std::string& id) {
    const auto uuid = model::Uuid::parse(id);
    if (!uuid)
        throw UserError("“" + id + "” is not a sermon id.");
    const std::filesystem::path root = context.library.value_or(platform::applicationDataFolder());
    const std::filesystem::path file = root / "Sermons" / (uuid->text() + ".json");
    std::string bytes;
    try {
        bytes = platform::readFile(file);
    } catch (const platform::FileError&) {
        throw UserError("Quillon could not find a sermon with the id " + uuid->text() + ".");
    }
    try {
        return model::decodeSermonFile(bytes);
    } catch (const model::DecodingError& error) {
        throw UserError("Quillon could not read the sermon " + uuid->text() + ": " + error.what());
    }
}

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

int ExportCommand::execute(CommandContext& context) {
    const model::SermonNote sermon = loadSermon(context, m_id);
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
