#include "scripture/StyleGuideAbbreviations.h"

#include <array>
#include <utility>

namespace quillon::scripture {

namespace {

// Only the forms the book table's aliases, unique prefixes and near misses do not already read.
// Chicago: the shorter forms ("Jgs", "Prv", "Sg", "Mi", "1 Tm", "1 Pt", "1 Thes", "Phlm").
// SBL: "Qoh", "Cant", "Pss", "Phlm". MLA: "Song Sol.". USFM: "SNG", "NAM" (the table reads "MRK" as Mark
// itself and "JOL" as Job). Common in sermon notes: "Zach", "Jdgs", "Le", "Psm", "Pslm", "Songs", "Apoc".
constexpr std::array<std::pair<std::string_view, int>, 34> abbreviations = {{
    {"le", 3},     {"jgs", 7},    {"jdgs", 7},   {"rt", 8},    {"1sm", 9},   {"2sm", 10},      {"1kg", 11},
    {"2kg", 12},   {"pss", 19},   {"psm", 19},   {"pslm", 19}, {"prv", 20},  {"qoh", 21},      {"sg", 22},
    {"sng", 22},   {"cant", 22},  {"songs", 22}, {"jr", 24},   {"mi", 33},   {"nam", 34},      {"zach", 38},
    {"1thes", 52}, {"2thes", 53}, {"1tm", 54},   {"2tm", 55},  {"phlm", 57}, {"phmn", 57},     {"1pt", 60},
    {"2pt", 61},   {"1jhn", 62},  {"2jhn", 63},  {"3jhn", 64}, {"apoc", 66}, {"song sol", 22},
}};

} // namespace

std::span<const std::pair<std::string_view, int>> styleGuideAbbreviations() {
    return abbreviations;
}

const BibleBook* bookForStyleGuideAbbreviation(std::string_view compactKey) {
    for (const auto& [abbreviation, id] : abbreviations)
        if (abbreviation == compactKey)
            return bibleBookWithId(id);
    return nullptr;
}

} // namespace quillon::scripture
