#include "screens/OsisReference.h"

#include "scripture/BibleBook.h"
#include "scripture/ReferenceParser.h"

#include <array>
#include <charconv>
#include <vector>

namespace quillon::screens {

namespace {

// OSIS book identifiers in canonical order, the order of the book table.
constexpr std::array<std::string_view, 66> osisBooks = {
    "Gen",   "Exod", "Lev",  "Num",  "Deut", "Josh", "Judg",  "Ruth",   "1Sam",   "2Sam",  "1Kgs",
    "2Kgs",  "1Chr", "2Chr", "Ezra", "Neh",  "Esth", "Job",   "Ps",     "Prov",   "Eccl",  "Song",
    "Isa",   "Jer",  "Lam",  "Ezek", "Dan",  "Hos",  "Joel",  "Amos",   "Obad",   "Jonah", "Mic",
    "Nah",   "Hab",  "Zeph", "Hag",  "Zech", "Mal",  "Matt",  "Mark",   "Luke",   "John",  "Acts",
    "Rom",   "1Cor", "2Cor", "Gal",  "Eph",  "Phil", "Col",   "1Thess", "2Thess", "1Tim",  "2Tim",
    "Titus", "Phlm", "Heb",  "Jas",  "1Pet", "2Pet", "1John", "2John",  "3John",  "Jude",  "Rev"};

/// A BibleSync reference is at most a packet long; anything longer is not one.
constexpr std::size_t longestReference = 1280;

/// One end of an OSIS reference: an optional book and one or two numbers.
struct Point {
    std::string_view book;
    std::vector<int> numbers;
};

std::optional<int> number(std::string_view text) {
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 1)
        return std::nullopt;
    return value;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (parts.size() < 4) {
        const auto at = text.find(separator, start);
        parts.push_back(text.substr(start, at == std::string_view::npos ? std::string_view::npos : at - start));
        if (at == std::string_view::npos)
            break;
        start = at + 1;
    }
    return parts;
}

/// "Book.C.V", "Book.C" or, at a range's end, "C.V" or a single number without the book.
std::optional<Point> point(std::string_view text) {
    auto parts = split(text, '.');
    Point result;
    if (!number(parts.front())) {
        result.book = parts.front();
        parts.erase(parts.begin());
    }
    if (parts.empty() || parts.size() > 2)
        return std::nullopt;
    for (auto part : parts) {
        auto value = number(part);
        if (!value)
            return std::nullopt;
        result.numbers.push_back(*value);
    }
    return result;
}

const scripture::BibleBook* osisBook(std::string_view id) {
    for (std::size_t i = 0; i < osisBooks.size(); ++i)
        if (osisBooks[i] == id)
            return scripture::bibleBookWithId(static_cast<std::int64_t>(i) + 1);
    return scripture::resolveBookInTable(id);
}

std::optional<mesh::MeshScriptureReference> fromOsis(std::string_view text) {
    const auto ends = split(text, '-');
    if (ends.size() > 2)
        return std::nullopt;
    const auto first = point(ends[0]);
    if (!first || first->book.empty())
        return std::nullopt;
    const auto* book = osisBook(first->book);
    if (!book)
        return std::nullopt;
    const int chapter = first->numbers[0];
    std::string written = book->name + " " + std::to_string(chapter);
    const bool hasVerse = first->numbers.size() == 2;
    if (hasVerse)
        written += ":" + std::to_string(first->numbers[1]);
    if (ends.size() == 2 && hasVerse) {
        // A range that leaves its chapter or book (John.3.36-John.4.2) is shown from its first verse.
        const auto last = point(ends[1]);
        if (!last)
            return std::nullopt;
        const bool sameBook = last->book.empty() || osisBook(last->book) == book;
        std::optional<int> lastVerse;
        if (last->numbers.size() == 2 && last->numbers[0] == chapter)
            lastVerse = last->numbers[1];
        else if (last->numbers.size() == 1 && last->book.empty())
            lastVerse = last->numbers[0];
        if (sameBook && lastVerse)
            written += "-" + std::to_string(*lastVerse);
    }
    return mesh::MeshScriptureReference::parse(written);
}

} // namespace

std::optional<std::string> osisReference(std::string_view printed) {
    const auto reference = scripture::parse(printed);
    if (!reference || reference->book.id < 1 || reference->book.id > 66)
        return std::nullopt;
    const std::string book(osisBooks[static_cast<std::size_t>(reference->book.id - 1)]);
    const std::string chapter = book + "." + std::to_string(reference->chapter);
    const auto first = reference->firstVerse();
    const auto last = reference->lastVerse();
    if (!first)
        return chapter;
    std::string osis = chapter + "." + std::to_string(*first);
    if (last && *last != *first)
        osis += "-" + chapter + "." + std::to_string(*last);
    return osis;
}

std::optional<mesh::MeshScriptureReference> referenceFromOsis(std::string_view text) {
    if (text.empty() || text.size() > longestReference)
        return std::nullopt;
    const auto firstItem = text.substr(0, text.find_first_of(";, "));
    if (firstItem.find('.') != std::string_view::npos)
        if (auto reference = fromOsis(firstItem))
            return reference;
    return mesh::MeshScriptureReference::parse(std::string(text));
}

} // namespace quillon::screens
