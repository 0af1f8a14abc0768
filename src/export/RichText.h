#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// A stretch of text with one look. Defaults mean "as the surrounding text".
struct RichRun {
    std::string text;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    /// "RRGGBB"; empty for the default colour.
    std::string colorHex;
    /// Points; 0 for the default size.
    double fontSize = 0;
    /// A hyperlink target ("https://…", "quillscripture://<UUID>"); empty when the run is no link.
    std::string link;

    bool operator==(const RichRun&) const = default;
};

struct RichParagraph {
    std::vector<RichRun> runs;
    bool bullet = false;
    /// Left indent in twips, not counting a bullet's own hanging indent.
    int leftIndent = 0;

    std::string plainText() const;
    bool operator==(const RichParagraph&) const = default;
};

/// The rich-text twins of a sermon's texts (`notesRTFData`, `detailsRTFData`) once read.
struct RichText {
    std::vector<RichParagraph> paragraphs;

    /// Paragraphs joined with "\n"; bullet paragraphs start with "• ".
    std::string plainText() const;
    /// One unformatted paragraph per line.
    static RichText fromPlainText(std::string_view text);

    bool operator==(const RichText&) const = default;
};

} // namespace quillon::exports
