#pragma once

#include <optional>
#include <string>

namespace quillon::cli {

/// A text read for the notes or details: the plain text, and the rich twin when it came as RTF.
struct ManuscriptInput {
    std::string text;
    std::optional<std::string> rtf;
};

/// Reads `file` ("-" is standard input). A file whose name ends in ".rtf", or whose bytes begin
/// with "{\rtf", is kept whole as the rich twin and its plain text is derived from it. Throws
/// UserError when the file cannot be read.
ManuscriptInput readManuscriptInput(const std::string& file);

} // namespace quillon::cli
