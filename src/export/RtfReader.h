#pragma once

#include "export/RichText.h"

#include <cstddef>
#include <string_view>

namespace quillon::exports {

/// Reads RTF into rich text: paragraphs, bold, italic, underline, colour, font size, bullets and
/// hyperlinks (HYPERLINK fields). Everything else a word processor writes (style sheets, list
/// tables, pictures, document information) is skipped. Malformed input gives whatever text could
/// be read, never an error.
///
/// Limits: one pass, time linear in the input. Groups nest at most `maximumGroupDepth` deep
/// (deeper ones are read as part of their parent); a group costs a few dozen bytes whatever its
/// link, since links live in one table; a link target longer than `maximumLinkBytes` is dropped
/// and its text kept; all runs together copy at most `linkCopyBudget` bytes of link targets
/// (later runs keep their text without the link). At most `maximumRuns` runs and
/// `maximumParagraphs` paragraphs are made; beyond them changes of look are ignored and paragraph
/// breaks become line ends, so the plain text stays the same.
class RtfReader {
public:
    static constexpr std::size_t maximumGroupDepth = 512;
    static constexpr std::size_t maximumLinkBytes = 4096;
    static constexpr std::size_t maximumRuns = 1u << 18;
    static constexpr std::size_t maximumParagraphs = 1u << 17;
    static constexpr std::size_t linkCopyBudget(std::size_t inputBytes) { return 8 * inputBytes + (1u << 20); }

    static RichText read(std::string_view rtf);
};

} // namespace quillon::exports
