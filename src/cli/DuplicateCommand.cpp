#include "cli/DuplicateCommand.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void DuplicateCommand::configure(CLI::App& command) {
    command.add_option("ID", m_id, "The sermon's id (or a unique beginning of it)")->required();
}

int DuplicateCommand::run(CommandContext& context, Library& library) {
    // A copy, not a reference: duplicating grows the library and may move the original in memory.
    const model::SermonNote original = library.find(m_id);
    model::SermonNote copy = library.manager().duplicate(original);
    std::error_code error;
    if (!std::filesystem::exists(library.storage().sermonFile(copy.id), error))
        throw UserError("Quillon could not save the copy of “" + original.title + "”.");
    if (context.json)
        context.out << nlohmann::ordered_json{{"id", copy.id.text()}, {"title", copy.title}}.dump(2) << "\n";
    else
        context.out << copy.id.text() << "\n";
    return 0;
}

} // namespace quillon::cli
