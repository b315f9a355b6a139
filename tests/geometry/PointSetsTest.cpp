#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "geometry/PointSets.h"
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

}  // namespace
}  // namespace tgp
