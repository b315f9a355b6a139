#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/Rounding.h"
#include "core/Timer.h"

namespace tgp {
namespace {

TEST(RoundHalfEven, HalvesGoToTheEvenNeighbour) {
    struct Case {
        double value;
        int digits;
        double expected;
    };
    const Case cases[] = {
        {2.5, 0, 2},
        {3.5, 0, 4},
        {-2.5, 0, -2},
        {-3.5, 0, -4},
        {0.125, 2, 0.12},
        {0.375, 2, 0.38},
        {1.2345678949, 8, 1.23456789},
        {-1e-12, 8, 0},
        {2.6, 0, 3},
        {1234.0, 0, 1234},
        {0.0, 3, 0},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(RoundHalfEven(c.value, c.digits), c.expected) << c.value;
}

TEST(RoundHalfEven, NonFiniteAndHugeValuesPassThrough) {
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(RoundHalfEven(inf, 2), inf);
    EXPECT_TRUE(std::isnan(RoundHalfEven(std::nan(""), 2)));
    EXPECT_EQ(RoundHalfEven(1e300, 12), 1e300);
}

TEST(Timer, ReadsSecondsWithinOneDay) {
    const double t = Timer();
    EXPECT_GE(t, 0.0);
    EXPECT_LT(t, 86400.0);
}

}  // namespace
}  // namespace tgp
