#include "core/Equality.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tgp {
namespace {

struct NumberCase {
    double a, b, tolerance;
    bool equal;
};

class NumberEquality : public testing::TestWithParam<NumberCase> {};

TEST_P(NumberEquality, FollowsTheRule) {
    const auto& c = GetParam();
    double tolerance = c.tolerance;
    EXPECT_EQ(IsEqual(c.a, c.b, tolerance), c.equal) << c.a << " vs " << c.b << " tol " << c.tolerance;
    EXPECT_EQ(IsEqualWithin(c.a, c.b, c.tolerance), c.equal);
}

constexpr double kInf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(Cases, NumberEquality,
                         testing::Values(NumberCase{1, 1, 1e-6, true},            // identical
                                         NumberCase{kInf, kInf, 1e-6, true},      // identical infinities
                                         NumberCase{5e-7, -5e-7, 1e-6, true},     // both below the tolerance
                                         NumberCase{1e-6, 0, 1e-6, false},        // "below" is strict
                                         NumberCase{0, 1e-7, 0, true},            // 0 selects the default
                                         NumberCase{1.0000005, 1, 1e-6, true},    // ratio within
                                         NumberCase{1.000002, 1, 1e-6, false},    // ratio outside
                                         NumberCase{-1.0000005, -1, 1e-6, true},  // ratio of negatives
                                         NumberCase{1, -1, 1e-6, false},          // opposite signs
                                         NumberCase{5, 0, 1e-6, false},  // no ratio with a zero divisor
                                         NumberCase{100, 101, -0.02,
                                                    true},  // the magnitude of the tolerance counts
                                         NumberCase{std::nan(""), std::nan(""), 1e-6, false}));

TEST(NumberEquality, ZeroToleranceIsReplacedByTheDefaultAndWrittenBack) {
    double tolerance = 0;
    EXPECT_TRUE(IsEqual(3.0, 3.0, tolerance));
    EXPECT_EQ(tolerance, 1e-06);
}

TEST(NumberEquality, GivenToleranceIsLeftAlone) {
    double tolerance = 0.5;
    EXPECT_TRUE(IsEqual(1.2, 1.0, tolerance));
    EXPECT_EQ(tolerance, 0.5);
}

TEST(TextEquality, ExactWithoutToleranceTrimmedAndCaselessWithOne) {
    EXPECT_TRUE(IsEqual("mm", "mm"));
    EXPECT_FALSE(IsEqual("mm", " MM "));
    EXPECT_TRUE(IsEqual("mm", " MM ", 1e-6));
    EXPECT_FALSE(IsEqual("mm", "m m", 1e-6));
    EXPECT_FALSE(IsEqual("mm", "cm", 1e-6));
    EXPECT_TRUE(IsEqual("", "   ", 0.0));
}

TEST(ArrayEquality, CountsMustMatchAndElementsFollowTheNumberRule) {
    const std::vector<double> a{1, 2, 3}, nearly{1.0000001, 2, 3}, shorter{1, 2};
    double tolerance = 0;
    EXPECT_TRUE(IsEqual(a, nearly, tolerance));
    EXPECT_EQ(tolerance, 1e-06);
    EXPECT_FALSE(IsEqual(a, shorter, tolerance));
    const std::vector<double> far{1, 2, 3.1};
    EXPECT_FALSE(IsEqual(a, far, tolerance));
    const std::vector<double> none;
    EXPECT_TRUE(IsEqual(none, none, tolerance));
}

}  // namespace
}  // namespace tgp
