#include "cli/ExportArchiveCommand.h"

#include "cli/OutputPath.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"

#include <ostream>

namespace quillon::cli {
namespace fs = std::filesystem;

void ExportArchiveCommand::configure(CLI::App& command) {
    command
        .add_option("-o,--output", m_output, "Where to write the archive (a file, or a folder for its default name)")
        ->type_name("FILE");
}

int ExportArchiveCommand::run(CommandContext& context, Library& library) {
    auto& manager = library.manager();
    std::optional<fs::path> written;
    std::error_code error;
    if (!m_output) {
        written = manager.exportArchive();
    } else if (fs::is_directory(*m_output, error)) {
        written = manager.exportArchive(*m_output);
    } else {
        try {
            platform::writeFileAtomically(
                *m_output,
                model::encodeArchive(manager.sermons(), model::toDateTime(std::chrono::system_clock::now())));
            written = fs::path(*m_output);
        } catch (const std::exception&) {
            written.reset();
        }
    }
    if (!written)
        throw UserError("Quillon could not prepare the sermon archive.");
    printOutputPath(context, *written);
    return 0;
}

} // namespace quillon::cli
