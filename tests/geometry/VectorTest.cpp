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
const std::string kAssocFails = "AssocVector fails: The Inverse Matrix method return Null";

// ---- sums, differences, scaling -------------------------------------------------------------

struct SumCase {
    std::vector<Point> items;
    Point expected;
};

TEST(VectorSum, AddsSharedIndicesAndLeavesTheLongerTailZero) {
    const std::vector<SumCase> cases = {
        {{{1, 2, 3}, {1, 1}}, {2, 3, 0}},  // the shorter operand zeroes the tail
        {{{1, 1}, {1, 2, 3}}, {2, 3, 0}},  // whichever side is shorter
        {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {12, 15, 18}},
        {{{1, 2, 3, 4}, {1, 1, 1, 1}}, {2, 3, 4, 5}},
        {{{5, -6}}, {5, -6}},                         // a single item is returned as it is
        {{{1, 2, 3}, {1, 1}, {1, 1, 1}}, {3, 4, 1}},  // the zeroed tail takes part in later sums
    };
    for (const auto& c : cases) EXPECT_EQ(Vector::vplusv(c.items), c.expected);
    EXPECT_EQ(Vector::vplusv(Point{1, 2}, Point{3, 4}), (Point{4, 6}));
}

TEST(VectorSum, NoItemsIsSubscriptOutOfRange) {
    ExpectError(9, "Subscript out of range", [] { Vector::vplusv(std::span<const Point>{}); });
}

TEST(VectorSum, DifferenceAndVectorABShareTheZeroTail) {
    EXPECT_EQ(Vector::vminusv({5, 7, 9}, {1, 2, 3}), (Point{4, 5, 6}));
    EXPECT_EQ(Vector::vminusv({5, 7, 9}, {1, 2}), (Point{4, 5, 0}));
    EXPECT_EQ(Vector::VectorAB({1, 2, 3}, {4, 6, 8}), (Point{3, 4, 5}));
}

TEST(VectorScale, ScalesNestedPointListsPointByPoint) {
    EXPECT_EQ(Vector::vxr(Point{1, -2, 3}, 2), (Point{2, -4, 6}));
    const std::vector<Point> points = {{1, 0, 0}, {0, 2, 0}, {1, 2, 3}};
    const std::vector<Point> expected = {{3, 0, 0}, {0, 6, 0}, {3, 6, 9}};
    EXPECT_EQ(Vector::vxr(points, 3), expected);
    const std::vector<std::vector<Point>> nested = {points, {{1, 1}}};
    EXPECT_EQ(Vector::vxr(nested, 3), (std::vector<std::vector<Point>>{expected, {{3, 3}}}));
}

// ---- plane angles -----------------------------------------------------------------------------

struct AngleCase {
    Point v;
    double expected;
};

TEST(VectorAngle, QuadrantsUseTheShortenedPi) {
    const std::vector<AngleCase> exact = {
        {{0, 0}, 0},         {{0, -5}, -kShortPi / 2}, {{0, 3, 99}, kShortPi / 2},
        {{-1, 0}, kShortPi},  // +pi, not -pi
        {{2, 0}, 0},
    };
    for (const auto& c : exact) EXPECT_EQ(Vector::vAngle(c.v), c.expected) << c.v[0] << "," << c.v[1];

    const std::vector<AngleCase> near = {
        {{1, 1}, std::atan(1.0)},
        {{-1, 1}, std::atan(-1.0) + kShortPi},
        {{-1, -1}, std::atan(1.0) - kShortPi},
        {{-1, -1e-300}, -kShortPi},
        {{3, -4}, std::atan2(-4.0, 3.0)},
    };
    for (const auto& c : near) EXPECT_NEAR(Vector::vAngle(c.v), c.expected, 1e-15) << c.v[0] << "," << c.v[1];
}

TEST(VectorAngle, NeedsTwoElements) {
    ExpectError(9, "Subscript out of range", [] { Vector::vAngle(Point{1}); });
}

TEST(VectorAngle, TurnBetweenTwoVectorsStaysWithinPi) {
    EXPECT_EQ(Vector::vAngle({1, 0}, {-1, 0}), kShortPi);
    EXPECT_EQ(Vector::vAngle({0, 1}, {0, -1}), -kShortPi);  // -pi is not corrected (strict test)
    EXPECT_NEAR(Vector::vAngle({-1, -1}, {-1, 1}), -kShortPi / 2, 1e-14);
    EXPECT_NEAR(Vector::vAngle({-1, 1}, {-1, -1}), kShortPi / 2, 1e-14);
    for (int i = 0; i < 24; ++i) {
        for (int j = 0; j < 24; ++j) {
            const double a = i * kShortPi / 12, b = j * kShortPi / 12 + 0.01;
            const double d = Vector::vAngle({std::cos(a), std::sin(a)}, {std::cos(b), std::sin(b)});
            EXPECT_GE(d, -kShortPi);
            EXPECT_LE(d, kShortPi);
            EXPECT_NEAR(std::cos(d), std::cos(b - a), 1e-12);  // the same turn, folded
            EXPECT_NEAR(std::sin(d), std::sin(b - a), 1e-12);
        }
    }
}

