#include "scripture/BibleLoader.h"

#include "scripture/ReferenceParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

using namespace quillon;
using namespace quillon::scripture;
using model::BibleVersion;
using quillon::testing::TemporaryFolder;

namespace {

std::vector<std::string> identifiers(const std::vector<BibleSearchResult>& results) {
    std::vector<std::string> ids;
    for (const auto& result : results)
        ids.push_back(result.id);
    return ids;
}

/// A loader over one temporary folder only, so the user's own texts never leak into a test.
struct SmallLibrary {
    TemporaryFolder folder;
    BibleLoader loader{BibleResourceBundle({folder.path()})};
};

constexpr const char* smallKJV = "Gen 1:1|In the beginning God created the heaven and the earth.\n"
                                 "Gen 1:2|And the earth was without form, and void.\n"
                                 "Gen 1:10|And God called the dry land Earth.\n"
                                 "Joh 3:16|For God so loved the world, that he gave his only begotten Son.\n"
                                 "Joh 3:17|For God sent not his Son into the world to condemn the world.\n"
                                 "Joh 4:10|He would have given thee living water.\n"
                                 "1Jo 4:8|He that loveth not knoweth not God; for God is love.\n"
                                 "1Jo 4:20|If a man say, I love God, and hateth his brother, he is a liar.\n"
                                 "Rom 5:5|And hope maketh not ashamed.\n"
                                 "Heb 11:1|Now faith is the substance of things hoped for.\n"
                                 "Due 6:4|Hear, O Israel: The LORD our God is one LORD.\n"
                                 "Deu 6:5|And thou shalt love the LORD thy God with all thine heart.\n";

} // namespace

TEST(BibleLoader, skipsEveryMalformedLineAndKeepsTheRest) {
    SmallLibrary library;
    library.folder.write("KJV.txt", "\xEF\xBB\xBF"
                                    "Gen 1:1|  In the beginning.  \r\n"
                                    "\n"
                                    "no bar on this line\r\n"
                                    "Gen 1:x|not a verse number\n"
                                    "Gen1:2|no space before the chapter\n"
                                    "Gen 99999999999:1|chapter too large\n"
                                    "1 Sam 1:1|a spaced book group\n"
                                    "  Exo 2:3  |  trimmed on both sides | bars later are text\n"
                                    "Exo 2:3|a repeated verse keeps the first line\n"
                                    "Lev 1:1\n"
                                    "|\n");
    auto verses = library.loader.loadVerses(BibleVersion::kjv);
    ASSERT_EQ(verses->size(), 3u);
    EXPECT_EQ(verses->at("Gen 1:1").text, "In the beginning.");
    EXPECT_EQ(verses->at("Exo 2:3").text, "trimmed on both sides | bars later are text");
    EXPECT_EQ(verses->at("1 Sam 1:1").bookAbbreviation, "1 Sam");
    EXPECT_EQ(verses->at("Exo 2:3").id(), "Exo 2:3");
}

TEST(BibleLoader, badFilesGiveEmptyResultsWithoutCrashing) {
    struct Case {
        const char* name;
        std::string bytes;
        bool available;
    };
    std::string binary;
    for (int i = 0; i < 4096; ++i)
        binary.push_back(static_cast<char>(i * 7 % 256));
    for (const Case& entry : {Case{"empty file", "", true}, Case{"binary file", binary, true},
                              Case{"invalid UTF-8", "Gen 1:1|caf\xC3\n", true}, Case{"only junk", "|||\n\n\n", true}}) {
        SmallLibrary library;
        library.folder.write("KJV.txt", entry.bytes);
        EXPECT_EQ(library.loader.isAvailable(BibleVersion::kjv), entry.available) << entry.name;
        EXPECT_TRUE(library.loader.loadVerses(BibleVersion::kjv)->empty()) << entry.name;
        EXPECT_TRUE(library.loader.search("John 3:16", {}, 10).empty()) << entry.name;
        EXPECT_TRUE(library.loader.search("love", {}, 10).empty()) << entry.name;
    }
    SmallLibrary folderInstead;
    std::filesystem::create_directories(folderInstead.folder / "KJV.txt");
    EXPECT_FALSE(folderInstead.loader.isAvailable(BibleVersion::kjv));
    EXPECT_TRUE(folderInstead.loader.loadVerses(BibleVersion::kjv)->empty());
}

TEST(BibleLoader, aMissingFileIsNotCachedSoAddingItLaterWorks) {
    SmallLibrary library;
    EXPECT_FALSE(library.loader.isAvailable(BibleVersion::nkjv));
    EXPECT_TRUE(library.loader.search("John 3:16", {BibleVersion::nkjv}, 10).empty());
    library.folder.write("NKJV.txt", "Joh 3:16|For God so loved the world.\n");
    EXPECT_TRUE(library.loader.isAvailable(BibleVersion::nkjv));
    EXPECT_EQ(identifiers(library.loader.search("John 3:16", {BibleVersion::nkjv}, 10)),
              std::vector<std::string>{"NKJV-Joh 3:16"});
    EXPECT_EQ(identifiers(library.loader.search("loved", {BibleVersion::nkjv}, 10)),
              std::vector<std::string>{"NKJV-Joh 3:16"});
}

