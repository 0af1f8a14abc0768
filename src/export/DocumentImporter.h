#pragma once

#include "export/OutlineParser.h"
#include "model/DateTime.h"
#include "model/SermonNote.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// Brings an existing document (.docx, .md, .txt, .rtf) in as a draft sermon through one
/// OutlineParser. Sermon files (.quillet, .vrnsermons) keep their own readers in the model.
///
/// Limits: a Word package may be `DocxReader::maximumFileBytes`, any other document
/// `maximumTextBytes`; each reader then works in time and memory linear in what it was given
/// (their headers say how). Text that is not text (NUL bytes, control characters) is refused.
class DocumentImporter {
public:
    /// Far beyond any sermon, small enough that the readers' per-character overhead stays modest.
    static constexpr std::size_t maximumTextBytes = 16u << 20;

    /// The size limit for a kind ("docx", "md", "txt", "rtf").
    static std::size_t maximumBytes(std::string_view kind);

    explicit DocumentImporter(ReferenceRecognizer recognize) : m_parser(std::move(recognize)) {}

    /// True for the extensions this importer reads (compared without regard to case).
    static bool isDocument(const std::filesystem::path& file);

    /// A draft with a fresh id, dated `now` unless the document names its date, titled by the
    /// document or else by the file's name. Throws ExportError with a sentence for the user.
    model::SermonNote importFile(const std::filesystem::path& file, model::DateTime now) const;

    /// The same from bytes already read; `extension` is "docx", "md", "txt" or "rtf".
    model::SermonNote importBytes(std::string_view bytes, std::string_view extension, std::string_view fallbackTitle,
                                  model::DateTime now) const;

private:
    OutlineParser m_parser;
};

} // namespace quillon::exports
