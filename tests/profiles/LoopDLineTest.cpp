#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/Constants.h"
#include "profiles/LoopDLine.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

LoopDLine Segment(Point3 a, Point3 b, double bulge) {
    LoopDLine s;
    s.Init(a, b, bulge);
    return s;
}

TEST(SegmentInit, DerivesRadiusCentreAngleAndLength) {
    const double a3 = 2 * std::atan(3.0);  // half the angle of bulge 3
    struct Case {
        Point3 a, b;
        double bulge, radius, alfa, cx, cy, length;
    };
    const Case cases[] = {
        {{1, 1, 0}, {4, 5, 0}, 0, 0, 0, 0, 0, 5},
        {{0, 0, 0}, {2, 0, 0}, -1, 1, -M_PI, 1, 0, M_PI},
        // bulge 0.5: tan(alfa/4) = 0.5, chord 2, r = 1 / sin(alfa/2) = 1.25, centre left of A->B
        {{0, 0, 0}, {2, 0, 0}, 0.5, 1.25, 4 * std::atan(0.5), 1, 0.75, 1.25 * 4 * std::atan(0.5)},
        // bulge -3 (major arc): centre on the arc side
        {{0, 0, 0}, {0, 2, 0}, -3, 1 / std::sin(a3), -2 * a3, 1 / std::tan(a3), 1, 2 * a3 / std::sin(a3)},
    };
    for (const Case& c : cases) {
        const LoopDLine s = Segment(c.a, c.b, c.bulge);
        EXPECT_NEAR(s.Radius(), c.radius, 1e-12) << c.bulge;
        EXPECT_NEAR(s.Alfa(), c.alfa, 1e-12) << c.bulge;
        EXPECT_NEAR(s.Length(), c.length, 1e-12) << c.bulge;
        EXPECT_DOUBLE_EQ(s.EndAngle(), s.StartAngle() + s.Alfa());
        ASSERT_EQ(s.Center().has_value(), c.bulge != 0);
        if (c.bulge == 0) {
            EXPECT_EQ(s.StartAngle(), 0);
            continue;
        }
        EXPECT_NEAR((*s.Center())[0], c.cx, 1e-12) << c.bulge;
        EXPECT_NEAR((*s.Center())[1], c.cy, 1e-12) << c.bulge;
        EXPECT_EQ((*s.Center())[2], 0);
    }
    const LoopDLine collapsed = Segment({3, 4, 0}, {3, 4, 0}, 0.7);  // coincident ends: onto the start
    EXPECT_EQ(collapsed.Radius(), 0);
    EXPECT_EQ(collapsed.Length(), 0);
    EXPECT_EQ((*collapsed.Center())[0], 3);
    EXPECT_EQ((*collapsed.Center())[1], 4);
}

TEST(SegmentInit, WrapsAnglesOnceWhenTheEndPassesAFullTurn) {
    // Unit circle about the origin. Counter-clockwise from 3 rad through 4 atan 3 passes 2 pi, so
    // both angles drop by the shortened full turn; clockwise from -2 rad passes -2 pi likewise.
    const double sweep = 4 * std::atan(3.0);
    auto onCircle = [](double a) { return Point3{std::cos(a), std::sin(a), 0}; };
    const LoopDLine up = Segment(onCircle(3), onCircle(3 + sweep), 3);
    EXPECT_NEAR(up.StartAngle(), 3 - kTwoPi, 1e-9);
    EXPECT_NEAR(up.EndAngle(), 3 + sweep - kTwoPi, 1e-9);
    const LoopDLine down = Segment(onCircle(-2), onCircle(-2 - sweep), -3);
    EXPECT_NEAR(down.StartAngle(), -2 + kTwoPi, 1e-9);
    EXPECT_NEAR(down.EndAngle(), -2 - sweep + kTwoPi, 1e-9);
    const LoopDLine noWrap = Segment(onCircle(-1), onCircle(-1 + sweep), 3);  // ends below 2 pi
    EXPECT_NEAR(noWrap.StartAngle(), -1, 1e-9);
}

