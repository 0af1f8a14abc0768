#pragma once

#include "export/OutlineParser.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// Reads Markdown as outline lines: headings become hints by their depth in the document (the
/// first "#" heading is the title, the shallowest remaining level the topics, deeper levels the
/// sub-topics), quotations become quotation hints, list markers, emphasis, links and escapes are
/// reduced to their text.
///
/// Limits: one pass over the text with hand-written matchers, so time and memory are linear in
/// the input whatever its line lengths; nothing is ever matched by a regular expression.
class MarkdownReader {
public:
    static std::vector<OutlineLine> read(std::string_view markdown);

    /// Inline Markdown reduced to the text it renders: links and images to their text, "**" and
    /// "__" and code ticks dropped, backslash escapes and the basic entities resolved, and a
    /// trailing backslash (a hard line break) removed.
    static std::string inlineText(std::string_view text);
};

} // namespace quillon::exports
