#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

#include "geometry/Geometry.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

constexpr double kShortPi = 3.14159265358979;
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
