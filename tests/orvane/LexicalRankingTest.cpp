#include "orvane/LexicalRanking.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane {
namespace {

TEST(LexicalRanking, scoresTheShareOfDistinctQueryTermsTheDocumentHolds) {
    struct Case {
        const char* query;
        const char* title;
        const char* text;
        double expected;
    };
    const Case cases[] = {
        {"grace faith", "Amazing grace", "", 0.5},
        // A repeated query word is one term, not two.
        {"grace grace faith", "", "grace abounds", 0.5},
        {"Grace FAITH", "", "faith and grace", 1.0},
        // Frequency within the document does not matter.
        {"grace", "", "grace grace grace grace", 1.0},
        {"hope", "Grace", "faith", 0.0},
        // Only stop words and short words: nothing to look for.
        {"the and a", "the and a", "", 0.0},
        {"grace", "", "", 0.0},
        {"", "grace", "grace", 0.0},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(LexicalRanking::score(c.query, c.title, c.text, nullptr, 0.0), c.expected) << c.query;
}

TEST(LexicalRanking, weightsTermsAndGivesUnknownTermsTheUnseenWeight) {
    const auto idf = InverseDocumentFrequency::make(4, {{"grace", 1}, {"faith", 4}});
    const double grace = std::log(4.0 + 1);
    const double faith = std::log(1.0 + 1);
    EXPECT_DOUBLE_EQ(LexicalRanking::score("grace faith", "", "grace", &idf, idf.unseen), grace / (grace + faith));
    EXPECT_DOUBLE_EQ(LexicalRanking::score("grace faith", "", "faith", &idf, idf.unseen), faith / (grace + faith));
    // "hope" is unknown to the weighting, so it weighs what the caller says an unseen term weighs.
    EXPECT_DOUBLE_EQ(LexicalRanking::score("hope faith", "", "faith", &idf, 3.0), faith / (3.0 + faith));
    // With every weight zero nothing can be said about the match.
    const InverseDocumentFrequency zero{{{"grace", 0.0}}, 0.0};
    EXPECT_DOUBLE_EQ(LexicalRanking::score("grace", "", "grace", &zero, 0.0), 0.0);
}

} // namespace
} // namespace orvane
