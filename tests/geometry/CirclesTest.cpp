#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geometry/Circles.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

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
