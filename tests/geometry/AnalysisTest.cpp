#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "geometry/Analysis.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

const double kPi = std::acos(-1.0);

double Dot(const Point& u, const Point& v) {
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}
Point Minus(const Point& u, const Point& v) {
    return {u[0] - v[0], u[1] - v[1], u[2] - v[2]};
}

// Random points in a cube of side 20 about the origin, the same on every run.
struct RandomPoints {
    std::mt19937 random{7};
    std::uniform_real_distribution<double> coordinate{-10, 10};
    Point operator()() { return {coordinate(random), coordinate(random), coordinate(random)}; }
};

// The published numbers of the results, which scripts compare against.
TEST(AnalysisResults, KeepTheirPublishedNumbers) {
    EXPECT_EQ((std::vector<int>{A3P_Triangle, A3P_Collinear, A3P_TwoCoincident, A3P_AllCoincident}),
              (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ((std::vector<int>{A2L_Intersecting, A2L_Parallel, A2L_SameLine, A2L_Skew}),
              (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ((std::vector<int>{APlane_PointOnPlane, APlane_PointInFront, APlane_PointBehind,
                                APlane_LineCrossing, APlane_LineParallel, APlane_LineInPlane,
                                APlane_PlanesCrossing, APlane_PlanesParallel, APlane_PlanesSame}),
              (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

// The tolerance of every relation is 1E-09 relative to the figure: 5E-11 off is on, 5E-09 off is not.
TEST(AnalyseTriPoints, ClassifiesAtTheToleranceBoundary) {
    struct Case {
        const char* name;
        Point p1, p2, p3;
        A3P_Result result;
        double area;
    };
    const Case cases[] = {
        {"plane points", {0, 0}, {4, 0}, {0, 3}, A3P_Triangle, 6},
        {"collinear", {0, 0, 0}, {1, 1, 1}, {3, 3, 3}, A3P_Collinear, 0},
        {"height 5E-11 of 2", {0, 0, 0}, {1, 0, 0}, {2, 1E-10, 0}, A3P_Collinear, 0},
        {"height 5E-09 of 2", {0, 0, 0}, {1, 0, 0}, {2, 1E-08, 0}, A3P_Triangle, 5E-09},
        {"scaled by 1E6", {0, 0, 0}, {1E6, 0, 0}, {2E6, 1E-04, 0}, A3P_Collinear, 0},
        {"the longest side first", {0, 0, 0}, {2, 3E-09, 0}, {1, 0, 0}, A3P_Collinear, 0},
        {"two within the tolerance", {0, 0, 0}, {1E-12, 0, 0}, {1, 0, 0}, A3P_TwoCoincident, 0},
        {"all coincide", {5, 5, 5}, {5, 5, 5}, {5, 5, 5}, A3P_AllCoincident, 0},
    };
    for (const Case& c : cases) {
        const TriPointsAnalysis r = Analysis::TriPoints(c.p1, c.p2, c.p3);
        EXPECT_EQ(r.result, c.result) << c.name << ": " << r.desc;
        EXPECT_NEAR(r.area, c.area, 1E-12 * (1 + c.area)) << c.name;
        EXPECT_TRUE(c.result == A3P_Triangle || r.normal == (Point{0, 0, 0})) << c.name;
    }
    EXPECT_TRUE(PointsNear(Analysis::TriPoints({0, 0}, {0, 1}, {1, 0}).normal, {0, 0, -1}, 0));
    EXPECT_EQ(Analysis::TriPoints({0, 0}, {0, 1}, {1, 0}).desc, "The three points form a triangle");
    EXPECT_EQ(Analysis::TriPoints({0, 0}, {1, 1}, {2, 2}).desc, "The three points lie on one line");
    const std::string coordinates = "Analyse_TriPoints fails: a point needs two or three coordinates";
    ExpectError(2411, coordinates, [] { Analysis::TriPoints({0}, {1, 1}, {2, 2}); });
    ExpectError(2411, coordinates, [] { Analysis::TriPoints({0, 0, 0, 0}, {1, 1}, {2, 2}); });
    ExpectError(5, "Invalid procedure call or argument", [] {
        Analysis::TriPoints({NAN, 0}, {1, 1}, {2, 2});
    });
}

TEST(AnalysePointLine, DistanceFootParameterAndBetween) {
    struct Case {
        const char* name;
        Point p;
        bool onLine;
        double distance, parameter;
        bool between;
    };
    const Case cases[] = {
        {"on the line beyond b", {3, 0, 0}, true, 0, 1.5, false},
        {"on the line before A", {-1, 0, 0}, true, 0, -0.5, false},
        {"1E-10 off counts as on", {1, 1E-10, 0}, true, 1E-10, 0.5, true},
        {"1E-08 off is off", {1, 1E-08, 0}, false, 1E-08, 0.5, true},
        {"a hair before A is between", {-1E-12, 5, 0}, false, 5, -5E-13, true},
        {"plane point", {1, -2}, false, 2, 0.5, true},
    };
    const Point a{0, 0, 0}, b{2, 0, 0};
    for (const Case& c : cases) {
        const PointLineAnalysis r = Analysis::PointLine(c.p, a, b);
        EXPECT_EQ(r.onLine, c.onLine) << c.name;
        EXPECT_NEAR(r.distance, c.distance, 1E-15) << c.name;
        EXPECT_NEAR(r.parameter, c.parameter, 1E-15) << c.name;
        EXPECT_EQ(r.between, c.between) << c.name;
        EXPECT_NEAR(r.foot[0], 2 * c.parameter, 1E-15) << c.name;
    }
    EXPECT_EQ(Analysis::PointLine({3, 1}, a, b).desc,
              "The point lies off the line; its foot lies outside the two points");
    EXPECT_EQ(Analysis::PointLine({1, 0}, a, b).desc, "The point lies on the line, between the two points");
    ExpectError(2411, "Analyse_Point_Line fails: the line's two points coincide", [] {
        Analysis::PointLine({1, 1}, {2, 2}, {2, 2});
    });
    RandomPoints any;
    for (int i = 0; i < 100; ++i) {  // the foot is the nearest point of the line
        const Point p = any(), a = any(), b = any();
        const PointLineAnalysis r = Analysis::PointLine(p, a, b);
        EXPECT_NEAR(r.distance * r.distance, Dot(Minus(p, r.foot), Minus(p, r.foot)), 1E-9);
        EXPECT_NEAR(Dot(Minus(p, r.foot), Minus(b, a)), 0, 1E-8);
        EXPECT_TRUE(Analysis::PointLine(r.foot, a, b).onLine);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(r.foot[k], a[k] + r.parameter * (b[k] - a[k]), 1E-9);
    }
}

TEST(AnalysePointPlane, SidesOfThePlane) {
    struct Case {
        Point p;
        APlane_Result result;
        double distance;
    };
    const Case cases[] = {
        {{1, 2, -3}, APlane_PointBehind, 3},
        {{7, -4, 0}, APlane_PointOnPlane, 0},
        {{0.5, 0.5, 1E-10}, APlane_PointOnPlane, 1E-10},  // distance kept
        {{0.5, 0.5, 1E-08}, APlane_PointInFront, 1E-08},  // the normal's side
    };
    for (const Case& c : cases) {
        const PointPlaneAnalysis r = Analysis::PointPlane(c.p, {0, 0, 0}, {1, 0, 0}, {0, 1, 0});
        EXPECT_EQ(r.result, c.result) << c.p[2] << ": " << r.desc;
        EXPECT_NEAR(r.distance, c.distance, 1E-15) << c.p[2];
        EXPECT_NEAR(r.foot[2], 0, 1E-15) << c.p[2];
    }
    EXPECT_EQ(Analysis::PointPlane({0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}).desc,
              "The point lies in front of the plane");
}

TEST(AnalyseLinePlane, CrossingParallelAndInPlane) {
    struct Case {
        Point a, b;
        APlane_Result result;
        Point cross;
        double parameter, angle;
    };
    const Case cases[] = {
        {{0, 0, -1}, {0, 0, 1}, APlane_LineCrossing, {0, 0, 0}, 0.5, kPi / 2},
        {{0, 0, 1}, {1, 0, 2}, APlane_LineCrossing, {-1, 0, 0}, -1, kPi / 4},  // before A
        {{0, 0}, {1, 1}, APlane_LineInPlane, {}, 0, 0},
        {{0, 0, 1}, {1, 0, 1 + 1E-12}, APlane_LineParallel, {}, 0, 1E-12},
        {{0, 0, 1}, {1, 0, 1 + 1E-08}, APlane_LineCrossing, {-1E8, 0, 0}, -1E8, 1E-08},
    };
    for (const Case& c : cases) {
        const LinePlaneAnalysis r = Analysis::LinePlane(c.a, c.b, {0, 0, 0}, {1, 0, 0}, {0, 1, 0});
        EXPECT_EQ(r.result, c.result) << c.b[2] << ": " << r.desc;
        EXPECT_NEAR(r.angle, c.angle, 1E-15) << c.b[2];
        EXPECT_NEAR(r.parameter, c.parameter, 1E-7 * (1 + std::fabs(c.parameter))) << c.b[2];
        EXPECT_TRUE(PointsNear(r.crossPoint, c.cross, 1E-7 * (1 + std::fabs(c.parameter)))) << c.b[2];
    }
    ExpectError(2411, "Vector unitvec(u) = u = 0", [] {
        Analysis::LinePlane({0, 0}, {1, 1}, {0, 0}, {1, 0}, {2, 0});
    });
}

TEST(AnalyseLineLine, EveryRelation) {
    const double root3 = std::sqrt(3.0);
    struct Case {
        const char* name;
        Point a, b, c, d;
        A2L_Result result;
        double distance, angle;
    };
    const Case cases[] = {
        {"at 60 degrees", {0, 0}, {1, 0}, {5, 5 * root3}, {6, 6 * root3}, A2L_Intersecting, 0, kPi / 3},
        {"reversed, same angle",
         {1, 0},
         {0, 0},
         {5, 5 * root3},
         {6, 6 * root3},
         A2L_Intersecting,
         0,
         kPi / 3},
        {"1E-10 apart meet",
         {0, 0, 0},
         {1, 0, 0},
         {0, -1, 1E-10},
         {0, 1, 1E-10},
         A2L_Intersecting,
         1E-10,
         kPi / 2},
        {"1E-08 apart are skew",
         {0, 0, 0},
         {1, 0, 0},
         {0, -1, 1E-08},
         {0, 1, 1E-08},
         A2L_Skew,
         1E-08,
         kPi / 2},
        {"opposite and parallel", {0, 0, 0}, {1, 0, 0}, {5, 1, 0}, {0, 1, 0}, A2L_Parallel, 1, 0},
        {"the same line", {0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {7, 0, 0}, A2L_SameLine, 0, 0},
        {"sine 1E-12", {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1 + 1E-12, 0}, A2L_Parallel, 1, 1E-12},
    };
    for (const Case& c : cases) {
        const LineLineAnalysis r = Analysis::LineLine(c.a, c.b, c.c, c.d);
        EXPECT_EQ(r.result, c.result) << c.name << ": " << r.desc;
        EXPECT_NEAR(r.distance, c.distance, 1E-14) << c.name;
        EXPECT_NEAR(r.angle, c.angle, 1E-15) << c.name;
        EXPECT_EQ(r.intersection.empty(), c.result != A2L_Intersecting) << c.name;
    }
    const LineLineAnalysis skew = Analysis::LineLine({0, 0, 0}, {1, 0, 0}, {3, 0, 1}, {3, 1, 1});
    EXPECT_TRUE(PointsNear(skew.onFirst, {3, 0, 0}, 1E-15));
    EXPECT_TRUE(PointsNear(skew.onSecond, {3, 0, 1}, 1E-15));
    EXPECT_TRUE(
        PointsNear(Analysis::LineLine({0, 0}, {2, 2}, {0, 2}, {2, 0}).intersection, {1, 1, 0}, 1E-15));
    ExpectError(2411, "Analyse_Line_Line fails: the line's two points coincide", [] {
        Analysis::LineLine({0, 0}, {1, 1}, {3, 3}, {3, 3});
    });
    RandomPoints any;
    for (int i = 0; i < 100; ++i) {  // the closest points join at right angles
        const Point a = any(), b = any(), c = any(), d = any();
        const LineLineAnalysis r = Analysis::LineLine(a, b, c, d);
        const Point joining = Minus(r.onSecond, r.onFirst);
        EXPECT_NEAR(Dot(joining, Minus(b, a)), 0, 1E-9);
        EXPECT_NEAR(Dot(joining, Minus(d, c)), 0, 1E-9);
        EXPECT_NEAR(r.distance * r.distance, Dot(joining, joining), 1E-9);
        EXPECT_TRUE(Analysis::PointLine(r.onFirst, a, b).onLine);
        EXPECT_TRUE(Analysis::PointLine(r.onSecond, c, d).onLine);
    }
}

TEST(AnalysePlanePlane, CrossingParallelAndSame) {
    struct Case {
        Point a2, b2, c2;
        APlane_Result result;
        double angle, distance;
    };
    const Case cases[] = {
        {{0, 0, 0}, {0, 1, 0}, {1, 0, 1}, APlane_PlanesCrossing, kPi / 4, 0},
        {{0, 0, 2}, {0, 1, 2}, {1, 0, 2}, APlane_PlanesParallel, 0, 2},  // turned the other way
        {{5, 5, 0}, {7, 1, 0}, {-3, 2, 0}, APlane_PlanesSame, 0, 0},
        {{5, 5, 1E-10}, {7, 1, 1E-10}, {-3, 2, 1E-10}, APlane_PlanesSame, 0, 1E-10},
    };
    const Point a1{0, 0, 0}, b1{1, 0, 0}, c1{0, 1, 0};
    for (const Case& c : cases) {
        const PlanePlaneAnalysis r = Analysis::PlanePlane(a1, b1, c1, c.a2, c.b2, c.c2);
        EXPECT_EQ(r.result, c.result) << c.a2[0] << ": " << r.desc;
        EXPECT_NEAR(r.angle, c.angle, 1E-15) << c.a2[0];
        EXPECT_NEAR(r.distance, c.distance, 1E-15) << c.a2[0];
        EXPECT_TRUE(c.result == APlane_PlanesCrossing || r.lineDirection.empty()) << c.a2[0];
    }
    RandomPoints any;
    for (int i = 0; i < 100; ++i) {  // the common line lies in both planes
        const Point a1 = any(), b1 = any(), c1 = any(), a2 = any(), b2 = any(), c2 = any();
        const PlanePlaneAnalysis r = Analysis::PlanePlane(a1, b1, c1, a2, b2, c2);
        ASSERT_EQ(r.result, APlane_PlanesCrossing);
        const Point on{r.linePoint[0] + 5 * r.lineDirection[0], r.linePoint[1] + 5 * r.lineDirection[1],
                       r.linePoint[2] + 5 * r.lineDirection[2]};
        for (const Point& p : {r.linePoint, on}) {
            EXPECT_EQ(Analysis::PointPlane(p, a1, b1, c1).result, APlane_PointOnPlane);
            EXPECT_EQ(Analysis::PointPlane(p, a2, b2, c2).result, APlane_PointOnPlane);
        }
        EXPECT_NEAR(Dot(r.lineDirection, r.lineDirection), 1, 1E-15);
        EXPECT_NEAR(Dot(Minus(a1, r.linePoint), r.lineDirection), 0, 1E-9);  // the line's nearest to a1
    }
}

}  // namespace
}  // namespace tgp
