#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "geometry/Vector.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

constexpr double kShortPi = 3.14159265358979;  // the library's pi literal
const std::string kZeroUnitVec = "Vector unitvec(u) = u = 0";
const std::string kSubscript = "Subscript out of range";

TEST(VectorArithmetic, ShorterOperandsZeroTheTailAndListsScalePointByPoint) {
    const std::vector<std::pair<std::vector<Point>, Point>> sums = {
        {{{1, 1}, {1, 2, 3}}, {2, 3, 0}},             // whichever side is shorter
        {{{1, 2, 3}, {1, 1}, {1, 1, 1}}, {3, 4, 1}},  // the zeroed tail takes part in later sums
        {{{1, 2, 3, 4}, {1, 1, 1, 1}}, {2, 3, 4, 5}},
        {{{5, -6}}, {5, -6}},
    };
    for (const auto& [items, expected] : sums) EXPECT_EQ(Vector::vplusv(items), expected);
    ExpectError(9, kSubscript, [] { Vector::vplusv(std::span<const Point>{}); });
    EXPECT_EQ(Vector::vminusv({5, 7, 9}, {1, 2}), (Point{4, 5, 0}));
    EXPECT_EQ(Vector::VectorAB({1, 2, 3}, {4, 6, 8}), (Point{3, 4, 5}));
    const std::vector<Point> points = {{1, 0, 0}, {1, 2, 3}}, tripled = {{3, 0, 0}, {3, 6, 9}};
    EXPECT_EQ(Vector::vxr(points, 3), tripled);
    EXPECT_EQ(Vector::vxr(std::vector<std::vector<Point>>{points, {{1, 1}}}, 3),
              (std::vector<std::vector<Point>>{tripled, {{3, 3}}}));
}

TEST(VectorAngle, QuadrantsUseTheShortenedPiAndTurnsStayWithinPi) {
    const std::vector<std::pair<Point, double>> exact = {
        {{0, 0}, 0}, {{0, -5}, -kShortPi / 2}, {{0, 3, 99}, kShortPi / 2}, {{-1, 0}, kShortPi}, {{2, 0}, 0}};
    for (const auto& [v, expected] : exact) EXPECT_EQ(Vector::vAngle(v), expected) << v[0] << "," << v[1];
    const std::vector<std::pair<Point, double>> near = {{{-1, 1}, std::atan(-1.0) + kShortPi},
                                                        {{-1, -1}, std::atan(1.0) - kShortPi},
                                                        {{-1, -1e-300}, -kShortPi},
                                                        {{3, -4}, std::atan2(-4.0, 3.0)}};
    for (const auto& [v, expected] : near) EXPECT_NEAR(Vector::vAngle(v), expected, 1e-15) << v[0];
    ExpectError(9, kSubscript, [] { Vector::vAngle(Point{1}); });
    EXPECT_EQ(Vector::vAngle({1, 0}, {-1, 0}), kShortPi);
    EXPECT_EQ(Vector::vAngle({0, 1}, {0, -1}), -kShortPi);  // -pi is not corrected (strict test)
    for (int i = 0; i < 24; ++i) {
        for (int j = 0; j < 24; ++j) {
            const double a = i * kShortPi / 12, b = j * kShortPi / 12 + 0.01;
            const double d = Vector::vAngle({std::cos(a), std::sin(a)}, {std::cos(b), std::sin(b)});
            EXPECT_TRUE(d >= -kShortPi && d <= kShortPi) << d;
            EXPECT_NEAR(std::cos(d), std::cos(b - a), 1e-12);  // the same turn, folded
            EXPECT_NEAR(std::sin(d), std::sin(b - a), 1e-12);
        }
    }
    EXPECT_TRUE(PointsNear(Vector::vRotate({3, 0, 7}, kShortPi / 2), {0, 3}, 1e-13));  // z is dropped
    ExpectError(9, kSubscript, [] { Vector::vRotate({3}, 1); });
}

