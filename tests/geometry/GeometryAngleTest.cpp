#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "geometry/Geometry.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;

constexpr double kShortPi = 3.14159265358979;
constexpr double kShortTwoPi = 6.28318530717958;

// The normalising loop as written, for comparison: subtract full turns, then add them.
double LoopedFixAngle360(double angle) {
    while (angle > kShortTwoPi) angle -= kShortTwoPi;
    while (angle < 0) angle += kShortTwoPi;
    return angle;
}

TEST(GeometryPi, IsTheShortenedLiteral) {
    EXPECT_EQ(Geometry::pi(), 3.14159265358979);
    EXPECT_NE(Geometry::pi(), M_PI);
}

TEST(GeometryPi, DegreeConversionsUseItInOrder) {
    EXPECT_EQ(Geometry::DegToRad(180), 3.14159265358979);
    EXPECT_EQ(Geometry::DegToRad(90), 1.570796326794895);
    EXPECT_GT(Geometry::DegFromRad(M_PI), 180);
    EXPECT_EQ(Geometry::DegFromRad(kShortPi), 180);
}

// ---- FixAngle360 -------------------------------------------------------------------------------

struct FixCase {
    double angle;
    double expected;
};

TEST(GeometryFixAngle360, FoldsIntoClosedRange) {
    const std::vector<FixCase> cases = {
        {-0.5, -0.5 + kShortTwoPi},
        {7, 7 - kShortTwoPi},
        {kShortTwoPi, kShortTwoPi},      // exactly 2 pi stays, not 0
        {2 * kShortTwoPi, kShortTwoPi},  // 4 pi gives 2 pi
        {0, 0},
        {kShortPi, kShortPi},
        {-kShortTwoPi, 0},
    };
    for (const auto& c : cases) {
        double angle = c.angle;
        Geometry::FixAngle360(angle);
        EXPECT_EQ(angle, c.expected) << c.angle;
    }
}

// The loop's own result at any size, not a remainder: 7,000,000 rad takes a million turns and more.
TEST(GeometryFixAngle360, MatchesTheLoopBitForBitAtAnySize) {
    double angle = 7000000;
    Geometry::FixAngle360(angle);
    EXPECT_EQ(angle, 3.7802735708596904);
    std::mt19937_64 random(16);
    std::uniform_real_distribution<double> unit(0, 1);
    struct Range {
        double largest;
        int count;
    };
    for (const Range& range : {Range{1e3, 2000}, Range{1e5, 300}, Range{1e7, 30}, Range{1e9, 3}}) {
        for (int i = 0; i < range.count; ++i) {
            // Spread over the binades below the largest, both signs.
            const double a = (unit(random) < 0.5 ? -1 : 1) * std::pow(range.largest, unit(random));
            double fixed = a;
            Geometry::FixAngle360(fixed);
            EXPECT_EQ(fixed, LoopedFixAngle360(a)) << a;
        }
    }
    // Near 1E9 (some 1.6E8 turns of the plain loop each).
    for (int i = 0; i < 4; ++i) {
        const double a = (i % 2 ? -1 : 1) * 1e9 * (0.5 + unit(random) / 2);
        double fixed = a;
        Geometry::FixAngle360(fixed);
        EXPECT_EQ(fixed, LoopedFixAngle360(a)) << a;
    }
    // Exact halves of the spacing (ties) and binade edges.
    for (double a : {std::ldexp(1.0, 20), std::ldexp(1.0, 21) - std::ldexp(1.0, -32), std::ldexp(3.0, 19),
                     4.0, 8.0, kShortTwoPi * 3, -kShortTwoPi, -kShortTwoPi * 1000}) {
        double fixed = a;
        Geometry::FixAngle360(fixed);
        EXPECT_EQ(fixed, LoopedFixAngle360(a)) << a;
    }
}

TEST(GeometryFixAngle360, MatchesTheLoopBitForBitUpToAMillionTurns) {
    const std::vector<double> angles = {12345.678, -98765.4321, 1e5 + 0.1, -3.3e6,
                                        6.28e6,    -6.28e6,     1e-300,    -1e-300};
    for (double a : angles) {
        double angle = a;
        Geometry::FixAngle360(angle);
        EXPECT_EQ(angle, LoopedFixAngle360(a)) << a;
    }
}