TEST(SegmentGeometry, ArcAreaWithoutOneHalfAndMidPointOnTheChordOrArc) {
    const LoopDLine s = Segment({0, 0, 0}, {2, 0, 0}, 0.5);
    const double r = 1.25, a = 4 * std::atan(0.5);
    EXPECT_NEAR(s.ArcArea(), a * r * r - 0.5 * r * r * std::sin(a), 1e-12);
    EXPECT_EQ(Segment({0, 0, 0}, {2, 0, 0}, 0).ArcArea(), 0);
    const Point3 chord = Segment({0, 0, 0}, {4, 2, 0}, 0).MidPoint();
    EXPECT_DOUBLE_EQ(chord[0], 2);
    EXPECT_DOUBLE_EQ(chord[1], 1);
    const Point3 arc = Segment({0, 0, 0}, {2, 0, 0}, 1).MidPoint();  // counter-clockwise: below
    EXPECT_NEAR(arc[0], 1, 1e-12);
    EXPECT_NEAR(arc[1], -1, 1e-12);
}

void ExpectIntegralsNear(const SegmentIntegrals& a, const SegmentIntegrals& e, double tol) {
    EXPECT_NEAR(a.Area, e.Area, tol);
    EXPECT_NEAR(a.StaticMomentX, e.StaticMomentX, tol);
    EXPECT_NEAR(a.StaticMomentY, e.StaticMomentY, tol);
    EXPECT_NEAR(a.MomentOfInertiaX, e.MomentOfInertiaX, tol);
    EXPECT_NEAR(a.MomentOfInertiaY, e.MomentOfInertiaY, tol);
    EXPECT_NEAR(a.ProductOfInertiaXY, e.ProductOfInertiaXY, tol);
}

TEST(StraightIntegrals, RectangleValuesAndSteepSegmentsKeepTheirDigits) {
    const LoopDLine s = Segment({1, 3, 0}, {5, 3, 0}, 0);
    EXPECT_DOUBLE_EQ(s.Area(), 3 * 4);
    EXPECT_DOUBLE_EQ(s.MomentOfInertiaX(), 27 * 4 / 3.0);
    // A vertical edge turned by a hair: the slope form cancels catastrophically, the integral must not.
    const double x1 = 100 + 1e-13, dx = x1 - 100;  // the representable offset, exactly
    const LoopDLine steep = Segment({100, 0, 0}, {x1, 200, 0}, 0);
    EXPECT_NEAR(steep.Area(), dx * 100, 1e-12 * dx * 100);
    EXPECT_NEAR(steep.MomentOfInertiaY(), dx * 100 * 1e4, 1e-12 * dx * 1e6);
    EXPECT_NEAR(steep.MomentOfInertiaX(), dx * (200.0 * 200 * 200) / 12, 1e-12 * dx * 1e6);
}

// The integrals of arcs are checked against 113-bit quadrature in ArcAccuracyTest, those of lines
// through the sections' closed forms.

TEST(SegmentMove, MovesEndsAndCentreAndRecomputesIntegrals) {
    LoopDLine s = Segment({0, 0, 0}, {2, 0, 0}, 1);
    const double before = s.Area();
    EXPECT_TRUE(s.InitInertiaDone());
    s.Move({0, 10, 0});
    EXPECT_FALSE(s.InitInertiaDone());
    EXPECT_NEAR((*s.Center())[1], 10, 1e-12);
    EXPECT_DOUBLE_EQ(s.Radius(), 1);
    // The half disc under y = 10 gains the 2 x 10 strip below the chord.
    EXPECT_NEAR(s.Area(), before + 20, 1e-12);
    EXPECT_NEAR(s.IntegralsAbout({0, 10, 0}).Area, Segment({0, 0, 0}, {2, 0, 0}, 1).Area(), 1e-12);
}

