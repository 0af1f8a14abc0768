#include "orvane/InverseDocumentFrequency.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane {
namespace {

TEST(InverseDocumentFrequency, rareTermsWeighMoreAndNothingIsNegative) {
    const auto idf = InverseDocumentFrequency::make(10, {{"grace", 1}, {"faith", 5}, {"everywhere", 10}, {"odd", 0}});
    EXPECT_DOUBLE_EQ(idf.weights.at("grace"), std::log(10.0 / 1 + 1));
    EXPECT_DOUBLE_EQ(idf.weights.at("faith"), std::log(10.0 / 5 + 1));
    EXPECT_DOUBLE_EQ(idf.weights.at("everywhere"), std::log(2.0));
    // A count of zero is read as one rather than dividing by zero.
    EXPECT_DOUBLE_EQ(idf.weights.at("odd"), std::log(11.0));
    EXPECT_DOUBLE_EQ(idf.unseen, std::log(11.0));
    EXPECT_DOUBLE_EQ(idf.weight("missing", 7.0), 7.0);
    // An empty collection counts as one document.
    const auto empty = InverseDocumentFrequency::make(0, {{"word", 1}});
    EXPECT_DOUBLE_EQ(empty.weights.at("word"), std::log(2.0));
    EXPECT_DOUBLE_EQ(empty.unseen, std::log(2.0));
}

} // namespace
} // namespace orvane
