#include "cli/ImportCommand.h"

#include "export/DocumentImporter.h"

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

int ImportCommand::runOnDesk(CommandContext& context, Desk& desk) {
    auto& controller = desk.controller();
    // A document becomes a new draft: it has no identity of its own that could match a sermon.
    if (exports::DocumentImporter::isDocument(m_file)) {
        const auto draft = controller.importOutlineDocument(m_file);
        const int status = desk.report(context, draft ? nlohmann::ordered_json{{"imported", 1}, {"id", draft->text()}}
                                                      : nlohmann::ordered_json::object());
        // The draft's id last on its own line, as `new` prints it, for the edits that follow.
        if (draft && !context.json)
            context.out << draft->text() << "\n";
        return status;
    }
    const model::SermonImportMode mode = m_mode == "replace"  ? model::SermonImportMode::replaceDuplicates
                                         : m_mode == "copies" ? model::SermonImportMode::importCopies
                                                              : model::SermonImportMode::skipDuplicates;
    const auto count = controller.importArchive(m_file, mode);
    return desk.report(context,
                       count ? nlohmann::ordered_json{{"imported", *count}} : nlohmann::ordered_json::object());
}

} // namespace quillon::cli