TEST(VectorProducts, LengthsCrossDotAndProjection) {
    EXPECT_EQ(Vector::vLength(Point{}), 0);
    EXPECT_EQ(Vector::vLength({1, 1, 1, 1}), 2);
    EXPECT_EQ(Vector::vLength({1, 1, 1}, {4, 5, 1}), 5);
    EXPECT_EQ(Vector::vxv({1, 2, 3, 99}, {4, 5, 6}), (Point{-3, 6, -3}));  // a fourth element is not read
    EXPECT_EQ(Vector::vxv({0, 1, 0}, {1, 0, 0}), (Point{0, 0, -1}));
    ExpectError(9, kSubscript, [] { Vector::vxv({1, 0}, {0, 1, 0}); });
    ExpectError(9, kSubscript, [] { Vector::vxv({1, 0, 0}, {0, 1}); });
    EXPECT_EQ(Vector::vxxv({1, 2}, {3, 4, 5}), 11);  // runs over the first operand
    ExpectError(9, kSubscript, [] { Vector::vxxv({1, 2, 3}, {3, 4}); });
    EXPECT_TRUE(PointsNear(Vector::vProjectTo({3, 4, 5}, {2, 0, 0}), {3, 0, 0}, 1e-15));
    EXPECT_TRUE(PointsNear(Vector::vProjectTo({1, 0}, {1, 1}), {0.5, 0.5}, 1e-15));
    ExpectError(2411, kZeroUnitVec, [] { Vector::vProjectTo({1, 2, 3}, {0, 0, 0}); });
}

TEST(VectorUnit, LengthOneOrRefusedAndRoundingToZero) {
    EXPECT_TRUE(PointsNear(Vector::UnitVec({3, 4}), {0.6, 0.8}, 1e-15));
    EXPECT_TRUE(PointsNear(Vector::UnitVec({1, 1, 1}, {4, 5, 1}), {0.6, 0.8, 0}, 1e-15));
    for (const Point& zero : {Point{0, 0, 0}, Point{}})
        ExpectError(2411, kZeroUnitVec, [&] { Vector::UnitVec(zero); });
    ExpectError(2411, kZeroUnitVec, [] { Vector::UnitVec({1, 2, 3}, {1, 2, 3}); });
    Point v{1e-7, 2, -5e-7, 1e-6, -1e-6};
    double fuzz = 0;  // replaced by the default and written back
    Vector::RoundZeroVector(v, fuzz);
    EXPECT_EQ(v, (Point{0, 2, 0, 1e-6, -1e-6}));  // strictly below the tolerance only
    EXPECT_EQ(fuzz, 1e-6);
    Point w{0.05, -0.2, 0.09999, 0.1, -0.05};
    fuzz = 0.1;
    Vector::RoundZeroVector(w, fuzz);
    EXPECT_EQ(w, (Point{0, -0.2, 0, 0.1, 0}));
    EXPECT_EQ(fuzz, 0.1);
}

TEST(VectorAngle3D, SignedAboutAnAxisUnsignedWithoutAndSnappedAtTheEnds) {
    const Point x{1, 0, 0}, z{0, 0, 1};
    const std::vector<std::pair<Point, double>> aboutZ = {{{0, -1, 0}, -kShortPi / 2},
                                                          {{-1, 1, 0}, 3 * kShortPi / 4},
                                                          {{-1, -1, 0}, 5 * kShortPi / 4},  // not -3 pi/4
                                                          {{1, -1, 0}, -kShortPi / 4}};
    for (const auto& [uA, expected] : aboutZ)
        EXPECT_NEAR(Vector::vAngle3D(uA, x, &z), expected, 1e-6) << uA[1];
    EXPECT_NEAR(Vector::vAngle3D({0, -1, 0}, x), kShortPi / 2, 1e-15);
    EXPECT_NEAR(Vector::vAngle3D({1, 0, 1}, {0, 0, 5}), kShortPi / 4, 1e-12);
    EXPECT_EQ(Vector::vAngle3D({1, 2, 3}, {2, 4, 6}), 0);
    EXPECT_EQ(Vector::vAngle3D({1, 2, 3}, {-1, -2, -3}), kShortPi);
    // The snap works on the cosine: a turn of 1E-03 rad (cosine 1 - 5E-07) already counts as none.
    EXPECT_EQ(Vector::vAngle3D({std::cos(1e-3), std::sin(1e-3), 0}, x, &z), 0);
    EXPECT_EQ(Vector::vAngle3D({-std::cos(1e-3), std::sin(1e-3), 0}, x, &z), kShortPi);
    EXPECT_GT(Vector::vAngle3D({std::cos(2e-3), std::sin(2e-3), 0}, x, &z), 0);
    const Point x0{std::cos(0.3), std::sin(0.3), 0};
    for (int i = 0; i < 72; ++i) {
        const double a = 0.3 + i * kShortPi / 36 + 0.01;
        const double withAxis = Vector::vAngle3D({std::cos(a), std::sin(a), 0}, x0, &z);
        EXPECT_TRUE(withAxis > -kShortPi / 2 && withAxis <= 3 * kShortPi / 2) << withAxis;
        EXPECT_NEAR(std::cos(withAxis), std::cos(a - 0.3), 1e-9);
        EXPECT_NEAR(std::sin(withAxis), std::sin(a - 0.3), 1e-9);
        const double free = Vector::vAngle3D({std::cos(a), std::sin(a), 0.5}, x0);
        EXPECT_TRUE(free >= 0 && free <= kShortPi) << free;
    }
    const Point zero{0, 0, 0};
    ExpectError(2411, kZeroUnitVec, [] { Vector::vAngle3D({0, 0, 0}, {1, 0, 0}); });
    ExpectError(2411, kZeroUnitVec, [] { Vector::vAngle3D({1, 0, 0}, {0, 0, 0}); });
    ExpectError(11, "Division by zero", [&] { Vector::vAngle3D({1, 0, 0}, {0, 1, 0}, &zero); });
    ExpectError(9, kSubscript, [] { Vector::vAngle3D({1, 0}, {0, 1}); });
}