struct AngleCase {
    const char* name;
    double bulge;
    Point3 point;
    double expected;
};
class SegmentAngleTo : public ::testing::TestWithParam<AngleCase> {};

TEST_P(SegmentAngleTo, GivesTheSubtendedAngle) {
    const AngleCase& c = GetParam();
    EXPECT_NEAR(Segment({0, 0, 0}, {2, 0, 0}, c.bulge).AngleTo(c.point), c.expected, 1e-9) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Points, SegmentAngleTo,
    ::testing::Values(AngleCase{"straight_end", 0, {2, 0, 0}, 0},
                      AngleCase{"arc_end", 1, {0, 0, 0}, M_PI / 2},
                      AngleCase{"straight_chord", 0, {1, 0, 0}, kPi},
                      AngleCase{"cw_arc_chord", -1, {1, 0, 0}, -kPi},
                      AngleCase{"straight_above", 0, {1, 1, 0}, M_PI / 2},
                      // inside the counter-clockwise half disc below the chord: the chord's -pi/2 plus a turn
                      AngleCase{"in_bulge", 1, {1, -0.5, 0}, M_PI + 2 * std::atan(0.5)},
                      AngleCase{"outside_bulge", 1, {1, 3, 0}, 2 * std::atan(1 / 3.0)}),
    [](const auto& info) { return info.param.name; });

TEST(SegmentPointTests, InAndOnTheArcAreasAndTheTriangle) {
    const LoopDLine arc = Segment({0, 0, 0}, {2, 0, 0}, 1);  // half disc below the chord
    EXPECT_TRUE(arc.PointIsInDlineArea({1, -0.5, 0}));
    EXPECT_FALSE(arc.PointIsInDlineArea({1, 0.5, 0}));   // other side of the chord
    EXPECT_FALSE(arc.PointIsInDlineArea({1, -1.5, 0}));  // outside the circle
    EXPECT_FALSE(Segment({0, 0, 0}, {2, 0, 0}, 0).PointIsInDlineArea({1, -0.5, 0}));
    const LoopDLine major = Segment({0, 0, 0}, {2, 0, 0}, 3);  // major arc below: centre is inside too
    EXPECT_TRUE(major.PointIsInDlineArea(*major.Center()));
    EXPECT_TRUE(arc.PointIsOnDline({1, -1, 0}));
    EXPECT_FALSE(arc.PointIsOnDline({1, 1, 0}));  // on the circle, not on the arc
    EXPECT_TRUE(arc.PointIsOnDline({1, -1 - 5e-7, 0}));
    EXPECT_FALSE(arc.PointIsOnDline({1, -1 - 5e-6, 0}));
    EXPECT_TRUE(arc.PointIsInArcArea({1.5, -0.5, 0}));
    EXPECT_FALSE(arc.PointIsInArcArea({1.5, 0.5, 0}));
    const LoopDLine line = Segment({2, 0, 0}, {0, 2, 0}, 0);
    EXPECT_TRUE(line.PointIsInOAB({0.5, 0.5, 0}));
    EXPECT_TRUE(line.PointIsInOAB({1, 1, 0}));
    EXPECT_FALSE(line.PointIsInOAB({1.5, 1.5, 0}));
    EXPECT_FALSE(Segment({1, 1, 0}, {2, 2, 0}, 0).PointIsInOAB({3, 3, 0}));  // degenerate: edges only
    EXPECT_TRUE(Segment({1, 1, 0}, {2, 2, 0}, 0).PointIsInOAB({0.5, 0.5, 0}));
}