TEST(VectorRotate, KeepsLengthDropsZ) {
    const Point turned = Vector::vRotate({3, 0, 7}, kShortPi / 2);  // z plays no part in the length
    EXPECT_TRUE(PointsNear(turned, {0, 3}, 1e-13));
    ExpectError(9, "Subscript out of range", [] { Vector::vRotate({3}, 1); });
    EXPECT_TRUE(PointsNear(Vector::vRotate({1, 1}, kShortPi), {-1, -1}, 1e-13));
}

// ---- lengths and products --------------------------------------------------------------------

TEST(VectorLength, UsesEveryElement) {
    EXPECT_EQ(Vector::vLength(Point{}), 0);
    EXPECT_EQ(Vector::vLength({3, 4}), 5);
    EXPECT_EQ(Vector::vLength({1, 2, 2}), 3);
    EXPECT_EQ(Vector::vLength({1, 1, 1, 1}), 2);
    EXPECT_EQ(Vector::vLength({1, 1}, {4, 5}), 5);
    EXPECT_EQ(Vector::vLength({1, 1, 1}, {4, 5, 1}), 5);
}

struct CrossCase {
    Point a, b, expected;
};

TEST(VectorProducts, CrossProductNeedsThreeElements) {
    const std::vector<CrossCase> cases = {
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},       {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}},
        {{1, 2, 3}, {4, 5, 6}, {-3, 6, -3}},     {{2, 0, 0}, {-4, 0, 0}, {0, 0, 0}},
        {{1, 2, 3, 99}, {4, 5, 6}, {-3, 6, -3}},  // a fourth element is not read
    };
    for (const auto& c : cases) EXPECT_EQ(Vector::vxv(c.a, c.b), c.expected);
    ExpectError(9, "Subscript out of range", [] { Vector::vxv({1, 0}, {0, 1, 0}); });
    ExpectError(9, "Subscript out of range", [] { Vector::vxv({1, 0, 0}, {0, 1}); });
}

TEST(VectorProducts, DotProductRunsOverTheFirstOperand) {
    EXPECT_EQ(Vector::vxxv({1, 2, 3}, {4, 5, 6}), 32);
    EXPECT_EQ(Vector::vxxv({1, 2}, {3, 4, 5}), 11);
    ExpectError(9, "Subscript out of range", [] { Vector::vxxv({1, 2, 3}, {3, 4}); });
}

TEST(VectorProducts, ProjectionIsTheComponentAlongTheTarget) {
    EXPECT_TRUE(PointsNear(Vector::vProjectTo({3, 4, 5}, {2, 0, 0}), {3, 0, 0}, 1e-15));
    EXPECT_TRUE(PointsNear(Vector::vProjectTo({1, 0}, {1, 1}), {0.5, 0.5}, 1e-15));
    ExpectError(2411, kZeroUnitVec, [] { Vector::vProjectTo({1, 2, 3}, {0, 0, 0}); });
}

// ---- unit vectors and rounding ---------------------------------------------------------------

TEST(VectorUnit, ScalesToLengthOne) {
    EXPECT_TRUE(PointsNear(Vector::UnitVec({3, 4}), {0.6, 0.8}, 1e-15));
    EXPECT_TRUE(PointsNear(Vector::UnitVec({0, 0, -7}), {0, 0, -1}, 0));
    EXPECT_TRUE(PointsNear(Vector::UnitVec({1, 1, 1}, {4, 5, 1}), {0.6, 0.8, 0}, 1e-15));
}

TEST(VectorUnit, ZeroVectorIsRejected) {
    ExpectError(2411, kZeroUnitVec, [] { Vector::UnitVec({0, 0, 0}); });
    ExpectError(2411, kZeroUnitVec, [] { Vector::UnitVec(Point{}); });
    ExpectError(2411, kZeroUnitVec, [] { Vector::UnitVec({1, 2, 3}, {1, 2, 3}); });
}

TEST(VectorRoundZero, DefaultToleranceIsWrittenBack) {
    Point v{1e-7, 2, -5e-7, 1e-6, -1e-6};
    double fuzz = 0;
    Vector::RoundZeroVector(v, fuzz);
    EXPECT_EQ(v, (Point{0, 2, 0, 1e-6, -1e-6}));  // strictly below the tolerance only
    EXPECT_EQ(fuzz, 1e-6);

    Point w{1e-7, 3};
    Vector::RoundZeroVector(w);
    EXPECT_EQ(w, (Point{0, 3}));
}