TEST(VectorAssoc, CoordinatesInASkewBasisOrOneError) {
    const Point u{1, 0, 0}, v{1, 2, 0}, w{0.5, -1, 3};
    for (const Point& k : {Point{-0.25, 4, 0}, Point{7.5, -3.25, 0.125}}) {
        Point f(3);
        for (int i = 0; i < 3; ++i) f[i] = k[0] * u[i] + k[1] * v[i] + k[2] * w[i];
        EXPECT_TRUE(PointsNear(Vector::AssocVector(f, u, v, w), k, 1e-12));
    }
    // A singular basis, one singular after rounding to 12 digits, and unusable arguments.
    const std::vector<std::vector<Point>> failing = {{{1, 2, 3}, {1, 0, 0}, {2, 0, 0}, {0, 0, 1}},
                                                     {{1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1e-13}},
                                                     {{1, 2}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                                     {{1, 2, 3}, {1, 0, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (const auto& p : failing) {
        ExpectError(2411, "AssocVector fails: The Inverse Matrix method return Null",
                    [&] { Vector::AssocVector(p[0], p[1], p[2], p[3]); });
    }
}

TEST(VectorDirection, ParallelAndPerpendicularWithinTwoHundredthsOfADegree) {
    const double below = 3.4e-4, above = 3.5e-4;  // the bound is sin = pi/9000 = 3.4907e-4
    struct Case {
        Point a, b;
        bool parallel, perpendicular;
    };
    const Case cases[] = {
        {{1, 2, 3}, {-2, -4, -6}, true, false},   {{1, 0, 0}, {1, below, 0}, true, false},
        {{1, 0, 0}, {1, above, 0}, false, false}, {{1, 0, 0}, {below, 1, 0}, false, true},
        {{1, 0, 0}, {above, 1, 0}, false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Vector::IsParallel(c.a, c.b), c.parallel) << c.b[0] << "," << c.b[1];
        EXPECT_EQ(Vector::IsVertical(c.a, c.b), c.perpendicular) << c.b[0] << "," << c.b[1];
    }
    EXPECT_TRUE(Vector::IsVertical({1, 0}, {0, -1}));  // plane vectors are fine here
    ExpectError(9, kSubscript, [] { Vector::IsParallel({1, 0}, {2, 0}); });
    ExpectError(11, "Division by zero", [] { Vector::IsParallel({0, 0, 0}, {2, 0, 0}); });
    ExpectError(11, "Division by zero", [] { Vector::IsVertical({0, 0}, {2, 0}); });
}

TEST(VectorFixNegative, ExchangesEndsPointingIntoTheLeftHalf) {
    struct Case {
        Point ep;
        double offset;
        bool exchanged;
    };
    const Case cases[] = {
        {{0, 1}, 0, false},
        {{0, -1}, 0, true},  // pi/2 is positive, 3 pi/2 negative
        {{1e-6, -1}, 0, true},
        {{1e-4, -1}, 0, false},
        {{-1, 0}, 0, true},
        {{1, -1}, 0, false},
        {{1, 0}, kShortPi, true},
        {{-1, 0}, kShortPi, false},
        {{0, 1, 5}, kShortPi / 2, false},  // z is ignored
    };
    for (const Case& c : cases) {
        Point sp{0, 0}, ep = c.ep;
        EXPECT_EQ(Vector::Fix_NegativeVector(sp, ep, c.offset), c.exchanged) << c.ep[0] << "," << c.ep[1];
        EXPECT_EQ(sp, c.exchanged ? c.ep : (Point{0, 0}));
        EXPECT_EQ(ep, c.exchanged ? (Point{0, 0}) : c.ep);
    }
    Point sp{0, 0}, ep{-1, 1};
    EXPECT_TRUE(Vector::Fix_NegativeVector(sp, ep));  // measured from 0 when no offset is given
}

}  // namespace
}  // namespace tgp
