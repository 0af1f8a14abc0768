#include "cli/ImportCommand.h"

#include "export/DocumentImporter.h"
#include "export/ExportError.h"
#include "export/LibraryReferences.h"
#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/FileError.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void ImportCommand::configure(CLI::App& command) {
    command
        .add_option("FILE", m_file, "A .quillet document, a .vrnsermons archive, or a .docx, .md, .txt or .rtf outline")
        ->required();
    command
        .add_option("--mode", m_mode,
                    "For sermons already in the library: skip them (default), replace them, or import copies")
        ->check(CLI::IsMember({"skip", "replace", "copies"}));
}

int ImportCommand::run(CommandContext& context, Library& library) {
    model::SermonImportMode mode = m_mode == "replace"  ? model::SermonImportMode::replaceDuplicates
                                   : m_mode == "copies" ? model::SermonImportMode::importCopies
                                                        : model::SermonImportMode::skipDuplicates;
    if (exports::DocumentImporter::isDocument(m_file))
        return importDocument(context, library);

    std::vector<model::SermonNote> incoming;
    try {
        incoming = model::readSermonImportFile(m_file);
    } catch (const platform::FileError& failure) {
        throw UserError(std::string("Quillon could not read the file: ") + failure.what());
    } catch (const model::DecodingError& failure) {
        throw UserError("Quillon could not read “" + m_file + "” as a sermon: " + failure.what());
    }
    if (incoming.empty())
        throw UserError("Quillon found no sermons in “" + m_file + "”.");

    auto& manager = library.manager();
    int count = manager.importSermons(incoming, mode);
    if (context.json)
        context.out << nlohmann::ordered_json{{"imported", count}, {"status", manager.lastSyncStatus()}}.dump(2)
                    << "\n";
    else
        context.out << manager.lastSyncStatus() << "\n";
    return 0;
}

int ImportCommand::importDocument(CommandContext& context, Library& library) {
    // A document becomes a new draft: it has no identity of its own that could match a sermon.
    model::SermonNote draft;
    try {
        exports::DocumentImporter importer(exports::libraryReferenceRecognizer());
        draft = importer.importFile(m_file, model::toDateTime(std::chrono::system_clock::now()));
    } catch (const exports::ExportError& failure) {
        throw UserError(failure.what());
    }
    auto& manager = library.manager();
    if (!manager.add(draft))
        throw UserError("Quillon could not save the imported draft “" + draft.title + "”.");
    if (context.json)
        context.out << nlohmann::ordered_json{{"imported", 1}, {"id", draft.id.text()}, {"title", draft.title}}.dump(2)
                    << "\n";
    else
        context.out << "Imported “" << draft.title << "” as " << draft.id.text() << "\n";
    return 0;
}

} // namespace quillon::cli