TEST(VectorRoundZero, GivenToleranceIsKept) {
    Point v{0.05, -0.2, 0.09999, 0.1, -0.05};
    double fuzz = 0.1;
    Vector::RoundZeroVector(v, fuzz);
    EXPECT_EQ(v, (Point{0, -0.2, 0, 0.1, 0}));
    EXPECT_EQ(fuzz, 0.1);
}

// ---- 3D angle ---------------------------------------------------------------------------------

struct Angle3DCase {
    Point uA;
    double expected;
};

TEST(VectorAngle3D, AboutZFromX) {
    const Point x{1, 0, 0}, z{0, 0, 1};
    const std::vector<Angle3DCase> cases = {
        {{0, -1, 0}, -kShortPi / 2},    {{0, 1, 0}, kShortPi / 2},
        {{-1, 1, 0}, 3 * kShortPi / 4}, {{-1, -1, 0}, 5 * kShortPi / 4},  // not -3 pi/4
        {{1, -1, 0}, -kShortPi / 4},    {{2, 2, 0}, kShortPi / 4},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(Vector::vAngle3D(c.uA, x, &z), c.expected, 1e-6) << c.uA[0] << "," << c.uA[1];
}

TEST(VectorAngle3D, EqualAndOppositeDirectionsAreExact) {
    EXPECT_EQ(Vector::vAngle3D({1, 2, 3}, {2, 4, 6}), 0);
    EXPECT_EQ(Vector::vAngle3D({1, 2, 3}, {-1, -2, -3}), kShortPi);
    const Point z{0, 0, 1};
    EXPECT_EQ(Vector::vAngle3D({-3, 0, 0}, {1, 0, 0}, &z), kShortPi);
    // The snap works on the cosine: a turn of 1E-03 rad (cosine 1 - 5E-07) already counts as none.
    EXPECT_EQ(Vector::vAngle3D({std::cos(1e-3), std::sin(1e-3), 0}, {1, 0, 0}, &z), 0);
    EXPECT_EQ(Vector::vAngle3D({-std::cos(1e-3), std::sin(1e-3), 0}, {1, 0, 0}, &z), kShortPi);
    EXPECT_GT(Vector::vAngle3D({std::cos(2e-3), std::sin(2e-3), 0}, {1, 0, 0}, &z), 0);
}

TEST(VectorAngle3D, WithoutAnAxisTheAngleIsUnsigned) {
    EXPECT_NEAR(Vector::vAngle3D({0, 1, 0}, {1, 0, 0}), kShortPi / 2, 1e-15);
    EXPECT_NEAR(Vector::vAngle3D({0, -1, 0}, {1, 0, 0}), kShortPi / 2, 1e-15);
    EXPECT_NEAR(Vector::vAngle3D({-1, -1, 0}, {1, 0, 0}), 3 * kShortPi / 4, 1e-12);
    EXPECT_NEAR(Vector::vAngle3D({1, 0, 1}, {0, 0, 5}), kShortPi / 4, 1e-12);
}

TEST(VectorAngle3D, RangesWithAndWithoutAxis) {
    const Point z{0, 0, 1};
    const Point x0{std::cos(0.3), std::sin(0.3), 0};
    for (int i = 0; i < 72; ++i) {
        const double a = 0.3 + i * kShortPi / 36 + 0.01;
        const Point uA{std::cos(a), std::sin(a), 0};
        const double withAxis = Vector::vAngle3D(uA, x0, &z);
        EXPECT_GT(withAxis, -kShortPi / 2);
        EXPECT_LE(withAxis, 3 * kShortPi / 2);
        EXPECT_NEAR(std::cos(withAxis), std::cos(a - 0.3), 1e-9);
        EXPECT_NEAR(std::sin(withAxis), std::sin(a - 0.3), 1e-9);

        const Point tilted{std::cos(a), std::sin(a), 0.5};
        const double free = Vector::vAngle3D(tilted, x0);
        EXPECT_GE(free, 0);
        EXPECT_LE(free, kShortPi);
    }
}

TEST(VectorAngle3D, Failures) {
    const Point zero{0, 0, 0};
    ExpectError(2411, kZeroUnitVec, [] { Vector::vAngle3D({0, 0, 0}, {1, 0, 0}); });
    ExpectError(2411, kZeroUnitVec, [] { Vector::vAngle3D({1, 0, 0}, {0, 0, 0}); });
    ExpectError(11, "Division by zero", [&] { Vector::vAngle3D({1, 0, 0}, {0, 1, 0}, &zero); });
    ExpectError(9, "Subscript out of range", [] { Vector::vAngle3D({1, 0}, {0, 1}); });
}

// ---- decomposition ---------------------------------------------------------------------------

TEST(VectorAssoc, CoordinatesInASkewBasisReconstructTheVector) {
    const Point u{1, 0, 0}, v{1, 2, 0}, w{0.5, -1, 3};
    const std::vector<Point> coefficients = {{1, 2, 3}, {-0.25, 4, 0}, {0, 0, -2}, {7.5, -3.25, 0.125}};
    for (const auto& k : coefficients) {
        Point f(3);
        for (int i = 0; i < 3; ++i) f[i] = k[0] * u[i] + k[1] * v[i] + k[2] * w[i];
        const Point found = Vector::AssocVector(f, u, v, w);
        EXPECT_TRUE(PointsNear(found, k, 1e-12));
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(found[0] * u[i] + found[1] * v[i] + found[2] * w[i], f[i], 1e-12);
        }
    }
}

