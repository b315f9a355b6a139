// Point sets (boxes, hulls, nearest points, interpolation), point transforms and circles.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "geometry/Circles.h"
#include "geometry/PointSets.h"
#include "geometry/PointTransforms.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

TEST(PointSets, BoxCentroidNearestAndSort) {
    const PointList points{{3, 1}, {-1, 4, 2}, {0, 0, -5}, {2, 2}};
    Point lo, hi;
    PointSets::BoundingBox(points, lo, hi);
    EXPECT_EQ(lo, (Point{-1, 0, -5}));
    EXPECT_EQ(hi, (Point{3, 4, 2}));
    EXPECT_TRUE(PointsNear(PointSets::Centroid(points), {1, 1.75, -0.75}, 1E-15));

    std::size_t index = 99;
    EXPECT_EQ(PointSets::Nearest(points, {2.1, 1.8}, index), (Point{2, 2, 0}));
    EXPECT_EQ(index, 3u);
    EXPECT_EQ(PointSets::Nearest({{1, 0}, {-1, 0}}, {0, 0}, index), (Point{1, 0, 0}));
    EXPECT_EQ(index, 0u) << "the first of equals";

    const PointList sorted = PointSets::SortAlong({{3, 0}, {1, 5}, {1, -5}, {-2, 0}}, {1, 0});
    EXPECT_EQ(sorted, (PointList{{-2, 0, 0}, {1, 5, 0}, {1, -5, 0}, {3, 0, 0}}))
        << "stable for equal projections";
    EXPECT_EQ(PointSets::SortAlong({{0, 0}, {1, 1}}, {-1, -1}), (PointList{{1, 1, 0}, {0, 0, 0}}));

    ExpectError(2411, "Points_Centroid fails: the list holds no points", [] { PointSets::Centroid({}); });
    ExpectError(2411, "Points_SortAlong fails: the direction is a zero vector", [] {
        PointSets::SortAlong({{0, 0}}, {0, 0});
    });
}

// The hull by brute force: the points p for which some edge (p, q) has every point on its left or
// on the segment itself, in order.
bool IsHullEdge(const PointList& points, const Point& p, const Point& q) {
    for (const Point& r : points) {
        const double turn = (q[0] - p[0]) * (r[1] - p[1]) - (q[1] - p[1]) * (r[0] - p[0]);
        if (turn < 0) return false;
        if (turn == 0) {  // collinear: it must lie within the segment
            const double t = (r[0] - p[0]) * (q[0] - p[0]) + (r[1] - p[1]) * (q[1] - p[1]);
            const double length = (q[0] - p[0]) * (q[0] - p[0]) + (q[1] - p[1]) * (q[1] - p[1]);
            if (t < 0 || t > length) return false;
        }
    }
    return true;
}

TEST(PointSets, ConvexHullAgainstBruteForce) {
    std::mt19937 random(17);
    std::uniform_int_distribution<int> grid(-20, 20);  // integer points make collinear runs common
    for (int trial = 0; trial < 200; ++trial) {
        PointList points;
        const int n = 3 + trial % 40;
        for (int i = 0; i < n; ++i) points.push_back({double(grid(random)), double(grid(random))});
        const PointList hull = PointSets::ConvexHull(points);
        if (hull.size() < 3) continue;
        for (std::size_t i = 0; i < hull.size(); ++i) {
            const Point& p = hull[i];
            const Point& q = hull[(i + 1) % hull.size()];
            ASSERT_TRUE(IsHullEdge(points, p, q)) << "trial " << trial << " edge " << i;
            const Point& after = hull[(i + 2) % hull.size()];
            const double turn = (q[0] - p[0]) * (after[1] - p[1]) - (q[1] - p[1]) * (after[0] - p[0]);
            ASSERT_GT(turn, 0) << "a corner, counter-clockwise";
        }
        // Every corner of the brute-force hull is in ours.
        for (const Point& p : points) {
            for (const Point& q : points) {
                if (p == q || !IsHullEdge(points, p, q)) continue;
                const Point corner{p[0], p[1], 0};
                EXPECT_NE(std::find(hull.begin(), hull.end(), corner), hull.end()) << "trial " << trial;
            }
        }
        const auto lowest = *std::min_element(hull.begin(), hull.end());
        EXPECT_EQ(hull.front(), lowest);
    }
}