TEST(SegmentPointAnalysis, NearestPointDistanceAndTangent) {
    double d = 0, angle = 0;
    Point3 h{};
    Segment({0, 0, 0}, {2, 0, 0}, 1).PointAnalysis({1, -3, 0}, d, h, angle);
    EXPECT_NEAR(d, 2, 1e-12);
    EXPECT_NEAR(h[1], -1, 1e-12);
    EXPECT_NEAR(angle, 0, 1e-12);  // counter-clockwise at the bottom: heading +x
    Segment({0, 0, 0}, {2, 0, 0}, 0).PointAnalysis({5, 4, 0}, d, h, angle);
    EXPECT_DOUBLE_EQ(d, 5);
    EXPECT_EQ(h[0], 2);
    Segment({0, 0, 0}, {0, 2, 0}, -1).PointAnalysis({-3, 1, 0}, d, h, angle);  // clockwise arc bulging left
    EXPECT_NEAR(d, 2, 1e-12);
    EXPECT_NEAR(angle, M_PI / 2, 1e-12);
}

TEST(SegmentIntersection, FindsTheCommonPoints) {
    const double h = std::sqrt(0.75);
    const Point3 o{0, 0, 0}, two{2, 0, 0};
    struct Case {
        const char* name;
        Point3 a1, b1;
        double bulge1;
        Point3 a2, b2;
        double bulge2;
        std::vector<Point3> expected;
    };
    const Case cases[] = {
        {"lines cross", o, {2, 2, 0}, 0, {0, 2, 0}, two, 0, {{1, 1, 0}}},
        {"lines apart", o, {1, 1, 0}, 0, {3, 0, 0}, {2, 1, 0}, 0, {}},
        {"lines parallel", o, two, 0, {0, 1, 0}, {2, 1, 0}, 0, {}},
        {"lines overlap", o, {3, 0, 0}, 0, two, {5, 0, 0}, 0, {two, {3, 0, 0}}},
        {"lines touch at an end", o, {1, 0, 0}, 0, {1, 0, 0}, {1, 1, 0}, 0, {{1, 0, 0}}},
        {"line through a half circle",
         o,
         two,
         1,
         {-1, -0.5, 0},
         {3, -0.5, 0},
         0,
         {{1 - h, -0.5, 0}, {1 + h, -0.5, 0}}},
        {"line on the chord's other side", o, two, 1, {-1, 0.5, 0}, {3, 0.5, 0}, 0, {}},
        {"line tangent to an arc", o, two, 1, {-1, -1, 0}, {3, -1, 0}, 0, {{1, -1, 0}}},
        {"arcs cross", o, two, 1, {1, 0, 0}, {3, 0, 0}, 1, {{1.5, -h, 0}}},
        {"arcs of one circle overlap", o, two, 1, {1, -1, 0}, {1, 1, 0}, 1, {{1, -1, 0}, two}},
        {"arcs apart", o, two, 1, {5, 0, 0}, {7, 0, 0}, 1, {}},
    };
    for (const Case& c : cases) {
        std::vector<Point3> found;
        const bool any =
            Segment(c.a1, c.b1, c.bulge1).IntersectWithDline(Segment(c.a2, c.b2, c.bulge2), &found);
        EXPECT_EQ(any, !c.expected.empty()) << c.name;
        ASSERT_EQ(found.size(), c.expected.size()) << c.name;
        for (const Point3& e : c.expected) {
            bool matched = false;
            for (const Point3& f : found)
                matched = matched || (std::fabs(f[0] - e[0]) < 1e-9 && std::fabs(f[1] - e[1]) < 1e-9);
            EXPECT_TRUE(matched) << c.name << " misses (" << e[0] << ", " << e[1] << ")";
        }
    }
}