TEST(VectorAssoc, AnyFailureIsOneError) {
    // A singular basis, a basis singular after rounding to 12 digits, and unusable arguments.
    ExpectError(2411, kAssocFails, [] { Vector::AssocVector({1, 2, 3}, {1, 0, 0}, {2, 0, 0}, {0, 0, 1}); });
    ExpectError(2411, kAssocFails, [] {
        Vector::AssocVector({1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1e-13});
    });
    ExpectError(2411, kAssocFails, [] { Vector::AssocVector({1, 2}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}); });
    ExpectError(2411, kAssocFails, [] {
        Vector::AssocVector({1, 2, 3}, {1, 0, 0, 0}, {0, 1, 0}, {0, 0, 1});
    });
}

// ---- direction tests -------------------------------------------------------------------------

struct DirectionCase {
    Point a, b;
    bool expected;
};

TEST(VectorDirection, ParallelWithinTwoHundredthsOfADegree) {
    const double below = 3.4e-4, above = 3.5e-4;  // the bound is sin = pi/9000 = 3.4907e-4
    const std::vector<DirectionCase> cases = {
        {{1, 0, 0}, {-2, 0, 0}, true},     {{1, 2, 3}, {2, 4, 6}, true},  {{1, 0, 0}, {1, below, 0}, true},
        {{1, 0, 0}, {1, above, 0}, false}, {{1, 0, 0}, {0, 1, 0}, false},
    };
    for (const auto& c : cases) EXPECT_EQ(Vector::IsParallel(c.a, c.b), c.expected) << c.b[1];
    ExpectError(9, "Subscript out of range", [] { Vector::IsParallel({1, 0}, {2, 0}); });
    ExpectError(11, "Division by zero", [] { Vector::IsParallel({0, 0, 0}, {2, 0, 0}); });
}

TEST(VectorDirection, PerpendicularWithinTwoHundredthsOfADegree) {
    const std::vector<DirectionCase> cases = {
        {{1, 0, 0}, {0, 3, 0}, true},      {{1, 0}, {0, -1}, true},  // plane vectors are fine here
        {{1, 0, 0}, {3.4e-4, 1, 0}, true}, {{1, 0, 0}, {3.5e-4, 1, 0}, false},
        {{1, 0, 0}, {1, 0, 0}, false},
    };
    for (const auto& c : cases) EXPECT_EQ(Vector::IsVertical(c.a, c.b), c.expected) << c.b[0];
    ExpectError(11, "Division by zero", [] { Vector::IsVertical({0, 0}, {2, 0}); });
}

struct NegativeCase {
    Point ep;
    double offset;
    bool exchanged;
};

TEST(VectorFixNegative, ExchangesEndsPointingIntoTheLeftHalf) {
    const std::vector<NegativeCase> cases = {
        {{0, 1}, 0, false},     // exactly pi/2 is positive
        {{0, -1}, 0, true},     // exactly 3 pi/2 is negative
        {{1e-6, -1}, 0, true},  // and so is anything within 1E-06 of it
        {{1e-4, -1}, 0, false},     {{1, 0}, 0, false},
        {{-1, 0}, 0, true},         {{1, -1}, 0, false},               // 7 pi/4
        {{-1, 1}, 0, true},         {{1, 0}, kShortPi, true},          // measured from the opposite direction
        {{-1, 0}, kShortPi, false}, {{0, 1, 5}, kShortPi / 2, false},  // z is ignored
    };
    for (const auto& c : cases) {
        Point sp{0, 0}, ep = c.ep;
        const Point originalEp = ep;
        EXPECT_EQ(Vector::Fix_NegativeVector(sp, ep, c.offset), c.exchanged) << c.ep[0] << "," << c.ep[1];
        EXPECT_EQ(sp, c.exchanged ? originalEp : (Point{0, 0}));
        EXPECT_EQ(ep, c.exchanged ? (Point{0, 0}) : originalEp);
    }
}

}  // namespace
}  // namespace tgp
