#include "scripture/BibleBook.h"

#include <unordered_map>

namespace quillon::scripture {

namespace {

struct BookRow {
    std::int64_t id;
    const char* name;
    const char* abbreviation;
    std::vector<int> chapters;
    std::vector<std::string_view> aliases;
};

// King James versification (31,102 verses). The alias lists keep the common misspellings
// ("pslam", "phillipians", "revalation") on purpose: they are what people type.
const std::vector<BookRow>& bookRows() {
    static const std::vector<BookRow> rows = {
        {1,
         "Genesis",
         "Gen",
         {31, 25, 24, 26, 32, 22, 24, 22, 29, 32, 32, 20, 18, 24, 21, 16, 27, 33, 38, 18, 34, 24, 20, 67, 34,
          35, 46, 22, 35, 43, 55, 32, 20, 31, 29, 43, 36, 30, 23, 23, 57, 38, 34, 34, 28, 34, 31, 22, 33, 26},
         {"gen", "ge", "gn"}},
        {2,
         "Exodus",
         "Exo",
         {22, 25, 22, 31, 23, 30, 25, 32, 35, 29, 10, 51, 22, 31, 27, 36, 16, 27, 25, 26,
          36, 31, 33, 18, 40, 37, 21, 43, 46, 38, 18, 35, 23, 35, 35, 38, 29, 31, 43, 38},
         {"exo", "ex", "exod"}},
        {3,
         "Leviticus",
         "Lev",
         {17, 16, 17, 35, 19, 30, 38, 36, 24, 20, 47, 8, 59, 57, 33, 34, 16, 30, 37, 27, 24, 33, 44, 23, 55, 46, 34},
         {"lev", "lv"}},
        {4,
         "Numbers",
         "Num",
         {54, 34, 51, 49, 31, 27, 89, 26, 23, 36, 35, 16, 33, 45, 41, 50, 13, 32,
          22, 29, 35, 41, 30, 25, 18, 65, 23, 31, 40, 16, 54, 42, 56, 29, 34, 13},
         {"num", "nm", "nu"}},
        {5,
         "Deuteronomy",
         "Due",
         {46, 37, 29, 49, 33, 25, 26, 20, 29, 22, 32, 32, 18, 29, 23, 22, 20,
          22, 21, 20, 23, 30, 25, 22, 19, 19, 26, 68, 29, 20, 30, 52, 29, 12},
         {"deut", "dt", "deu", "de"}},
        {6,
         "Joshua",
         "Jos",
         {18, 24, 17, 24, 15, 27, 26, 35, 27, 43, 23, 24, 33, 15, 63, 10, 18, 28, 51, 9, 45, 34, 16, 33},
         {"josh", "jos", "jsh"}},
        {7,
         "Judges",
         "Jdg",
         {36, 23, 31, 24, 31, 40, 25, 35, 57, 18, 40, 15, 25, 20, 20, 31, 13, 31, 30, 48, 25},
         {"judg", "jdg", "jg", "judges"}},
        {8, "Ruth", "Rut", {22, 23, 18, 22}, {"ruth", "rth", "ru"}},
        {9,
         "1 Samuel",
         "1Sam",
         {28, 36, 21, 22, 12, 21, 17, 22, 27, 27, 15, 25, 23, 52, 35, 23,
          58, 30, 24, 42, 15, 23, 29, 22, 44, 25, 12, 25, 11, 31, 13},
         {"1sam", "1 sam", "1sa", "1 samuel"}},
        {10,
         "2 Samuel",
         "2Sam",
         {27, 32, 39, 12, 25, 23, 29, 18, 13, 19, 27, 31, 39, 33, 37, 23, 29, 33, 43, 26, 22, 51, 39, 25},
         {"2sam", "2 sam", "2sa", "2 samuel"}},
        {11,
         "1 Kings",
         "1Kin",
         {53, 46, 28, 34, 18, 38, 51, 66, 28, 29, 43, 33, 34, 31, 34, 34, 24, 46, 21, 43, 29, 53},
         {"1kgs", "1 kgs", "1ki", "1 kings"}},
        {12,
         "2 Kings",
         "2Kin",
         {18, 25, 27, 44, 27, 33, 20, 29, 37, 36, 21, 21, 25, 29, 38, 20, 41, 37, 37, 21, 26, 20, 37, 20, 30},
         {"2kgs", "2 kgs", "2ki", "2 kings"}},
        {13,
         "1 Chronicles",
         "1Chr",
         {54, 55, 24, 43, 26, 81, 40, 40, 44, 14, 47, 40, 14, 17, 29,
          43, 27, 17, 19, 8,  30, 19, 32, 31, 31, 32, 34, 21, 30},
         {"1chr", "1 chr", "1ch", "1 chronicles"}},
        {14,
         "2 Chronicles",
         "2Chr",
         {17, 18, 17, 22, 14, 42, 22, 18, 31, 19, 23, 16, 22, 15, 19, 14, 19, 34,
          11, 37, 20, 12, 21, 27, 28, 23, 9,  27, 36, 27, 21, 33, 25, 33, 27, 23},
         {"2chr", "2 chr", "2ch", "2 chronicles"}},
        {15, "Ezra", "Ezr", {11, 70, 13, 24, 17, 22, 28, 36, 15, 44}, {"ezra", "ezr"}},
        {16, "Nehemiah", "Neh", {11, 20, 32, 23, 19, 19, 73, 18, 38, 39, 36, 47, 31}, {"neh", "ne", "nehemiah"}},
        {17, "Esther", "Est", {22, 23, 15, 17, 14, 14, 10, 17, 32, 3}, {"est", "esth", "esther"}},
        {18,
         "Job",
         "Job",
         {22, 13, 26, 21, 27, 30, 21, 22, 35, 22, 20, 25, 28, 22, 35, 22, 16, 21, 29, 29, 34,
          30, 17, 25, 6,  14, 23, 28, 25, 31, 40, 22, 33, 37, 16, 33, 24, 41, 30, 24, 34, 17},
         {"job", "jb"}},
        {19,
         "Psalms",
         "Psa",
         {6,  12, 8,  8,  12, 10, 17, 9,  20, 18, 7,  8,  6,  7,  5,  11, 15, 50, 14,  9,  13, 31, 6,  10, 22,
          12, 14, 9,  11, 12, 24, 11, 22, 22, 28, 12, 40, 22, 13, 17, 13, 11, 5,  26,  17, 11, 9,  14, 20, 23,
          19, 9,  6,  7,  23, 13, 11, 11, 17, 12, 8,  12, 11, 10, 13, 20, 7,  35, 36,  5,  24, 20, 28, 23, 10,
          12, 20, 72, 13, 19, 16, 8,  18, 12, 13, 17, 7,  18, 52, 17, 16, 15, 5,  23,  11, 13, 12, 9,  9,  5,
          8,  28, 22, 35, 45, 48, 43, 13, 31, 7,  10, 10, 9,  8,  18, 19, 2,  29, 176, 7,  8,  9,  4,  8,  5,
          6,  5,  6,  8,  8,  3,  18, 3,  3,  21, 26, 9,  8,  24, 13, 10, 7,  12, 15,  21, 10, 20, 14, 9,  6},
         {"ps", "psa", "psalm", "psalms", "pslam", "psalam"}},
        {20,
         "Proverbs",
         "Pro",
         {33, 22, 35, 27, 23, 35, 27, 36, 18, 32, 31, 28, 25, 35, 33, 33,
          28, 24, 29, 30, 31, 29, 35, 34, 28, 28, 27, 28, 27, 33, 31},
         {"prov", "pr", "pro", "proverbs"}},
        {21,
         "Ecclesiastes",
         "Ecc",
         {18, 26, 22, 16, 20, 12, 29, 17, 18, 20, 10, 14},
         {"eccl", "ecc", "ec", "ecclesiastes", "qoheleth"}},
        {22,
         "Song of Solomon",
         "Son",
         {17, 17, 11, 16, 16, 13, 13, 14},
         {"song", "sos", "ss", "song of songs", "song of solomon", "song solomon", "canticles"}},
        {23,
         "Isaiah",
         "Isa",
         {31, 22, 26, 6,  30, 13, 25, 22, 21, 34, 16, 6,  22, 32, 9,  14, 14, 7,  25, 6,  17, 25,
          18, 23, 12, 21, 13, 29, 24, 33, 9,  20, 24, 17, 10, 22, 38, 22, 8,  31, 29, 25, 28, 28,
          25, 13, 15, 22, 26, 11, 23, 15, 12, 17, 13, 12, 21, 14, 21, 22, 11, 12, 19, 12, 25, 24},
         {"isa", "is", "isaiah"}},
        {24,
         "Jeremiah",
         "Jer",
         {19, 37, 25, 31, 31, 30, 34, 22, 26, 25, 23, 17, 27, 22, 21, 21, 27, 23, 15, 18, 14, 30, 40, 10, 38, 24,
          22, 17, 32, 24, 40, 44, 26, 22, 19, 32, 21, 28, 18, 16, 18, 22, 13, 30, 5,  28, 7,  47, 39, 46, 64, 34},
         {"jer", "je", "jeremiah"}},
        {25, "Lamentations", "Lam", {22, 22, 66, 22, 22}, {"lam", "la", "lamentations"}},
        {26,
         "Ezekiel",
         "Eze",
         {28, 10, 27, 17, 17, 14, 27, 18, 11, 22, 25, 28, 23, 23, 8,  63, 24, 32, 14, 49, 32, 31, 49, 27,
          17, 21, 36, 26, 21, 26, 18, 32, 33, 31, 15, 38, 28, 23, 29, 49, 26, 20, 27, 31, 25, 24, 23, 35},
         {"ezek", "eze", "ezk", "ezekiel"}},
        {27, "Daniel", "Dan", {21, 49, 30, 37, 31, 28, 28, 27, 27, 21, 45, 13}, {"dan", "da", "dn", "daniel"}},
        {28, "Hosea", "Hos", {11, 23, 5, 19, 15, 11, 16, 14, 17, 15, 12, 14, 16, 9}, {"hos", "ho", "hosea"}},
        {29, "Joel", "Joe", {20, 32, 21}, {"joel", "joe", "jl"}},
        {30, "Amos", "Amo", {15, 16, 15, 13, 27, 14, 17, 14, 15}, {"amos", "am", "amo"}},
        {31, "Obadiah", "Oba", {21}, {"obad", "ob", "obadiah"}},
        {32, "Jonah", "Jon", {17, 10, 10, 11}, {"jonah", "jon", "jnh"}},
        {33, "Micah", "Mic", {16, 13, 12, 13, 15, 16, 20}, {"mic", "mc", "micah"}},
        {34, "Nahum", "Nah", {15, 13, 19}, {"nah", "na", "nahum"}},
        {35, "Habakkuk", "Hab", {17, 20, 19}, {"hab", "hb", "habakkuk"}},
        {36, "Zephaniah", "Zep", {18, 15, 20}, {"zeph", "zep", "zp", "zephaniah"}},
        {37, "Haggai", "Hag", {15, 23}, {"hag", "hg", "haggai"}},
        {38,
         "Zechariah",
         "Zec",
         {21, 13, 10, 14, 11, 15, 14, 23, 17, 12, 17, 14, 9, 21},
         {"zech", "zec", "zc", "zechariah"}},
        {39, "Malachi", "Mal", {14, 17, 18, 6}, {"mal", "ml", "malachi"}},
        {40,
         "Matthew",
         "Mat",
         {25, 23, 17, 25, 48, 34, 29, 34, 38, 42, 30, 50, 58, 36,
          39, 28, 27, 35, 30, 34, 46, 46, 39, 51, 46, 75, 66, 20},
         {"matt", "mt", "mat", "matthew"}},
        {41, "Mark", "Mar", {45, 28, 35, 41, 43, 56, 37, 38, 50, 52, 33, 44, 37, 72, 47, 20}, {"mark", "mk", "mr"}},
        {42,
         "Luke",
         "Luk",
         {80, 52, 38, 44, 39, 49, 50, 56, 62, 42, 54, 59, 35, 35, 32, 31, 37, 43, 48, 47, 38, 71, 56, 53},
         {"luke", "lk", "lu"}},
        {43,
         "John",
         "Joh",
         {51, 25, 36, 54, 47, 71, 53, 59, 41, 42, 57, 50, 38, 31, 27, 33, 26, 40, 42, 31, 25},
         {"john", "jn", "jhn", "joh"}},
        {44,
         "Acts",
         "Act",
         {26, 47, 26, 37, 42, 15, 60, 40, 43, 48, 30, 25, 52, 28,
          41, 40, 34, 28, 41, 38, 40, 30, 35, 27, 27, 32, 44, 31},
         {"acts", "ac", "act"}},
        {45,
         "Romans",
         "Rom",
         {32, 29, 31, 25, 21, 23, 25, 39, 33, 21, 36, 21, 14, 23, 33, 27},
         {"rom", "ro", "rm", "romans"}},
        {46,
         "1 Corinthians",
         "1Cor",
         {31, 16, 23, 21, 13, 20, 40, 13, 27, 33, 34, 31, 13, 40, 58, 24},
         {"1cor", "1 cor", "1co", "1 corinthians"}},
        {47,
         "2 Corinthians",
         "2Cor",
         {24, 17, 18, 18, 21, 18, 16, 24, 15, 18, 33, 21, 14},
         {"2cor", "2 cor", "2co", "2 corinthians"}},
        {48, "Galatians", "Gal", {24, 21, 29, 31, 26, 18}, {"gal", "ga", "galatians"}},
        {49, "Ephesians", "Eph", {23, 22, 21, 32, 33, 24}, {"eph", "ephes", "ephesians"}},
        {50, "Philippians", "Phi", {30, 30, 21, 23}, {"phil", "php", "phi", "philippians", "phillipians"}},
        {51, "Colossians", "Col", {29, 23, 25, 18}, {"col", "co", "colossians"}},
        {52, "1 Thessalonians", "1The", {10, 20, 13, 18, 28}, {"1thess", "1 thess", "1th", "1 thessalonians"}},
        {53, "2 Thessalonians", "2The", {12, 17, 18}, {"2thess", "2 thess", "2th", "2 thessalonians"}},
        {54, "1 Timothy", "1Tim", {20, 15, 16, 16, 25, 21}, {"1tim", "1 tim", "1ti", "1 timothy"}},
        {55, "2 Timothy", "2Tim", {18, 26, 17, 22}, {"2tim", "2 tim", "2ti", "2 timothy"}},
        {56, "Titus", "Tit", {16, 15, 15}, {"titus", "tit", "ti"}},
        {57, "Philemon", "Phm", {25}, {"philem", "phm", "philemon"}},
        {58, "Hebrews", "Heb", {14, 18, 19, 16, 14, 20, 28, 13, 28, 39, 40, 29, 25}, {"heb", "he", "hebrews"}},
        {59, "James", "Jam", {27, 26, 18, 17, 20}, {"jas", "jm", "james"}},
        {60, "1 Peter", "1Pet", {25, 25, 22, 19, 14}, {"1pet", "1 pet", "1pe", "1 peter"}},
        {61, "2 Peter", "2Pet", {21, 22, 18}, {"2pet", "2 pet", "2pe", "2 peter"}},
        {62, "1 John", "1Joh", {10, 29, 24, 21, 21}, {"1john", "1 john", "1jn", "1jo"}},
        {63, "2 John", "2Joh", {13}, {"2john", "2 john", "2jn", "2jo"}},
        {64, "3 John", "3Joh", {14}, {"3john", "3 john", "3jn", "3jo"}},
        {65, "Jude", "Jud", {25}, {"jude", "jud", "jd"}},
        {66,
         "Revelation",
         "Rev",
         {20, 29, 22, 11, 14, 17, 17, 13, 21, 11, 19, 17, 18, 20, 8, 21, 18, 24, 21, 15, 27, 21},
         {"rev", "re", "rv", "revelation", "revalation", "apocalypse"}},
    };
    return rows;
}

} // namespace

int BibleBook::verseCount(int chapter) const {
    if (chapter < 1 || chapter > chapterCount())
        return 0;
    return chapters[static_cast<std::size_t>(chapter - 1)];
}

const std::vector<BibleBook>& allBibleBooks() {
    static const std::vector<BibleBook> books = [] {
        std::vector<BibleBook> result;
        result.reserve(bookRows().size());
        for (const BookRow& row : bookRows())
            result.push_back(BibleBook{row.id, row.name, row.abbreviation, row.chapters});
        return result;
    }();
    return books;
}

const BibleBook* bibleBookWithId(std::int64_t id) {
    const auto& books = allBibleBooks();
    if (id < 1 || id > static_cast<std::int64_t>(books.size()))
        return nullptr;
    return &books[static_cast<std::size_t>(id - 1)];
}

const BibleBook* bibleBookWithAbbreviation(std::string_view abbreviation) {
    static const std::unordered_map<std::string_view, const BibleBook*> byAbbreviation = [] {
        std::unordered_map<std::string_view, const BibleBook*> map;
        for (const BibleBook& book : allBibleBooks())
            map.emplace(book.abbreviation, &book);
        return map;
    }();
    auto found = byAbbreviation.find(abbreviation);
    return found == byAbbreviation.end() ? nullptr : found->second;
}

std::span<const std::string_view> bibleBookAliases(std::int64_t id) {
    const auto& rows = bookRows();
    if (id < 1 || id > static_cast<std::int64_t>(rows.size()))
        return {};
    return rows[static_cast<std::size_t>(id - 1)].aliases;
}

nlohmann::ordered_json encodeBibleBook(const BibleBook& book) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json["id"] = book.id;
    json["name"] = book.name;
    json["abbreviation"] = book.abbreviation;
    json["chapters"] = book.chapters;
    return json;
}

} // namespace quillon::scripture

std::size_t
std::hash<quillon::scripture::BibleBook>::operator()(const quillon::scripture::BibleBook& book) const noexcept {
    std::size_t seed = std::hash<std::int64_t>{}(book.id);
    auto combine = [&seed](std::size_t value) { seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2); };
    combine(std::hash<std::string>{}(book.name));
    combine(std::hash<std::string>{}(book.abbreviation));
    for (int verses : book.chapters)
        combine(std::hash<int>{}(verses));
    return seed;
}
