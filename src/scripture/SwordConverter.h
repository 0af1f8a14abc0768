#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillon::scripture {

/// A SWORD module could not be converted; what() is the sentence to show.
class SwordConversionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What a conversion wrote: how many verses, and the verse keys the module has no text for.
struct SwordConversion {
    std::size_t verseCount = 0;
    std::vector<std::string> missingVerses;
};

/// Turns an installed SWORD Bible module into Quillon's text-file format: one verse a line,
/// "<abbreviation> <chapter>:<verse>|<plain text>", King James versification, without Strong's
/// numbers, morphology, notes, headings or pilcrows.
class SwordConverter {
public:
    /// `swordPath`: a folder holding mods.d and modules; nothing uses SWORD's own search
    /// ($SWORD_PATH, ~/.sword, /usr/share/sword).
    explicit SwordConverter(std::optional<std::filesystem::path> swordPath = std::nullopt);

    /// The module's verses as the text file's contents; throws SwordConversionError when the
    /// module is not installed or is not a Bible.
    std::string convert(const std::string& moduleName, SwordConversion& report) const;
    /// Converts and writes `target` atomically.
    SwordConversion convertToFile(const std::string& moduleName, const std::filesystem::path& target) const;

    /// Reduces rendered verse text to the stored form: one line, single spaces, no pilcrows.
    static std::string cleanedText(std::string_view rendered);

private:
    std::optional<std::filesystem::path> m_swordPath;
};

} // namespace quillon::scripture
