#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// One of the 66 books in canonical order, with the King James versification.
struct BibleBook {
    /// Canonical position, 1 to 66.
    std::int64_t id = 0;
    /// The full English name ("1 Corinthians").
    std::string name;
    /// The short form that also forms verse keys ("1Cor"; Deuteronomy is "Due").
    std::string abbreviation;
    /// Verses per chapter; the number of chapters is the length.
    std::vector<int> chapters;

    int chapterCount() const { return static_cast<int>(chapters.size()); }
    /// Verses in `chapter` (1-based); 0 outside the book.
    int verseCount(int chapter) const;

    bool operator==(const BibleBook&) const = default;
};

/// The 66 books in canonical order, built once and shared.
const std::vector<BibleBook>& allBibleBooks();
/// The book at canonical position `id`; nullptr outside 1…66.
const BibleBook* bibleBookWithId(std::int64_t id);
/// The book whose table abbreviation is exactly `abbreviation` (case-sensitive, as in verse keys).
const BibleBook* bibleBookWithAbbreviation(std::string_view abbreviation);
/// The lower-case aliases the reference parser accepts for the book with canonical position `id`.
std::span<const std::string_view> bibleBookAliases(std::int64_t id);

/// JSON keys "id", "name", "abbreviation", "chapters", in that order.
nlohmann::ordered_json encodeBibleBook(const BibleBook& book);

} // namespace quillon::scripture

template <>
struct std::hash<quillon::scripture::BibleBook> {
    std::size_t operator()(const quillon::scripture::BibleBook& book) const noexcept;
};
