#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "geometry/Geometry.h"
#include "support/Expectations.h"

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

double Fixed360(double angle) {
    Geometry::FixAngle360(angle);
    return angle;
}

TEST(GeometryPi, IsTheShortenedLiteralInEveryConversion) {
    EXPECT_EQ(Geometry::pi(), 3.14159265358979);
    EXPECT_EQ(Geometry::DegToRad(90), 1.570796326794895);
    EXPECT_GT(Geometry::DegFromRad(M_PI), 180);
    EXPECT_EQ(Geometry::DegFromRad(kShortPi), 180);
}

TEST(GeometryFixAngle360, FoldsIntoTheClosedRangeAsTheLoopDoesBitForBit) {
    const std::pair<double, double> cases[] = {{-0.5, -0.5 + kShortTwoPi},
                                               {7, 7 - kShortTwoPi},
                                               {kShortTwoPi, kShortTwoPi},  // 2 pi stays, not 0
                                               {2 * kShortTwoPi, kShortTwoPi},
                                               {0, 0},
                                               {-kShortTwoPi, 0},
                                               {7000000, 3.7802735708596904}};
    for (const auto& [angle, expected] : cases) EXPECT_EQ(Fixed360(angle), expected) << angle;
    // The loop's own result at any size, not a remainder: spread over the binades, both signs.
    std::mt19937_64 random(16);
    std::uniform_real_distribution<double> unit(0, 1);
    for (const auto& [largest, count] : {std::pair{1e3, 1000}, {1e5, 100}, {1e7, 10}, {1e9, 3}}) {
        for (int i = 0; i < count; ++i) {
            const double a = (unit(random) < 0.5 ? -1 : 1) * std::pow(largest, unit(random));
            EXPECT_EQ(Fixed360(a), LoopedFixAngle360(a)) << a;
        }
    }
    // Exact halves of the spacing (ties), binade edges and tiny angles.
    for (double a : {std::ldexp(1.0, 20), std::ldexp(1.0, 21) - std::ldexp(1.0, -32), std::ldexp(3.0, 19),
                     8.0, -kShortTwoPi * 1000, -3.3e6, 1e-300, -1e-300})
        EXPECT_EQ(Fixed360(a), LoopedFixAngle360(a)) << a;
    for (double a : {-1e12, 1e20, -DBL_MAX}) {
        const double angle = Fixed360(a);
        EXPECT_TRUE(angle >= 0 && angle <= kShortTwoPi) << a;
    }
    for (double a : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                     -std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(std::isnan(Fixed360(a))) << a;
        bool rotate = true, mirror = true;
        Geometry::FixAngle90(a, &rotate, &mirror);
        EXPECT_TRUE(std::isnan(a));
        EXPECT_FALSE(rotate || mirror);
    }
}

enum class Normaliser { Fix180, Fix90, Fix180180, Fix9090 };

void Apply(Normaliser which, double& angle, bool* rotate, bool* mirror) {
    switch (which) {
        case Normaliser::Fix180: Geometry::FixAngle180(angle, rotate, mirror); break;
        case Normaliser::Fix90: Geometry::FixAngle90(angle, rotate, mirror); break;
        case Normaliser::Fix180180: Geometry::FixAngle180180(angle); break;
        case Normaliser::Fix9090: Geometry::FixAngle9090(angle, rotate, mirror); break;
    }
}

TEST(GeometryFixAngle, TablesOfResultsAndFlags) {
    const double p = kShortPi, threeHalf = p + p / 2;
    struct Case {
        Normaliser which;
        double angle, expected;
        bool rotate180, xMirror;
    };
    const Case cases[] = {
        // FixAngle180: [0, pi], Rotate180 when pi is taken off.
        {Normaliser::Fix180, 1.5 * p, 1.5 * p - p, true, false},
        {Normaliser::Fix180, p, p, false, false},
        {Normaliser::Fix180, -0.5, -0.5 + 2 * p - p, true, false},
        // FixAngle90: (-pi/2, pi/2], both flags in the first row.
        {Normaliser::Fix90, 0.75 * p, 0.75 * p - p, false, true},
        {Normaliser::Fix90, 1.25 * p, 1.25 * p - p, true, false},
        {Normaliser::Fix90, 1.75 * p, 1.75 * p - 2 * p, true, true},
        {Normaliser::Fix90, p / 2, p / 2, false, false},
        {Normaliser::Fix90, p, 0, false, true},
        {Normaliser::Fix90, 2 * p, 0, true, true},
        // FixAngle180180: (-pi, pi].
        {Normaliser::Fix180180, 1.5 * p, 1.5 * p - 2 * p, false, false},
        {Normaliser::Fix180180, -p, p, false, false},
        // FixAngle9090: (-pi/2, pi/2], XMirror always false.
        {Normaliser::Fix9090, 0.75 * p, 0.75 * p - p, true, false},
        {Normaliser::Fix9090, 1.25 * p, 1.25 * p - p, false, false},  // FixAngle180 took pi off, unflagged
        // 3 pi/2 as a double, less pi, is one unit in the last place above pi/2: it folds once more.
        {Normaliser::Fix9090, threeHalf, threeHalf - p - p, true, false},
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
    for (int i = -400; i <= 400; ++i) {  // the ranges hold over many turns, flags omitted
        const double a = i * 0.0731;
        double a180 = a, a90 = a, a180180 = a, a9090 = a;
        Geometry::FixAngle180(a180);
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

// Both snap the caller's variable to 1 within 1E-06 and to 0 within 1E-06, and answer 713 beyond 1.
TEST(GeometryInverseTrig, SnapNearOneAndZeroAndRefuseBeyondOne) {
    struct Case {
        bool sine;
        double x, snapped, expected;  // the variable afterwards; the result within 1E-14
    };
    const Case cases[] = {
        {true, 1.0000005, 1, kShortPi / 2},    {true, 0.9999995, 1, kShortPi / 2},
        {true, -1.0000005, -1, -kShortPi / 2}, {true, 1e-7, 0, 0},
        {true, -0.8, -0.8, std::asin(-0.8)},   {false, 1, 1, 0},
        {false, -0.5, -0.5, 2 * M_PI / 3},     {false, 1e-7, 0, kShortPi / 2},
        {false, -1.0000009, -1, kShortPi},     {false, 0.6, 0.6, std::acos(0.6)},
    };
    for (const auto& c : cases) {
        double x = c.x;
        EXPECT_NEAR(c.sine ? Geometry::ASin(x) : Geometry::ACos(x), c.expected, 1e-14) << c.x;
        EXPECT_EQ(x, c.snapped) << c.x;
    }
    double up = 1.0000005, minusOne = -1, nearZero = 1e-7;
    EXPECT_EQ(Geometry::ASin(up), kShortPi / 2);  // the shortened pi exactly
    EXPECT_EQ(Geometry::ACos(minusOne), kShortPi);
    EXPECT_EQ(Geometry::ACos(nearZero), kShortPi / 2);
    for (double v : {1.1, -1.000002}) {
        double x = v, y = v;
        ExpectError(713, "ASin(X): X must smaller than 1.", std::to_string(v), [&] { Geometry::ASin(x); });
        ExpectError(713, "ACos(X): X must smaller than 1.", std::to_string(v), [&] { Geometry::ACos(y); });
    }
}

}  // namespace
}  // namespace tgp
