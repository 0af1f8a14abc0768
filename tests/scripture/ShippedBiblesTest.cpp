#include "scripture/BibleLoader.h"

#include "scripture/SwordConverter.h"
#include "scripture/TopicTable.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

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
    EXPECT_EQ(loader.search("John 3:16 NKJV", {}, 50).at(0).id, "KJV-Joh 3:16"); // ours, but not shipped
}

TEST(ShippedBibles, noTextKeepsTheMarkupOfItsModule) {
    // Typewriter quotes (YLT's `Let light be;'), the ASV's "[Selah" without its bracket's mate,
    // acrostic headings run into a verse, and words glued where a tag stood between them.
    const std::vector<std::string> glued = {"forhe", "goats’hair", "cubitswas", "allthy", "allthings"};
    for (BibleVersion version : {BibleVersion::kjv, BibleVersion::asv, BibleVersion::ylt}) {
        for (const auto& [key, verse] : *shippedLoader().loadVerses(version)) {
            const std::string& text = verse.text;
            ASSERT_EQ(text.find('`'), std::string::npos) << key;
            ASSERT_EQ(text.find("[Selah"), std::string::npos) << key;
            ASSERT_EQ(text.find("[Higgaion"), std::string::npos) << key;
            ASSERT_EQ(text.find("\xD7"), std::string::npos) << key << " keeps a Hebrew letter";
            for (const std::string& word : glued)
                ASSERT_EQ(text.find(word), std::string::npos) << key << " glues " << word;
        }
    }
    auto ylt = shippedLoader().loadVerses(BibleVersion::ylt);
    EXPECT_TRUE(ylt->at("Joh 10:11").text.starts_with("‘I am the good shepherd;")) << ylt->at("Joh 10:11").text;
    EXPECT_EQ(ylt->at("Gen 1:3").text, "and God saith, ‘Let light be;’ and light is.");
    auto asv = shippedLoader().loadVerses(BibleVersion::asv);
    EXPECT_TRUE(asv->at("Psa 3:2").text.ends_with("no help for him in God. Selah")) << asv->at("Psa 3:2").text;
    EXPECT_TRUE(asv->at("Psa 119:8").text.ends_with("forsake me not utterly.")) << asv->at("Psa 119:8").text;
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

TEST(SwordConverter, regeneratesTheShippedTextsExactly) {
    // The shipped texts are this converter's output: a cleaned-up file stays clean when regenerated.
    const char* folder = std::getenv("QUILLON_SWORD_DATA");
    const std::filesystem::path modules =
        folder ? std::filesystem::path(folder)
               : quillon::testing::sourceDirectory() / ".." / "shared" / "data" / "sword";
    quillon::testing::TemporaryFolder sword;
    for (const char* name : {"ASV", "YLT"}) {
        const auto zip = modules / (std::string(name) + ".zip");
        if (!std::filesystem::exists(zip))
            GTEST_SKIP() << "the SWORD modules are not at " << modules;
        const std::string unzip = "unzip -q -o '" + zip.string() + "' -d '" + sword.path().string() + "'";
        if (std::system(unzip.c_str()) != 0)
            GTEST_SKIP() << "unzip could not open " << zip;
    }
    SwordConverter converter(sword.path());
    for (const char* name : {"ASV", "YLT"}) {
        SwordConversion report;
        const std::string text = converter.convert(name, report);
        const auto shipped = quillon::testing::readText(quillon::testing::sourceDirectory() / "resources" / "bibles" /
                                                        (std::string(name) + ".txt"));
        EXPECT_TRUE(text == shipped) << name << " differs from the shipped text";
    }
}

TEST(SwordConverter, anUnknownModuleIsAClearError) {
    quillon::testing::TemporaryFolder empty;
    SwordConverter converter(empty.path());
    SwordConversion report;
    EXPECT_THROW(converter.convert("NOSUCHMODULE", report), SwordConversionError);
}
