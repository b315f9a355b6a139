// The Geometry module: pi and the angle normalisers, inverse trigonometry, measures and RotatePoint.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
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

using test::PointsNear;

const std::string kNoTriangle = "Function Area_3Distances fails: the given lengths do not form a triangle";
const std::string kZeroUnitVec = "Vector unitvec(u) = u = 0";

// Heron's formula with rounded factors: a slightly impossible triangle rounds to flat.
TEST(GeometryArea, FromSidesAndFromCornerPoints) {
    const double cases[][4] = {
        {5, 4, 3, 6}, {2, 2, 2, std::sqrt(3.0)}, {1, 2, 3, 0}, {1, 1, 2.000000001, 0}, {0, 0, 0, 0}};
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(Geometry::Area_3Distances(c[0], c[1], c[2]), c[3]) << c[2];
    for (const auto& sides : std::vector<std::vector<double>>{{1, 1, 3}, {1, 1, 2.0000001}, {5, 1, 1}})
        ExpectError(2411, kNoTriangle, [&] { Geometry::Area_3Distances(sides[0], sides[1], sides[2]); });
    // Rounding Heron's factors to 8 decimals costs about 1E-09 of relative accuracy.
    EXPECT_NEAR(Geometry::Area_3Points({0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0.5, 1e-8);
    EXPECT_DOUBLE_EQ(Geometry::Area_3Points({0, 0}, {4, 0}, {0, 3}), 6);
    EXPECT_DOUBLE_EQ(Geometry::Area_3Points({1, 1, 1}, {2, 2, 2}, {4, 4, 4}), 0);
    // Half the cross product's length, computed independently.
    const Point p1{1, 2, 3}, p2{-2, 0.5, 4}, p3{3, -1, 0};
    const double ux = p2[0] - p1[0], uy = p2[1] - p1[1], uz = p2[2] - p1[2];
    const double vx = p3[0] - p1[0], vy = p3[1] - p1[1], vz = p3[2] - p1[2];
    const double cx = uy * vz - uz * vy, cy = uz * vx - ux * vz, cz = ux * vy - uy * vx;
    EXPECT_NEAR(Geometry::Area_3Points(p1, p2, p3), std::sqrt(cx * cx + cy * cy + cz * cz) / 2, 1e-7);
}

TEST(GeometryNormal, FollowsTheRightHandRuleOrFails) {
    EXPECT_TRUE(PointsNear(Geometry::NormalVector({0, 0, 0}, {1, 0, 0}, {1, 1, 0}), {0, 0, 1}, 0));
    EXPECT_TRUE(PointsNear(Geometry::NormalVector({1, 1, 0}, {1, 0, 0}, {0, 0, 0}), {0, 0, -1}, 0));
    const double s = 1 / std::sqrt(3.0);
    EXPECT_TRUE(PointsNear(Geometry::NormalVector({1, 0, 0}, {0, 1, 0}, {0, 0, 1}), {s, s, s}, 1e-15));
    ExpectError(2411, kZeroUnitVec, [] { Geometry::NormalVector({0, 0, 0}, {1, 1, 1}, {2, 2, 2}); });
    ExpectError(2411, kZeroUnitVec, [] { Geometry::NormalVector({1, 2, 3}, {1, 2, 3}, {0, 0, 1}); });
    ExpectError(9, "Subscript out of range", [] { Geometry::NormalVector({0, 0}, {1, 0}, {1, 1}); });
}

TEST(GeometryVolume, TetrahedraAgainstTheTripleProductAndFlatOnes) {
    EXPECT_NEAR(Geometry::Volume_4Points({0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 1.0 / 6, 1e-9);
    const std::vector<std::vector<Point>> tetrahedra = {{{1, 2, 3}, {0, 0, 0}, {4, 0, 1}, {0, 5, -1}},
                                                        {{-2, 7, 0.5}, {1, 1, 1}, {3, -2, 2}, {0, 4, 6}}};
    for (const auto& t : tetrahedra) {
        const Point &a = t[0], &b = t[1], &c = t[2], &d = t[3];
        double u[3], v[3], w[3];
        for (int i = 0; i < 3; ++i) {
            u[i] = a[i] - b[i];
            v[i] = c[i] - b[i];
            w[i] = d[i] - b[i];
        }
        const double triple = u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0]) +
                              u[2] * (v[0] * w[1] - v[1] * w[0]);
        EXPECT_NEAR(Geometry::Volume_4Points(a, b, c, d), std::fabs(triple) / 6, 1e-6 * std::fabs(triple));
    }
    // D on the line through b and C: the face has no area, and the plane is never needed.
    EXPECT_EQ(Geometry::Volume_4Points({5, 5, 5}, {0, 0, 0}, {1, 0, 0}, {3, 0, 0}), 0);
    // A in the plane of the face.
    EXPECT_EQ(Geometry::Volume_4Points({0.25, 0.25, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0);
}

TEST(GeometryPointPlane, DistanceFootAndDescription) {
    double distance = -1;
    Point foot;
    std::string desc;
    EXPECT_EQ(
        Geometry::Analyse_Point_Plane({1, 2, -3}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, distance, &foot, &desc),
        APlane_PointBehind);
    EXPECT_DOUBLE_EQ(distance, 3);
    EXPECT_TRUE(PointsNear(foot, {1, 2, 0}, 1e-15));
    EXPECT_EQ(desc, "The point lies behind the plane");

    EXPECT_EQ(
        Geometry::Analyse_Point_Plane({4, 5, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, distance, &foot, &desc),
        APlane_PointOnPlane);
    EXPECT_EQ(distance, 0);
    EXPECT_EQ(foot, (Point{4, 5, 0}));
    EXPECT_EQ(desc, "The point lies on the plane");

    // The plane x + y + z = 1 and the origin: distance 1 / sqrt(3), foot (1/3, 1/3, 1/3).
    EXPECT_EQ(Geometry::Analyse_Point_Plane({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, distance, &foot),
              APlane_PointBehind);
    EXPECT_NEAR(distance, 1 / std::sqrt(3.0), 1e-15);
    EXPECT_TRUE(PointsNear(foot, {1.0 / 3, 1.0 / 3, 1.0 / 3}, 1e-15));

    ExpectError(2411, kZeroUnitVec, [&] {
        Geometry::Analyse_Point_Plane({0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, distance);
    });
}

const std::string kRotateFails = "Method RotatePoint of Geometry module fails";

Point Rotated(const Point& point, const Point& org, const Point& axis, double rotation) {
    Point result;
    Geometry::RotatePoint(point, org, axis, rotation, result);
    return result;
}

// Rodrigues' rotation formula about the unit axis k through org, written out independently.
Point Rodrigues(const Point& point, const Point& org, const Point& axis, double angle) {
    const double n = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
    const double k[3] = {axis[0] / n, axis[1] / n, axis[2] / n};
    const double v[3] = {point[0] - org[0], point[1] - org[1], point[2] - org[2]};
    const double kv[3] = {k[1] * v[2] - k[2] * v[1], k[2] * v[0] - k[0] * v[2], k[0] * v[1] - k[1] * v[0]};
    const double kDotV = k[0] * v[0] + k[1] * v[1] + k[2] * v[2];
    const double c = std::cos(angle), s = std::sin(angle);
    Point result(3);
    for (int i = 0; i < 3; ++i) result[i] = org[i] + v[i] * c + kv[i] * s + k[i] * kDotV * (1 - c);
    return result;
}

// Against Rodrigues' formula and back again, on slanted, non-unit and nearly vertical axes (within
// 1E-06 of vertical the helper x-axis is taken as (1, 0, 0), slightly skew to the axis: the turn
// stays reversible, and Rodrigues' within 1E-4 at distances of 100).
TEST(GeometryRotatePoint, AgreesWithRodriguesAndTurnsBack) {
    const std::pair<Point, double> axes[] = {
        {{1, 2, 3}, 1e-9}, {{-1, 0.5, 0}, 1e-9}, {{0.3, -0.4, -5}, 1e-9}, {{1e-7, -2e-7, 1}, 1e-4}};
    const Point org{0.5, -1.5, 2};
    for (const auto& [axis, tolerance] : axes) {
        for (const Point& p : {Point{-4, 0.5, 2}, Point{100, -50, 25}, org}) {
            for (double angle : {0.1, -1.3, kShortPi, 4.0}) {
                const Point turned = Rotated(p, org, axis, angle);
                EXPECT_TRUE(PointsNear(turned, Rodrigues(p, org, axis, angle), tolerance))
                    << axis[0] << " " << angle;
                EXPECT_TRUE(PointsNear(Rotated(turned, org, axis, -angle), p, 1e-9))
                    << axis[0] << " " << angle;
            }
        }
    }
    // Clockwise seen from the axis; the axis frame is rounded to 12 digits on the way (AssocVector).
    EXPECT_TRUE(PointsNear(Rotated({1, 0, 0}, {0, 0, 0}, {0, 0, -5}, kShortPi / 2), {0, -1, 0}, 1e-11));
}

TEST(GeometryRotatePoint, ArgumentsLeftAloneAndFailures) {
    const Point p{1, 2, 3};
    Point out{9, 9};
    Geometry::RotatePoint(p, {0, 0, 0}, {0, 0, 1}, 1, out);
    EXPECT_EQ(p, (Point{1, 2, 3}));
    EXPECT_EQ(out.size(), 3u);
    for (const auto& [point, axis] : {std::pair<Point, Point>{{1, 0, 0}, {0, 0, 0}},  // zero axis
                                      {{1, 0, 0}, {1, 1}},                            // plane axis
                                      {{1, 0, 0, 4}, {0, 0, 1}}})                     // 4 coordinates
        ExpectError(713, kRotateFails, [&] { Geometry::RotatePoint(point, {0, 0, 0}, axis, 1, out); });
}

}  // namespace
}  // namespace tgp
