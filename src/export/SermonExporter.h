#pragma once

#include "model/SermonNote.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon::exports {

/// One export format. Subclasses render a sermon into the file's bytes; writing, naming and the
/// atomic replacement of an existing file are shared.
class SermonExporter {
public:
    virtual ~SermonExporter() = default;

    /// The file's bytes. Throws ExportError.
    virtual std::string render(const model::SermonNote& sermon) const = 0;
    /// "docx", "pptx", "md", "rtf", "pdf".
    virtual std::string_view extension() const = 0;
    /// The sentence shown under "Export Failed".
    virtual std::string failureSentence() const = 0;

    /// Writes the export into `folder` under ExportFilename's name and returns its location,
    /// replacing an existing file atomically. Throws ExportError.
    std::filesystem::path exportSermon(const model::SermonNote& sermon, const std::filesystem::path& folder) const;
    /// Writes the export to exactly `file`. Throws ExportError.
    void exportSermonTo(const model::SermonNote& sermon, const std::filesystem::path& file) const;
};

} // namespace quillon::exports