TEST(GeometryFixAngle360, HugeAndNonFiniteAnglesReturn) {
    for (double a : {1e7 * kShortTwoPi, -1e12, 1e20, -1e300, DBL_MAX, -DBL_MAX}) {
        double angle = a;
        Geometry::FixAngle360(angle);
        EXPECT_TRUE(std::isfinite(angle)) << a;
        EXPECT_GE(angle, 0) << a;
        EXPECT_LE(angle, kShortTwoPi) << a;
    }
    for (double a : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                     -std::numeric_limits<double>::infinity()}) {
        double angle = a;
        Geometry::FixAngle360(angle);
        EXPECT_TRUE(std::isnan(angle)) << a;
        double other = a;
        bool rotate = true, mirror = true;
        Geometry::FixAngle90(other, &rotate, &mirror);
        EXPECT_TRUE(std::isnan(other));
        EXPECT_FALSE(rotate);
        EXPECT_FALSE(mirror);
    }
}

// ---- the flagged normalisers -------------------------------------------------------------------

enum class Normaliser { Fix180, Fix90, Fix180180, Fix9090 };

struct FlagCase {
    Normaliser which;
    double angle;
    double expected;
    bool rotate180;
    bool xMirror;
};

void Apply(Normaliser which, double& angle, bool* rotate, bool* mirror) {
    switch (which) {
        case Normaliser::Fix180: Geometry::FixAngle180(angle, rotate, mirror); break;
        case Normaliser::Fix90: Geometry::FixAngle90(angle, rotate, mirror); break;
        case Normaliser::Fix180180: Geometry::FixAngle180180(angle); break;
        case Normaliser::Fix9090: Geometry::FixAngle9090(angle, rotate, mirror); break;
    }
}

TEST(GeometryFixAngle, TablesOfResultsAndFlags) {
    const double p = kShortPi;
    const double threeHalf = p + p / 2;
    const std::vector<FlagCase> cases = {
        // FixAngle180: [0, pi], Rotate180 when pi is taken off.
        {Normaliser::Fix180, 1.5 * p, 1.5 * p - p, true, false},
        {Normaliser::Fix180, p, p, false, false},
        {Normaliser::Fix180, 0.25 * p, 0.25 * p, false, false},
        {Normaliser::Fix180, -0.5, -0.5 + 2 * p - p, true, false},
        // FixAngle90: (-pi/2, pi/2], both flags in the first row.
        {Normaliser::Fix90, 0.75 * p, 0.75 * p - p, false, true},
        {Normaliser::Fix90, 1.25 * p, 1.25 * p - p, true, false},
        {Normaliser::Fix90, 1.75 * p, 1.75 * p - 2 * p, true, true},
        {Normaliser::Fix90, p / 2, p / 2, false, false},
        {Normaliser::Fix90, p, 0, false, true},
        {Normaliser::Fix90, threeHalf, threeHalf - p, true, false},
        {Normaliser::Fix90, 2 * p, 0, true, true},
        // FixAngle180180: (-pi, pi].
        {Normaliser::Fix180180, 1.5 * p, 1.5 * p - 2 * p, false, false},
        {Normaliser::Fix180180, p, p, false, false},
        {Normaliser::Fix180180, -p, p, false, false},
        // FixAngle9090: (-pi/2, pi/2], XMirror always false.
        {Normaliser::Fix9090, 0.75 * p, 0.75 * p - p, true, false},
        {Normaliser::Fix9090, 1.25 * p, 1.25 * p - p, false, false},  // FixAngle180 took pi off, unflagged
        // 3 pi/2 as a double, less pi, is one unit in the last place above pi/2: it folds once more.
        {Normaliser::Fix9090, threeHalf, threeHalf - p - p, true, false},
        {Normaliser::Fix9090, 1.75 * p, 1.75 * p - p - p, true, false},
        {Normaliser::Fix9090, p / 2, p / 2, false, false},
    };
    for (const auto& c : cases) {
        double angle = c.angle;
        bool rotate = !c.rotate180, mirror = !c.xMirror;  // the members must overwrite both
        Apply(c.which, angle, &rotate, &mirror);
        EXPECT_EQ(angle, c.expected) << static_cast<int>(c.which) << " " << c.angle;
        if (c.which == Normaliser::Fix180180) continue;
        EXPECT_EQ(rotate, c.rotate180) << static_cast<int>(c.which) << " " << c.angle;
        EXPECT_EQ(mirror, c.xMirror) << static_cast<int>(c.which) << " " << c.angle;
    }
}