TEST(PointSets, ConvexHullOfDegenerateSets) {
    EXPECT_EQ(PointSets::ConvexHull({{1, 1, 7}}), (PointList{{1, 1, 0}}));
    EXPECT_EQ(PointSets::ConvexHull({{1, 1}, {1, 1}, {1, 1}}), (PointList{{1, 1, 0}}));
    EXPECT_EQ(PointSets::ConvexHull({{2, 2}, {0, 0}, {1, 1}, {3, 3}}), (PointList{{0, 0, 0}, {3, 3, 0}}));
    EXPECT_EQ(PointSets::ConvexHull({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {1, 1}}),
              (PointList{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}));
}

struct TableCase {
    const char* name;
    double x;
    bool extrapolate;
    double expected;
};

TEST(Interpolation, TableAndPoint) {
    const std::vector<double> xs{0, 1, 3, 4}, ys{10, 20, 0, 0.1};
    const TableCase cases[] = {
        {"first row", 0, false, 10},       {"last row", 4, false, 0.1},
        {"inner row", 1, false, 20},       {"halfway", 0.5, false, 15},
        {"second piece", 2, false, 10},    {"last piece", 3.5, false, 0.05},
        {"before, extended", -1, true, 0}, {"after, extended", 5, true, 0.2},
    };
    for (const TableCase& c : cases) {
        EXPECT_NEAR(PointSets::InterpolateTable(c.x, xs, ys, c.extrapolate), c.expected, 1E-15) << c.name;
    }
    const std::string fails = "Interpolate_Table fails: ";
    ExpectError(2411, fails + "X lies outside the table", [&] { PointSets::InterpolateTable(-0.1, xs, ys); });
    ExpectError(2411, fails + "the two lists differ in length", [&] {
        PointSets::InterpolateTable(1, {0, 1}, {1});
    });
    ExpectError(2411, fails + "the table needs at least two rows",
                [&] { PointSets::InterpolateTable(1, {1}, {1}); });
    ExpectError(2411, fails + "the abscissae do not increase", [&] {
        PointSets::InterpolateTable(1, {0, 2, 2}, {1, 2, 3});
    });

    EXPECT_EQ(PointSets::InterpolatePoint({0, 0}, {10, 20, 30}, 0.5), (Point{5, 10, 15}));
    EXPECT_EQ(PointSets::InterpolatePoint({1, 1}, {2, 2}, -1), (Point{0, 0, 0}));
}

Matrix Make(const Array2DData& data) {
    Matrix m;
    m.Array2D(data);
    return m;
}

