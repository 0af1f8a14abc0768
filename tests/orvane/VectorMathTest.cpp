#include "orvane/VectorMath.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane {
namespace {

TEST(VectorMath, cosineUsesTheCommonLengthAndTreatsEmptyVectorsAsUnrelated) {
    struct Case {
        std::vector<double> a;
        std::vector<double> b;
        double expected;
    };
    const Case cases[] = {
        {{1, 0}, {1, 0}, 1.0},
        {{1, 0}, {0, 1}, 0.0},
        {{1, 2}, {-1, -2}, -1.0},
        {{3, 4}, {6, 8}, 1.0},
        // Only the shared first two elements count: the trailing 100 must not pull the vectors apart.
        {{1, 1, 100}, {1, 1}, 1.0},
        {{0, 0}, {1, 1}, 0.0},
        {{}, {1}, 0.0},
        {{}, {}, 0.0},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(VectorMath::cosine(c.a, c.b), c.expected, 1e-12) << c.a.size() << " x " << c.b.size();
}

TEST(VectorMath, scoreMapsTheCosineIntoTheUnitInterval) {
    const std::pair<double, double> cases[] = {
        {1.0, 1.0}, {1.0000001, 1.0}, {5.0, 1.0}, {0.0, 0.5}, {0.5, 0.75}, {-1.0, 0.0}, {-3.0, 0.0},
    };
    for (const auto& [cosine, expected] : cases)
        EXPECT_DOUBLE_EQ(VectorMath::score(cosine), expected) << cosine;
    // Just under 1 must not round up to a perfect score.
    EXPECT_LT(VectorMath::score(0.9999), 1.0);
}

} // namespace
} // namespace orvane
