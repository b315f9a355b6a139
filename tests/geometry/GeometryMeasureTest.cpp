#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "geometry/Geometry.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
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

}  // namespace
}  // namespace tgp
