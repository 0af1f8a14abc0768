#include "cli/DocumentCommand.h"

#include "cli/OutputPath.h"
#include "model/SermonDocument.h"
#include "platform/FileError.h"
#include "platform/Paths.h"

namespace quillon::cli {

void DocumentCommand::configure(CLI::App& command) {
    command.add_option("ID", m_id, "The sermon's id (or a unique beginning of it)")->required();
    command.add_option("-o,--output", m_folder, "The folder to write into")->type_name("DIR");
}

int DocumentCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote& sermon = library.find(m_id);
    std::filesystem::path folder = m_folder ? std::filesystem::path(*m_folder) : platform::temporaryFolder();
    try {
        printOutputPath(context, model::writeSermonDocument(sermon, folder));
    } catch (const platform::FileError& failure) {
        throw UserError(std::string("Quillon could not write the document: ") + failure.what());
    }
    return 0;
}

} // namespace quillon::cli
