#pragma once

#include "export/OutlineParser.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// Reads the paragraphs of a Word document's body as outline lines (heading styles become hints,
/// tables are left out). A hostile file is refused with ExportError before it can use much
/// memory: entries pointing outside the package, more data than the limits below, XML that
/// declares entities.
///
/// Limits: the package at most `maximumFileBytes`, at most `maximumEntries` entries, the body part
/// at most `maximumDocumentBytes` once inflated. The XML parser and the walk over the body are
/// iterative, so nesting depth (content controls inside content controls…) costs no stack; time
/// and memory are linear in the body part.
class DocxReader {
public:
    static constexpr std::size_t maximumFileBytes = 64u << 20;
    static constexpr std::size_t maximumDocumentBytes = 16u << 20;
    static constexpr std::size_t maximumEntries = 4096;
    /// Deflate reaches about 1:1000 on pathological input; real documents stay far below.
    static constexpr std::size_t maximumExpansion = 200;

    /// Throws ExportError.
    static std::vector<OutlineLine> read(std::string_view packageBytes);
};

} // namespace quillon::exports
