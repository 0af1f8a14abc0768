#include "cli/CoverCommand.h"

#include "platform/AtomicFile.h"
#include "platform/FileError.h"

namespace quillon::cli {

void CoverCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    auto* image = command.add_option("IMAGE", m_image, "A JPEG image");
    command.add_flag("--remove", m_remove, "Remove the cover image")->excludes(image);
}

int CoverCommand::runOnDesk(CommandContext& context, Desk& desk) {
    const model::Uuid sermonId = desk.sermon(m_sermon).id;
    if (m_remove) {
        desk.controller().removeCoverImage(sermonId);
        return desk.report(context);
    }
    if (!m_image)
        throw UserError("Name a JPEG image, or use --remove.");
    std::string bytes;
    try {
        bytes = platform::readFile(*m_image);
    } catch (const platform::FileError& failure) {
        throw UserError(std::string("Quillon could not read the image: ") + failure.what());
    }
    desk.controller().setCoverImage(sermonId, bytes);
    return desk.report(context);
}

} // namespace quillon::cli
