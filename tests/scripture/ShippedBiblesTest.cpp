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