// Homogeneous 4x4 matrices of the plane transformations.
Matrix Translation(double x, double y, double z) {
    return Make({{1, 0, 0, x}, {0, 1, 0, y}, {0, 0, 1, z}, {0, 0, 0, 1}});
}
Matrix Turn(double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return Make({{c, -s, 0, 0}, {s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
}
Matrix Scaling(double k) {
    return Make({{k, 0, 0, 0}, {0, k, 0, 0}, {0, 0, k, 0}, {0, 0, 0, 1}});
}
Matrix MirrorX() {
    return Make({{1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
}

// T(c) * A * T(-c): A about the point c.
Matrix About(const Point& c, const Matrix& a) {
    return *Translation(c[0], c[1], c[2]).Product(*a.Product(Translation(-c[0], -c[1], -c[2])));
}

::testing::AssertionResult ListsNear(const PointList& actual, const PointList& expected, double tolerance) {
    if (actual.size() != expected.size()) return ::testing::AssertionFailure() << "count " << actual.size();
    for (std::size_t i = 0; i < actual.size(); ++i) {
        auto near = PointsNear(actual[i], expected[i], tolerance);
        if (!near) return near << " at point " << i;
    }
    return ::testing::AssertionSuccess();
}

TEST(PointTransforms, AgreeWithMatrixProducts) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> coordinate(-100, 100);
    PointList points;
    for (int i = 0; i < 50; ++i)
        points.push_back({coordinate(random), coordinate(random), coordinate(random)});
    const Point base{3, -7, 2};
    const double angle = 0.7;

    EXPECT_TRUE(ListsNear(PointTransforms::Move(points, {1, 2, 3}),
                          PointTransforms::Transform(points, Translation(1, 2, 3)), 1E-12));
    EXPECT_TRUE(ListsNear(PointTransforms::Scale(points, base, -2.5),
                          PointTransforms::Transform(points, About(base, Scaling(-2.5))), 1E-12));
    EXPECT_TRUE(ListsNear(PointTransforms::Rotate(points, base, angle),
                          PointTransforms::Transform(points, About(base, Turn(angle))), 1E-12));
    // The mirror line through base at the angle: turn it onto x, mirror, turn back.
    const Matrix mirror = About(base, *Turn(angle).Product(*MirrorX().Product(Turn(-angle))));
    const Point onLine{base[0] + std::cos(angle), base[1] + std::sin(angle)};
    EXPECT_TRUE(ListsNear(PointTransforms::Mirror(points, base, onLine),
                          PointTransforms::Transform(points, mirror), 1E-11));
    // A 3x3 matrix is the linear map; the same as its 4x4 embedding.
    const Matrix linear = Make({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}});
    const Matrix embedded = Make({{1, 2, 3, 0}, {0, 1, 4, 0}, {5, 6, 0, 0}, {0, 0, 0, 1}});
    EXPECT_TRUE(ListsNear(PointTransforms::Transform(points, linear),
                          PointTransforms::Transform(points, embedded), 0));
}

TEST(PointTransforms, PlanePointsEdgesAndFailures) {
    EXPECT_EQ(PointTransforms::Move({{1, 2}}, {1, 1}), (PointList{{2, 3, 0}}));
    EXPECT_EQ(PointTransforms::Scale({{4, 4, 4}}, {2, 2, 2}, 0), (PointList{{2, 2, 2}}));
    EXPECT_TRUE(
        ListsNear(PointTransforms::Rotate({{2, 0, 5}}, {1, 0}, std::acos(-1.0) / 2), {{1, 1, 5}}, 1E-15));
    EXPECT_EQ(PointTransforms::Mirror({{1, 5, 9}}, {0, 0}, {0, 1}), (PointList{{-1, 5, 9}}));
    EXPECT_TRUE(PointTransforms::Move({}, {1, 1}).empty());
    // The fourth element divides: w = 2 halves every coordinate.
    const Matrix halving = Make({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 2}});
    EXPECT_EQ(PointTransforms::Transform({{2, 4, 6}}, halving), (PointList{{1, 2, 3}}));
    const Matrix flat = Make({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}});
    ExpectError(2411, "Transform_Points fails: a point maps to infinity (w = 0)", [&] {
        PointTransforms::Transform({{1, 1}}, flat);
    });
    ExpectError(2411, "Transform_Points fails: the matrix must be 3x3 or 4x4", [] {
        PointTransforms::Transform({{1, 1}}, Make({{1, 0}, {0, 1}}));
    });
    ExpectError(2411, "Mirror_Points fails: the line's two points coincide", [] {
        PointTransforms::Mirror({{1, 1}}, {2, 2, 0}, {2, 2, 5});
    });
    ExpectError(5, "Invalid procedure call or argument", [] {
        PointTransforms::Scale({{1, 1}}, {0, 0}, INFINITY);
    });
}

struct LineCircleCase {
    const char* name;
    Point a, b;
    int count;
    Point p1, p2;
};

TEST(IntersectLineCircle, NoneTangentAndTwoInTheLinesDirection) {
    // The circle about (1, 1) of radius 5, z 2.
    const LineCircleCase cases[] = {
        {"through the centre", {-10, 1}, {0, 1}, 2, {-4, 1, 2}, {6, 1, 2}},
        {"against the direction", {0, 1}, {-10, 1}, 2, {6, 1, 2}, {-4, 1, 2}},
        {"a 3-4-5 chord", {0, 5}, {1, 5}, 2, {-2, 5, 2}, {4, 5, 2}},
        {"tangent", {0, 6}, {1, 6}, 1, {1, 6, 2}, {}},
        {"1E-10 inside counts as tangent", {0, 6 - 5E-10}, {1, 6 - 5E-10}, 1, {1, 6 - 5E-10, 2}, {}},
        {"1E-10 outside counts as tangent", {0, 6 + 5E-10}, {1, 6 + 5E-10}, 1, {1, 6 + 5E-10, 2}, {}},
        {"1E-07 outside misses", {0, 6 + 1E-07}, {1, 6 + 1E-07}, 0, {}, {}},
        {"far away", {0, 100}, {1, 100}, 0, {}, {}},
    };
    for (const LineCircleCase& c : cases) {
        const CircleIntersection r = Circles::LineCircle(c.a, c.b, {1, 1, 2}, 5);
        EXPECT_EQ(r.count, c.count) << c.name;
        EXPECT_TRUE(PointsNear(r.p1, c.p1, 1E-12)) << c.name;
        EXPECT_TRUE(PointsNear(r.p2, c.p2, 1E-12)) << c.name;
    }
    ExpectError(2411, "Intersect_Line_Circle fails: the radius must be positive", [] {
        Circles::LineCircle({0, 0}, {1, 0}, {0, 0}, 0);
    });
    ExpectError(2411, "Intersect_Line_Circle fails: the line's two points coincide", [] {
        Circles::LineCircle({0, 0}, {0, 0, 5}, {0, 0}, 1);
    });
}

struct CircleCircleCase {
    const char* name;
    Point c2;
    double r2;
    int count;
    Point p1, p2;
};

TEST(IntersectCircleCircle, EveryArrangement) {
    // The first circle about the origin of radius 5.
    const CircleCircleCase cases[] = {
        {"two points, p1 on the left", {6, 0}, 5, 2, {3, 4, 0}, {3, -4, 0}},
        {"turned: left of the way up", {0, 6}, 5, 2, {-4, 3, 0}, {4, 3, 0}},
        {"touching outside", {8, 0}, 3, 1, {5, 0, 0}, {}},
        {"touching inside", {2, 0}, 3, 1, {5, 0, 0}, {}},
        {"touching inside a larger one", {-2, 0}, 7, 1, {5, 0, 0}, {}},
        {"apart", {20, 0}, 3, 0, {}, {}},
        {"one inside the other", {1, 0}, 1, 0, {}, {}},
        {"concentric", {0, 0}, 3, 0, {}, {}},
        {"the same circle", {0, 0}, 5, -1, {}, {}},
        {"the same within the tolerance", {1E-10, 0}, 5 + 1E-10, -1, {}, {}},
        {"touching within the tolerance", {8 + 1E-09, 0}, 3, 1, {5, 0, 0}, {}},
    };
    for (const CircleCircleCase& c : cases) {
        const CircleIntersection r = Circles::CircleCircle({0, 0}, 5, c.c2, c.r2);
        EXPECT_EQ(r.count, c.count) << c.name;
        EXPECT_TRUE(PointsNear(r.p1, c.p1, 1E-8)) << c.name;
        EXPECT_TRUE(PointsNear(r.p2, c.p2, 1E-8)) << c.name;
    }
    ExpectError(2411, "Intersect_Circle_Circle fails: the radius must be positive", [] {
        Circles::CircleCircle({0, 0}, 1, {1, 0}, -1);
    });
}

TEST(IntersectCircleCircle, PointsLieOnBothCircles) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinate(-50, 50), radius(0.1, 60);
    int pairs = 0;
    for (int i = 0; i < 500; ++i) {
        const Point c1{coordinate(random), coordinate(random)}, c2{coordinate(random), coordinate(random)};
        const double r1 = radius(random), r2 = radius(random);
        const CircleIntersection r = Circles::CircleCircle(c1, r1, c2, r2);
        if (r.count != 2) continue;
        ++pairs;
        for (const Point& p : {r.p1, r.p2}) {
            EXPECT_NEAR(std::hypot(p[0] - c1[0], p[1] - c1[1]), r1, 1E-9 * (1 + r1));
            EXPECT_NEAR(std::hypot(p[0] - c2[0], p[1] - c2[1]), r2, 1E-9 * (1 + r2));
        }
    }
    EXPECT_GT(pairs, 100);
}

TEST(CircleThrough3Points, CentreRadiusAndDegenerateSets) {
    Point centre;
    double radius = -1;
    ASSERT_TRUE(Circles::Through3Points({6, 1}, {1, 6}, {-4, 1}, centre, radius));
    EXPECT_TRUE(PointsNear(centre, {1, 1, 0}, 1E-14));
    EXPECT_NEAR(radius, 5, 1E-14);
    // A circle in a tilted plane: the three unit points on the axes.
    ASSERT_TRUE(Circles::Through3Points({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, centre, radius));
    EXPECT_TRUE(PointsNear(centre, {1.0 / 3, 1.0 / 3, 1.0 / 3}, 1E-15));
    EXPECT_NEAR(radius, std::sqrt(2.0 / 3), 1E-15);
    EXPECT_FALSE(Circles::Through3Points({0, 0}, {1, 1}, {2, 2}, centre, radius));
    EXPECT_TRUE(centre.empty());
    EXPECT_EQ(radius, 0);
    EXPECT_FALSE(Circles::Through3Points({0, 0}, {0, 0}, {2, 2}, centre, radius));
}

}  // namespace
}  // namespace tgp
