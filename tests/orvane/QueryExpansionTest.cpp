#include "orvane/QueryExpansion.h"
#include "orvane/CorrectedSearch.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using CorrectionKind = QueryCorrection::Kind;
using Strings = std::vector<std::string>;

QueryExpansion expansionOver(std::initializer_list<const char*> words, double minimumRatio = 0.82) {
    QueryExpansion expansion;
    for (const char* word : words)
        expansion.vocabulary.emplace(word);
    expansion.minimumRatio = minimumRatio;
    return expansion;
}

TEST(QueryExpansion, correctionNeedsOneClearlyBestWord) {
    struct Case {
        QueryExpansion expansion;
        std::string token;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {expansionOver({"forgiveness", "grace"}), "forgivness", "forgiveness"},
        // Both at 0.8: below 0.82 neither counts; at 0.8 they tie and cancel.
        {expansionOver({"grace", "grape"}), "grate", std::nullopt},
        {expansionOver({"grace", "grape"}, 0.8), "grate", std::nullopt},
        {expansionOver({"grace"}, 0.8), "grate", "grace"},
        // Three characters are never corrected.
        {expansionOver({"god"}, 0.1), "gdo", std::nullopt},
        // A length gap of three or more is not compared at all.
        {expansionOver({"faithfulness"}, 0.1), "faithful", std::nullopt},
        {expansionOver({"faithfulne"}, 0.1), "faithful", "faithfulne"},
        {expansionOver({}), "anything", std::nullopt},
        {expansionOver({"\u00e9glise"}, 0.8), "eglise", "\u00e9glise"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.expansion.correction(c.token), c.expected) << c.token;
}

TEST(QueryExpansion, expandAddsSynonymsAndCorrections) {
    const QueryExpansion expansion =
        expansionOver({"forgiveness", "mercy", "pardon", "prayer", "church", "assembly", "worship"});
    {
        const auto [terms, corrections] = expansion.expand("Forgivness and prayer");
        EXPECT_EQ(terms, (Strings{"forgivness", "forgiveness", "pardon", "mercy", "prayer"}));
        EXPECT_EQ(corrections, (std::vector<QueryCorrection>{{"forgivness", "forgiveness", CorrectionKind::spelling}}));
    }
    {
        const auto [terms, corrections] = expansion.expand("the church");
        EXPECT_EQ(terms, (Strings{"church", "assembly"}));
        EXPECT_EQ(corrections, (std::vector<QueryCorrection>{{"church", "assembly", CorrectionKind::synonym}}));
    }
    {
        // Unknown and too short to correct: kept as typed, nothing recorded; repeats stay.
        const auto [terms, corrections] = expansion.expand("zzz zzz, I");
        EXPECT_EQ(terms, (Strings{"zzz", "zzz"}));
        EXPECT_TRUE(corrections.empty());
    }
    for (const char* query : {"", "   ", "the and of", "\U0001F64F\U0001F64F", "\xff\xfe\xfd"}) {
        const auto [terms, corrections] = expansion.expand(query);
        EXPECT_TRUE(terms.empty()) << query;
        EXPECT_TRUE(corrections.empty()) << query;
    }
}

TEST(QueryExpansion, synonymTableHoldsTwentyOneGroups) {
    const auto groups = QueryExpansion::synonymGroups();
    ASSERT_EQ(groups.size(), 21u);
    std::size_t words = 0;
    for (const auto& group : groups)
        words += group.size();
    EXPECT_EQ(words, 56u);
    EXPECT_EQ(groups[5][2], "lords supper");
    EXPECT_EQ(groups[20][0], "projector");
    const auto others = QueryExpansion::synonyms("worship");
    EXPECT_EQ(Strings(others.begin(), others.end()), (Strings{"praise", "adoration"}));
    EXPECT_TRUE(QueryExpansion::synonyms("grace").empty());
}

TEST(QueryCorrection, bannerNamesOnlySpellingCorrections) {
    const std::vector<QueryCorrection> mixed = {{"forgivnes", "forgiveness", CorrectionKind::spelling},
                                                {"church", "assembly", CorrectionKind::synonym},
                                                {"prayr", "prayer", CorrectionKind::spelling}};
    EXPECT_EQ(QueryCorrection::bannerText(mixed), "Showing results for forgiveness, prayer");
    EXPECT_EQ(QueryCorrection::bannerText({{"church", "assembly", CorrectionKind::synonym}}), std::nullopt);
    EXPECT_EQ(QueryCorrection::bannerText({}), std::nullopt);
}

TEST(QueryCorrection, kindsRoundTripThroughTheirRawValues) {
    for (CorrectionKind kind : {CorrectionKind::spelling, CorrectionKind::synonym})
        EXPECT_EQ(kindFromRawValue(rawValue(kind)), kind);
    EXPECT_EQ(rawValue(CorrectionKind::synonym), "synonym");
    EXPECT_EQ(kindFromRawValue("Spelling"), std::nullopt);
}

} // namespace
} // namespace orvane