TEST(BibleLoader, theFirstFolderOfTheBundleWins) {
    TemporaryFolder user, shipped;
    user.write("KJV.txt", "Joh 3:16|from the user's folder\n");
    shipped.write("KJV.txt", "Joh 3:16|shipped\n");
    shipped.write("ASV.txt", "Joh 3:16|shipped ASV\n");
    BibleLoader loader(BibleResourceBundle({user.path(), shipped.path()}));
    auto results = loader.verses(*parse("John 3:16"), {BibleVersion::kjv, BibleVersion::asv});
    ASSERT_EQ(results.size(), 2u);
    EXPECT_EQ(results[0].verse.text, "from the user's folder");
    EXPECT_EQ(results[1].verse.text, "shipped ASV");
}

TEST(BibleLoader, referenceLookupsGoVersionByVersionInVerseOrder) {
    SmallLibrary library;
    library.folder.write("KJV.txt", smallKJV);
    library.folder.write("ASV.txt", "Joh 3:17|ASV seventeen\nJoh 3:16|ASV sixteen\n");
    EXPECT_EQ(identifiers(library.loader.search("John 3", {BibleVersion::kjv, BibleVersion::asv}, 50)),
              (std::vector<std::string>{"KJV-Joh 3:16", "KJV-Joh 3:17", "ASV-Joh 3:16", "ASV-Joh 3:17"}));
    EXPECT_EQ(identifiers(library.loader.search("John 3:17, 16", {BibleVersion::asv, BibleVersion::kjv}, 50)),
              (std::vector<std::string>{"ASV-Joh 3:17", "ASV-Joh 3:16", "KJV-Joh 3:17", "KJV-Joh 3:16"}));
    EXPECT_EQ(identifiers(library.loader.search("John 3", {BibleVersion::kjv}, 1)),
              std::vector<std::string>{"KJV-Joh 3:16"});
    // The table says "Due": a line written with "Deu" is never found.
    EXPECT_EQ(identifiers(library.loader.search("Deut 6:4-5", {}, 50)), std::vector<std::string>{"KJV-Due 6:4"});
    // Beyond the chapter, or a chapter the book table lacks: nothing, and no error.
    EXPECT_TRUE(library.loader.verses(*parse("John 3:99"), {}).empty());
    ScriptureReference outside{*resolveBook("John"), 22, std::nullopt};
    EXPECT_TRUE(library.loader.verses(outside, {}).empty());
}

TEST(BibleLoader, fullTextHonoursOperatorsPhrasesAndTheTieOrder) {
    SmallLibrary library;
    library.folder.write("KJV.txt", smallKJV);
    auto search = [&](std::string_view query) { return identifiers(library.loader.search(query, {}, 50)); };
    using Ids = std::vector<std::string>;
    // Stems: "loved", "loveth", "love" all meet; the hater in 1Jo 4:20 is dropped.
    EXPECT_EQ(search("love -hate"), search("love NOT hate"));
    EXPECT_EQ(search("love NOT hate"), (Ids{"KJV-1Jo 4:8", "KJV-Deu 6:5", "KJV-Joh 3:16"}));
    EXPECT_EQ(search("faith OR hope"), (Ids{"KJV-Heb 11:1", "KJV-Rom 5:5"}));
    EXPECT_EQ(search("faith hope"), (Ids{"KJV-Heb 11:1"})); // "hoped" stems like "hope"
    EXPECT_EQ(search("faith AND hope"), search("faith hope"));
    EXPECT_EQ(search("\"living water\""), (Ids{"KJV-Joh 4:10"}));
    EXPECT_EQ(search("\"LIVING WATER\" given"), (Ids{"KJV-Joh 4:10"}));
    EXPECT_TRUE(search("\"living waters\" given").empty());
    // Equal scores sort by the verse key as plain text: "Gen 1:10" before "Gen 1:2".
    EXPECT_EQ(search("earth"), (Ids{"KJV-Gen 1:1", "KJV-Gen 1:10", "KJV-Gen 1:2"}));
    // More matched terms rank first under OR.
    EXPECT_EQ(search("world OR son")[0], "KJV-Joh 3:16");
    EXPECT_EQ(library.loader.search("earth", {}, 2).size(), 2u);
    EXPECT_TRUE(search("- NOT -love AND OR").empty());
}

TEST(BibleLoader, shortQueriesAndUnicodeNeverCrash) {
    SmallLibrary library;
    library.folder.write("KJV.txt", smallKJV);
    for (const char* query : {"", " ", "a", " g \n", "😀", "\"", "\"\"", "NOT", "-", "é"})
        EXPECT_TRUE(library.loader.search(query, {}, 50).empty()) << query;
    for (const char* query : {"😀😀 love", "e\u0301arth", "שָׁלוֹם", "مرحبا بالعالم", "love \u202Ehate", "\xff\xfe love",
                              "\"unclosed love", "Ｊｏｈｎ 3:16", "love OR 😀"})
        EXPECT_NO_THROW(library.loader.search(query, {}, 50)) << query;
    EXPECT_EQ(identifiers(library.loader.search("😀😀 OR love", {}, 1)), std::vector<std::string>{"KJV-1Jo 4:20"});
}

TEST(BibleLoader, concurrentCallersShareOneCache) {
    SmallLibrary library;
    library.folder.write("KJV.txt", smallKJV);
    std::vector<std::thread> threads;
    std::vector<std::size_t> counts(4);
    for (std::size_t i = 0; i < counts.size(); ++i)
        threads.emplace_back([&, i] { counts[i] = library.loader.search("God", {}, 50).size(); });
    for (auto& thread : threads)
        thread.join();
    EXPECT_TRUE(std::all_of(counts.begin(), counts.end(), [&](std::size_t count) { return count == counts[0]; }));
    EXPECT_EQ(library.loader.loadVerses(BibleVersion::kjv), library.loader.loadVerses(BibleVersion::kjv));
}
