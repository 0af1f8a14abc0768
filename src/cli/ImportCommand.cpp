#include "cli/ImportCommand.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/FileError.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void ImportCommand::configure(CLI::App& command) {
    command.add_option("FILE", m_file, "The document or archive to import")->required();
    command
        .add_option("--mode", m_mode,
                    "For sermons already in the library: skip them (default), replace them, or import copies")
        ->check(CLI::IsMember({"skip", "replace", "copies"}));
}

int ImportCommand::run(CommandContext& context, Library& library) {
    model::SermonImportMode mode = m_mode == "replace"  ? model::SermonImportMode::replaceDuplicates
                                   : m_mode == "copies" ? model::SermonImportMode::importCopies
                                                        : model::SermonImportMode::skipDuplicates;
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

} // namespace quillon::cli
