#include "scripture/BibleBook.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

using namespace quillon::scripture;

TEST(BibleBook, tableFollowsTheKingJamesVersification) {
    const auto& books = allBibleBooks();
    ASSERT_EQ(books.size(), 66u);
    int verses = 0;
    for (std::size_t index = 0; index < books.size(); ++index) {
        EXPECT_EQ(books[index].id, static_cast<std::int64_t>(index + 1));
        verses += std::accumulate(books[index].chapters.begin(), books[index].chapters.end(), 0);
    }
    EXPECT_EQ(verses, 31102);

    struct Expected {
        std::int64_t id;
        const char* name;
        const char* abbreviation;
        int chapters;
    };
    for (const Expected& row : {Expected{1, "Genesis", "Gen", 50}, Expected{5, "Deuteronomy", "Due", 34},
                                Expected{19, "Psalms", "Psa", 150}, Expected{22, "Song of Solomon", "Son", 8},
                                Expected{46, "1 Corinthians", "1Cor", 16}, Expected{50, "Philippians", "Phi", 4},
                                Expected{64, "3 John", "3Joh", 1}, Expected{66, "Revelation", "Rev", 22}}) {
        const BibleBook* book = bibleBookWithId(row.id);
        ASSERT_NE(book, nullptr) << row.id;
        EXPECT_EQ(book->name, row.name);
        EXPECT_EQ(book->abbreviation, row.abbreviation);
        EXPECT_EQ(book->chapterCount(), row.chapters) << row.name;
    }
    EXPECT_EQ(bibleBookWithId(19)->verseCount(119), 176);
    EXPECT_EQ(bibleBookWithId(64)->verseCount(1), 14);
    EXPECT_EQ(bibleBookWithId(64)->verseCount(2), 0);
    EXPECT_EQ(bibleBookWithId(0), nullptr);
    EXPECT_EQ(bibleBookWithId(67), nullptr);
}

TEST(BibleBook, abbreviationsAreUniqueAndDeuteronomyKeepsDue) {
    std::set<std::string> seen;
    for (const BibleBook& book : allBibleBooks()) {
        EXPECT_TRUE(seen.insert(book.abbreviation).second) << book.abbreviation;
        EXPECT_EQ(bibleBookWithAbbreviation(book.abbreviation), &book);
    }
    EXPECT_EQ(bibleBookWithAbbreviation("Deu"), nullptr);
    EXPECT_EQ(bibleBookWithAbbreviation("joh"), nullptr); // verse keys are case-sensitive
}

TEST(BibleBook, aliasListsKeepTheCommonMisspellings) {
    auto has = [](std::int64_t id, std::string_view alias) {
        for (std::string_view candidate : bibleBookAliases(id))
            if (candidate == alias)
                return true;
        return false;
    };
    EXPECT_TRUE(has(19, "pslam"));
    EXPECT_TRUE(has(19, "psalam"));
    EXPECT_TRUE(has(50, "phillipians"));
    EXPECT_TRUE(has(66, "revalation"));
    EXPECT_TRUE(has(22, "song of songs"));
    EXPECT_TRUE(bibleBookAliases(67).empty());
}

TEST(BibleBook, encodesItsFourKeysInOrder) {
    auto json = encodeBibleBook(*bibleBookWithId(64));
    EXPECT_EQ(json.dump(), R"({"id":64,"name":"3 John","abbreviation":"3Joh","chapters":[14]})");
    EXPECT_NE(std::hash<BibleBook>{}(*bibleBookWithId(1)), std::hash<BibleBook>{}(*bibleBookWithId(2)));
}
