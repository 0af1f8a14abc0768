#pragma once

#include <filesystem>
#include <string>

namespace quillon::screens {

/// How the live page looks, read from a JSON file the preacher edits. Every value is checked
/// before it reaches the page's style sheet: a value that is missing, of the wrong kind or
/// carrying characters a style sheet could be tricked with keeps its default.
struct LivePageTheme {
    /// "fontFamily": a CSS font list ("Noto Serif, serif").
    std::string fontFamily = "Noto Serif, DejaVu Serif, serif";
    /// "fontSize" / "minimumFontSize": pixels; long passages shrink towards the minimum, then split.
    int fontSize = 44;
    int minimumFontSize = 26;
    /// "textColour", "referenceColour", "panelColour": CSS colours.
    std::string textColour = "#ffffff";
    std::string referenceColour = "#ffd66b";
    std::string panelColour = "rgba(10, 20, 40, 0.82)";
    /// "transparentBackground": true for an overlay in streaming software; else "backgroundColour".
    bool transparentBackground = true;
    std::string backgroundColour = "#000000";
    /// "position": "bottom", "top" or "middle".
    std::string position = "bottom";
    /// "width": the panel's width in percent of the page (20 to 100).
    int width = 90;
    /// "maximumLines": lines of text the lower third may take before it shrinks or splits.
    int maximumLines = 3;

    /// The file's JSON text (used to write the default file).
    std::string toJson() const;
    /// The theme in `json`; anything unusable keeps its default.
    static LivePageTheme fromJson(const std::string& json);
    /// Reads `file`; when it does not exist, writes the default theme there first so the preacher
    /// finds a file to edit. Never throws: an unreadable file gives the default theme.
    static LivePageTheme load(const std::filesystem::path& file);
    /// Where the theme lives: live-page-theme.json in Quillon's configuration folder.
    static std::filesystem::path defaultFile();
};

} // namespace quillon::screens