TEST(GeometryFixAngle, RangesHoldOverManyTurns) {
    for (int i = -400; i <= 400; ++i) {
        const double a = i * 0.0731;
        double a180 = a, a90 = a, a180180 = a, a9090 = a;
        Geometry::FixAngle180(a180);  // flags may be omitted
        Geometry::FixAngle90(a90);
        Geometry::FixAngle180180(a180180);
        Geometry::FixAngle9090(a9090);
        EXPECT_TRUE(a180 >= 0 && a180 <= kShortPi) << a;
        EXPECT_TRUE(a90 > -kShortPi / 2 && a90 <= kShortPi / 2) << a;
        EXPECT_TRUE(a180180 > -kShortPi && a180180 <= kShortPi) << a;
        EXPECT_TRUE(a9090 > -kShortPi / 2 && a9090 <= kShortPi / 2) << a;
        EXPECT_NEAR(std::tan(a90), std::tan(a), 1e-6 * (1 + std::fabs(std::tan(a))));  // same line
        EXPECT_NEAR(std::cos(a180180), std::cos(a), 1e-9);                             // same direction
        EXPECT_NEAR(std::sin(a180180), std::sin(a), 1e-9);
    }
}

// ---- ASin, ACos ------------------------------------------------------------------------------

struct InverseTrigCase {
    double x;
    double snapped;   // the caller's variable afterwards
    double expected;  // the result, to within the shortened pi (3.2E-15)
};

TEST(GeometryInverseTrig, ASinSnapsNearOneAndZero) {
    const std::vector<InverseTrigCase> cases = {
        {1.0000005, 1, kShortPi / 2},    {0.9999995, 1, kShortPi / 2},
        {-1.0000005, -1, -kShortPi / 2}, {1e-7, 0, 0},
        {0.5, 0.5, std::asin(0.5)},      {-0.8, -0.8, std::asin(-0.8)},
    };
    for (const auto& c : cases) {
        double x = c.x;
        EXPECT_NEAR(Geometry::ASin(x), c.expected, 1e-14) << c.x;
        EXPECT_EQ(x, c.snapped) << c.x;
    }
    double up = 1.0000005, down = -1;
    EXPECT_EQ(Geometry::ASin(up), kShortPi / 2);  // the shortened pi exactly
    EXPECT_EQ(Geometry::ASin(down), -kShortPi / 2);
}

TEST(GeometryInverseTrig, ACosSnapsNearOneAndZero) {
    const std::vector<InverseTrigCase> cases = {
        {-1, -1, kShortPi},
        {1, 1, 0},
        {-0.5, -0.5, 2 * M_PI / 3},
        {1e-7, 0, kShortPi / 2},
        {-1.0000009, -1, kShortPi},
        {0.6, 0.6, std::acos(0.6)},
        {-0.6, -0.6, std::acos(-0.6)},
    };
    for (const auto& c : cases) {
        double x = c.x;
        EXPECT_NEAR(Geometry::ACos(x), c.expected, 1e-14) << c.x;
        EXPECT_EQ(x, c.snapped) << c.x;
    }
    double minusOne = -1, nearZero = 1e-7;
    EXPECT_EQ(Geometry::ACos(minusOne), kShortPi);  // the shortened pi exactly
    EXPECT_EQ(Geometry::ACos(nearZero), kShortPi / 2);
}

TEST(GeometryInverseTrig, OutsideTheUnitRangeIs713) {
    for (double v : {1.1, -1.1, 1.000002, -5.0}) {
        double x = v;
        ExpectError(713, "ASin(X): X must smaller than 1.", std::to_string(v), [&] { Geometry::ASin(x); });
        x = v;
        ExpectError(713, "ACos(X): X must smaller than 1.", std::to_string(v), [&] { Geometry::ACos(x); });
    }
}

}  // namespace
}  // namespace tgp
