#include "scripture/BibleLoader.h"

#include "scripture/SwordConverter.h"
#include "scripture/TopicTable.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillon;
using namespace quillon::scripture;
using model::BibleVersion;

namespace {

BibleLoader& shippedLoader() {
    static BibleLoader loader(BibleResourceBundle({quillon::testing::sourceDirectory() / "resources" / "bibles"}));
    return loader;
}

} // namespace

TEST(ShippedBibles, everyLineOfEveryShippedTextIsAVerse) {
    struct Row {
        BibleVersion version;
        std::size_t verses;
    };
    // ASV leaves out sixteen verses that later manuscripts added (Matt 17:21, Acts 8:37, ...).
    for (const Row& row :
         {Row{BibleVersion::kjv, 31102}, Row{BibleVersion::asv, 31086}, Row{BibleVersion::ylt, 31102}}) {
        EXPECT_TRUE(shippedLoader().isAvailable(row.version));
        auto verses = shippedLoader().loadVerses(row.version);
        EXPECT_EQ(verses->size(), row.verses) << model::rawValue(row.version);
        for (const auto& [key, verse] : *verses) {
            ASSERT_NE(bibleBookWithAbbreviation(verse.bookAbbreviation), nullptr) << key;
            ASSERT_FALSE(verse.text.empty()) << key;
            ASSERT_EQ(verse.text.find("\xC2\xB6"), std::string::npos) << key << " keeps a pilcrow";
            ASSERT_EQ(verse.text.find('<'), std::string::npos) << key << " keeps markup";
        }
    }
    for (BibleVersion version : {BibleVersion::lsv, BibleVersion::nlt, BibleVersion::nkjv, BibleVersion::amp})
        EXPECT_FALSE(shippedLoader().isAvailable(version));
}

TEST(ShippedBibles, theSearchBoxAnswersReferencesTopicsAndWords) {
    auto& loader = shippedLoader();
    EXPECT_EQ(loader.search("John 3:16", {}, 50).at(0).verse.text.substr(0, 24), "For God so loved the wor");
    EXPECT_EQ(loader.search("John 3", {BibleVersion::kjv, BibleVersion::ylt}, 100).size(), 72u);

    // A topic uses the first requested version only, in the table's order.
    auto grace = loader.search("verses about grace", {BibleVersion::asv, BibleVersion::kjv}, 50);
    ASSERT_EQ(grace.size(), 10u);
    EXPECT_EQ(grace[0].id, "ASV-Eph 2:8");
    EXPECT_EQ(grace[1].id, "ASV-2Cor 12:9");

    auto worry = loader.search("worry", {}, 50);
    EXPECT_EQ(loader.search("topic worry", {}, 50), worry);
    EXPECT_EQ(loader.search("  Topic: Worry ", {}, 50), worry);
    EXPECT_EQ(worry.at(0).id, "KJV-Mat 6:25");
    // "worries" is no topic: it falls through to the text, where the KJV never says "worry".
    EXPECT_TRUE(loader.search("worries", {}, 50).empty());

    for (const auto& result : loader.search("love NOT hate", {}, 200)) {
        std::string text = result.verse.text;
        for (char& c : text)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        EXPECT_NE(text.find("lov"), std::string::npos) << result.id;
        EXPECT_EQ(text.find("hate"), std::string::npos) << result.id;
    }
    // A phrase is a plain substring: "living waters" counts too.
    auto water = loader.search("\"living water\"", {}, 50);
    EXPECT_EQ(water.size(), 7u);
    EXPECT_NE(std::find_if(water.begin(), water.end(), [](const auto& hit) { return hit.id == "KJV-Joh 4:10"; }),
              water.end());
}

TEST(ShippedBibles, phrasesKeepTheirSpacesAndPastedSpacesSeparateWords) {
    auto& loader = shippedLoader();
    // A space inside the quotes anchors the phrase at a word's edge.
    EXPECT_EQ(loader.search("\" in the beginning\"", {}, 1000).size(), 15u);
    EXPECT_EQ(loader.search("\"in the beginning\"", {}, 1000).size(), 19u);
    EXPECT_EQ(loader.search("\"love \"", {}, 1000).size(), 213u);
    EXPECT_TRUE(loader.search("\"   \"", {}, 1000).empty()); // only spaces is no phrase
    // No-break and thin spaces, as web Bibles and word processors paste them.
    EXPECT_EQ(loader.search("John\u00a03:16", {}, 50), loader.search("John 3:16", {}, 50));
    EXPECT_EQ(loader.search("1\u00a0John 1:9", {}, 50).at(0).id, "KJV-1Joh 1:9");
    EXPECT_EQ(loader.search("John 3:16\u2009-\u200918", {}, 50).size(), 3u);
    EXPECT_EQ(loader.search("faith\u00a0hope", {}, 50), loader.search("faith hope", {}, 50));
}

TEST(ShippedBibles, aRangePastTheChaptersEndStopsThere) {
    auto& loader = shippedLoader();
    auto tail = loader.search("Psalm 119:170-1000", {}, 50);
    ASSERT_EQ(tail.size(), 7u);
    EXPECT_EQ(tail.front().id, "KJV-Psa 119:170");
    EXPECT_EQ(tail.back().id, "KJV-Psa 119:176");
    EXPECT_EQ(loader.search("John 3:1-1000", {}, 50).size(), 36u);
}

TEST(ShippedBibles, aTranslationTagNamesTheVersionWhenNoneIsChosen) {
    auto& loader = shippedLoader();
    EXPECT_EQ(loader.search("John 3:16 ASV", {}, 50).at(0).id, "ASV-Joh 3:16");
    EXPECT_EQ(loader.search("(YLT) John 3:16", {}, 50).at(0).id, "YLT-Joh 3:16");
    EXPECT_EQ(loader.search("John 3:16 ASV", {BibleVersion::kjv}, 50).at(0).id, "KJV-Joh 3:16"); // the choice wins
    EXPECT_EQ(loader.search("John 3:16 NIV", {}, 50).at(0).id, "KJV-Joh 3:16");
}

TEST(SwordConverter, cleansRenderedTextToOneLine) {
    struct Row {
        const char* rendered;
        const char* stored;
    };
    for (const Row& row :
         {Row{"\nThese are the generations", "These are the generations"}, Row{"\xC2\xB6 And he said", "And he said"},
          Row{"a  b\t\nc ", "a b c"}, Row{"one|two", "one two"}, Row{"", ""}})
        EXPECT_EQ(SwordConverter::cleanedText(row.rendered), row.stored);
}

TEST(SwordConverter, anUnknownModuleIsAClearError) {
    quillon::testing::TemporaryFolder empty;
    SwordConverter converter(empty.path());
    SwordConversion report;
    EXPECT_THROW(converter.convert("NOSUCHMODULE", report), SwordConversionError);
}
