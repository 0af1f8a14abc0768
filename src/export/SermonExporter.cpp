#include "export/SermonExporter.h"

#include "export/ExportError.h"
#include "export/ExportFilename.h"
#include "platform/AtomicFile.h"

#include <spdlog/spdlog.h>

namespace quillon::exports {

std::filesystem::path SermonExporter::exportSermon(const model::SermonNote& sermon,
                                                   const std::filesystem::path& folder) const {
    std::filesystem::path file = folder / ExportFilename::make(sermon.title, extension());
    exportSermonTo(sermon, file);
    return file;
}

void SermonExporter::exportSermonTo(const model::SermonNote& sermon, const std::filesystem::path& file) const {
    const std::string bytes = render(sermon);
    try {
        platform::writeFileAtomically(file, bytes);
    } catch (const platform::FileError& error) {
        spdlog::error("Writing export {} failed: {}", file.string(), error.what());
        throw ExportError(failureSentence());
    }
}

} // namespace quillon::exports
