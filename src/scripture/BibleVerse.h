#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace quillon::scripture {

/// The verse key "Joh 3:16": abbreviation, one space, chapter, ":", verse. Every verse dictionary
/// and the word index are keyed by it.
std::string verseKey(std::string_view bookAbbreviation, int chapter, int verse);

/// One verse of one version.
struct BibleVerse {
    std::string bookAbbreviation;
    int chapter = 0;
    int verse = 0;
    /// Trimmed verse text.
    std::string text;

    /// The verse key.
    std::string id() const { return verseKey(bookAbbreviation, chapter, verse); }

    bool operator==(const BibleVerse&) const = default;
};

/// JSON keys "bookAbbreviation", "chapter", "verse", "text".
nlohmann::ordered_json encodeBibleVerse(const BibleVerse& verse);

} // namespace quillon::scripture
