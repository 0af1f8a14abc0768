#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// Invisible break opportunities (U+200B) inside long camel-case words so narrow columns can wrap them.
/// Text that is stored, compared or exported must never carry them.
class CompoundWordBreaking {
public:
    CompoundWordBreaking() = delete;

    /// "SermonNotes" -> "Sermon\u200BNotes", "PDFExport" -> "PDF\u200BExport"; "iOS" stays.
    static std::string insertingBreaks(std::string_view text);
    static std::string removingBreaks(std::string_view text);
};

} // namespace orvane