TEST(SegmentIntersection, InfiniteLineMeetsLinesAndArcs) {
    std::vector<Point3> found;
    EXPECT_TRUE(Segment({0, 0, 0}, {2, 0, 0}, 0).IntersectWithInfinitiveLine({1, 5, 0}, {1, 6, 0}, &found));
    EXPECT_TRUE(
        Segment({0, 0, 0}, {2, 0, 0}, 1).IntersectWithInfinitiveLine({0, -0.5, 0}, {0.1, -0.5, 0}, &found));
    EXPECT_FALSE(
        Segment({0, 0, 0}, {2, 0, 0}, 1).IntersectWithInfinitiveLine({0, 0.5, 0}, {1, 0.5, 0}, &found));
    EXPECT_TRUE(Segment({0, 0, 0}, {2, 0, 0}, 0).IntersectWithInfinitiveLine({5, 0, 0}, {6, 0, 0}, &found));
    ASSERT_EQ(found.size(), 5u);
    EXPECT_DOUBLE_EQ(found[0][0], 1);
    EXPECT_NEAR(found[1][0], 1 - std::sqrt(0.75), 1e-12);
    EXPECT_NEAR(found[2][0], 1 + std::sqrt(0.75), 1e-12);
}

TEST(SegmentExtremes, IncludeTheArcBulge) {
    Point3 top{}, bottom{};
    Segment({0, 0, 0}, {2, 0, 0}, 1).GetTopBottomPoints({0, 1, 0}, top, bottom);
    EXPECT_EQ(top[1], 0);
    EXPECT_NEAR(bottom[1], -1, 1e-12);
    EXPECT_NEAR(bottom[0], 1, 1e-12);
    const SegmentBox box = Segment({0, 0, 0}, {2, 0, 0}, -1).BoundingBox();  // bulges upwards
    EXPECT_NEAR(box.ymax, 1, 1e-12);
    EXPECT_EQ(box.ymin, 0);
}

TEST(SegmentEdits, InverseNegatesAndDividedPiecesAddUp) {
    LoopDLine s = Segment({1, 2, 0}, {4, -1, 0}, 0.6);
    const SegmentIntegrals before = s.Integrals();
    s.Inverse();
    EXPECT_EQ(s.StartPoint()[0], 4);
    EXPECT_EQ(s.Bulge(), -0.6);
    const SegmentIntegrals after = s.Integrals();
    ExpectIntegralsNear(after,
                        {-before.Area, -before.StaticMomentX, -before.StaticMomentY, -before.MomentOfInertiaX,
                         -before.MomentOfInertiaY, -before.ProductOfInertiaXY},
                        1e-9);
    s = Segment({1, 2, 0}, {4, -1, 0}, -0.8);
    const auto [first, second] = s.Divide1(s.MidPoint());
    EXPECT_NEAR(first.Length(), s.Length() / 2, 1e-12);
    EXPECT_NEAR(first.Bulge(), std::tan(s.Alfa() / 8), 1e-12);
    SegmentIntegrals sum = first.Integrals();
    sum += second.Integrals();
    ExpectIntegralsNear(sum, s.Integrals(), 1e-9);
    const std::vector<LoopDLine> parts = s.Divide2(5);
    ASSERT_EQ(parts.size(), 5u);
    EXPECT_EQ(parts.back().EndPoint(), s.EndPoint());
    EXPECT_NEAR(parts[2].Length(), s.Length() / 5, 1e-12);
    test::ExpectError(5, "Invalid procedure call or argument", [&] { s.Divide2(0); });
}

TEST(SegmentEdits, TransformationScalesTurnsAndShifts) {
    LoopDLine s = Segment({2, 0, 0}, {4, 0, 0}, 1);
    s.Transformation({10, 0, 0}, M_PI / 2, 2, 2, {0, 0, 0});
    EXPECT_NEAR(s.StartPoint()[0], 10, 1e-12);
    EXPECT_NEAR(s.StartPoint()[1], 4, 1e-12);
    EXPECT_NEAR(s.EndPoint()[1], 8, 1e-12);
    EXPECT_EQ(s.Bulge(), 1);
    s.Transformation({0, 0, 0}, 0, -1, 1, {0, 0, 0});  // mirror in the y axis
    EXPECT_EQ(s.Bulge(), -1);
    EXPECT_NEAR(s.StartPoint()[0], -10, 1e-12);
}

}  // namespace
}  // namespace tgp
