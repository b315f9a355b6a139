// Loops: construction, point tests, intersections, relationships, edits and failures; their section
// properties against closed forms and published tables, their limits and section moduli.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "core/Constants.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "profiles/PlanePoint.h"
#include "profiles/SectionModuli.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

// Construction, point tests, intersections, relationships, edits and failures of loops.
using test::ExpectError;

std::shared_ptr<Loop7> Polygon(std::vector<double> xy) {
    auto loop = Loop7::Create();
    loop->InitFromCoordinates(xy, std::vector<double>(xy.size() / 2, 0.0));
    return loop;
}

std::shared_ptr<Loop7> Square(double x0, double y0, double side) {  // counter-clockwise
    return Polygon({x0, y0, x0 + side, y0, x0 + side, y0 + side, x0, y0 + side});
}

TEST(LoopConstruction, RepeatedVerticesCollapseAndBulgesFollowTheirVertices) {
    EXPECT_EQ(ToPlanePoint({1, 2}), (Point3{1, 2, 0}));  // z when given, 0 otherwise
    EXPECT_EQ(ToPlanePoint({1, 2, 3}), (Point3{1, 2, 3}));
    ExpectError(9, "Subscript out of range", [] { ToPlanePoint({1}); });
    auto loop = Polygon({0, 0, 1, 0, 1, 0, 1, 1, 1, 1 + 4e-6, 0, 1, 0, 0});
    EXPECT_EQ(loop->Count(), 4u);  // 7 vertices: two repeats and a closing vertex equal to the first
    // The 4e-6 stub is dropped with its start vertex, so the corner moves to the stub's end.
    EXPECT_EQ(loop->Coordinates(), (std::vector<double>{0, 0, 1, 0, 1, 1 + 4e-6, 0, 1}));
    EXPECT_NEAR(loop->AreaAbs(), 1 + 2e-6, 1e-12);
    loop->InitFromCoordinates(std::vector<double>{0, 0, 0, 0, 2, 0}, std::vector<double>{0.3, 1, 1});
    ASSERT_EQ(loop->Count(), 2u);
    EXPECT_EQ(loop->Bulges(), (std::vector<double>{1, 1}));  // the repeated vertex's bulge goes with it
    EXPECT_NEAR(loop->AreaAbs(), M_PI, 1e-12);
    const std::vector<double> open{0, 0, 1, 0, 1, 1};
    loop->InitFromCoordinates(open, std::vector<double>{0, 0, 0}, true);  // NoClose
    EXPECT_EQ(loop->Count(), 2u);
    EXPECT_FALSE(loop->IsClosed());
    EXPECT_EQ(loop->Coordinates(), open);
}

TEST(LoopConstruction, FromPointsAndAUnitSquare) {
    auto loop = Loop7::Create();
    loop->InitFromPoints(std::vector<Point>{{0, 0, 5}, {2, 0}, {2, 1}});
    EXPECT_EQ(loop->Vertex(1), (Point{2, 0, 0}));
    EXPECT_EQ(loop->Bulges(), (std::vector<double>{0, 0, 0}));
    EXPECT_NEAR(loop->MiddlePoint()[0], 4.0 / 3, 1e-15);
    EXPECT_NEAR(loop->MiddlePoint()[1], 1.0 / 3, 1e-15);
    ExpectError(9, "Subscript out of range", [&] { loop->Vertex(3); });
    ExpectError(9, "Subscript out of range", [&] { loop->InitFromPoints(std::vector<Point>{{0, 0}, {1}}); });
    auto square = Square(0, 0, 1);  // counter-clockwise
    EXPECT_FALSE(square->InitInertiaDone());
    EXPECT_DOUBLE_EQ(square->Area(), -1);
    EXPECT_TRUE(square->InitInertiaDone());
    EXPECT_DOUBLE_EQ(square->Centroid()[1], 0.5);
    EXPECT_NEAR(square->MomentOfInertiaX(), -1.0 / 12, 1e-15);
    EXPECT_EQ(square->InertiaBlock(), square->InertiaBlock());
}

// A CAD entity that records its moves, or refuses them as a locked one does.
struct EntityLog : HostEntity {
    std::vector<std::pair<Point, Point>> moves;
    bool refuse = false;
    void Move(const Point& from, const Point& to) override {
        if (refuse) throw Error(440, "the entity is locked");
        moves.emplace_back(from, to);
    }
};

TEST(LoopFailures, EveryErrorWithItsNumberAndText) {
    auto bowTie = Polygon({0, 0, 1, 1, 1, 0, 0, 1});
    ExpectError(5, "Invalid Loop to generate Inertia Properties: Loop should not cut itself",
                [&] { bowTie->InertiaBlock(); });
    EXPECT_FALSE(bowTie->InitInertiaDone());
    ExpectError(
        5,
        "Invalid Loop to generate Inertia Properties: the loop has no segment (sides shorter than 1E-05 "
        "are dropped)",
        [&] { Loop7::Create()->Area(); });
    auto line = Loop7::Create();
    line->InitFromCoordinates(std::vector<double>{0, 0, 1, 0}, std::vector<double>{0, 0}, true);
    ExpectError(6, "Overflow", [&] { line->Area(); });
    ExpectError(9, "Subscript out of range", [&] {
        Loop7::Create()->InitFromCoordinates(std::vector<double>{0, 0, 1, 0, 1, 1},
                                             std::vector<double>{0, 0});
    });
    auto square = Square(0, 0, 1);
    ExpectError(5, "Invalid procedure call or argument", [&] { square->IntersectWithLine({1, 1}, {1, 1}); });
    square->AcadEntity(std::make_shared<EntityLog>());
    ExpectError(2411, "Cannot Transformation Loop7 which has AcadEntity attached", [&] {
        square->Transformation({1, 0}, 0, 1, 1, {0, 0});
    });
    EXPECT_EQ(square->Vertex(0), (Point{0, 0, 0}));  // unchanged
}

// A 4 x 2 rectangle with a half-disc bump (radius 1) on its top edge, in both directions; the library's
// own containment test gives the same answers wherever the drawing lies.
TEST(PointInLoop, WindingAngleDecidesAndEnclosesHoldsFarFromTheOrigin) {
    struct Case {
        const char* name;
        Point point;
        bool inside, on;
    };
    const Case cases[] = {
        {"middle", {2, 1}, true, false},
        {"in the bump", {2, 2.5}, true, false},
        {"above the bump", {2, 3.5}, false, false},
        {"beside the bump", {0.5, 2.5}, false, false},
        {"on an edge", {4, 1}, false, true},
        {"on the arc", {2, 3}, false, true},
        {"a vertex", {0, 0}, false, true},
        {"on the chord's line", {2, 2}, true, false},
    };
    for (double offset : {0.0, 1e6, -3e6, 1e7}) {
        auto loop = Loop7::Create();
        std::vector<double> xy{0, 0, 4, 0, 4, 2, 3, 2, 1, 2, 0, 2};
        for (double& v : xy) v += offset;
        loop->InitFromCoordinates(xy, std::vector<double>{0, 0, 0, 1, 0, 0});
        for (int direction = 0; direction < 2; ++direction, loop->Reverse()) {
            for (const Case& c : cases) {
                const Point p{c.point[0] + offset, c.point[1] + offset};
                bool on = !c.on, onEnclosed = !c.on;
                if (offset == 0) {
                    EXPECT_EQ(loop->PointIsInside(p, &on), c.inside) << c.name;
                    EXPECT_EQ(on, c.on) << c.name;
                }
                EXPECT_EQ(loop->Encloses(p, &onEnclosed), c.inside) << c.name << " at " << offset;
                EXPECT_EQ(onEnclosed, c.on) << c.name << " at " << offset;
            }
        }
    }
}

TEST(PointInLoopFarAway, PublishedTestKeepsItsRelativeVertexToleranceWhileEnclosesDoesNot) {
    // A 100 x 100 square at (1E6, 1E6): (1E6 + 0.5, 1E6 + 0.5) is within a relative 1E-06 of the
    // corner, so the published rule takes it for the vertex itself; the library's own test does not.
    auto square = Square(1e6, 1e6, 100);
    const Point p{1e6 + 0.5, 1e6 + 0.5};
    EXPECT_FALSE(square->PointIsInside(p));
    EXPECT_TRUE(square->Encloses(p));
    EXPECT_FALSE(square->Encloses({1e6 - 0.5, 1e6 + 0.5}));
    EXPECT_TRUE(square->Encloses({1e6 + 1e-5, 1e6 + 50}));  // 10 µm inside: beyond the 1 nm tolerance
}

TEST(LoopIntersections, WithALineAndAnotherLoop) {
    auto square = Square(0, 0, 2);
    std::vector<Point> points;
    EXPECT_TRUE(square->IntersectWithLine({-1, 1}, {0, 1}, &points));
    ASSERT_EQ(points.size(), 2u);
    EXPECT_TRUE(square->IntersectWithLine({0, 0}, {1, 1}, &points));  // through two corners, each once
    EXPECT_EQ(points.size(), 4u);
    EXPECT_FALSE(square->IntersectWithLine({-1, 5}, {0, 5}));

    std::vector<Point> crossings;
    EXPECT_TRUE(square->IntersectWithLoop(*Square(1, 1, 2), &crossings));
    ASSERT_EQ(crossings.size(), 2u);
    EXPECT_FALSE(square->IntersectWithLoop(*Square(5, 5, 1)));
}

// Intersection first, then one vertex each way.
TEST(LoopRelations, ChildParentFriendAndSibling) {
    struct Case {
        std::shared_ptr<Loop7> self, other;
        LoopRelationShip expected;
        std::optional<bool> child;
    };
    const Case cases[] = {
        {Square(1, 1, 1), Square(0, 0, 4), ChildLoop, true},
        {Square(0, 0, 4), Square(1, 1, 1), ParentLoop, std::nullopt},
        {Square(0, 0, 1), Square(3, 3, 1), FriendLoop, std::nullopt},
        {Square(1, 1, 1), Square(0, 0, 1.5), SiblingLoop, std::nullopt},  // crossing
        {Square(0, 1, 1), Square(0, 0, 4), SiblingLoop, std::nullopt},    // a vertex on an edge
    };
    // The published numbers, which scripts compare against.
    EXPECT_EQ((std::vector<int>{FriendLoop, ChildLoop, SiblingLoop, ParentLoop}),
              (std::vector<int>{0, 1, 2, 3}));
    for (const Case& c : cases) {
        EXPECT_EQ(c.self->RelationshipTo(*c.other), c.expected) << c.expected;
        EXPECT_EQ(c.self->IsChildOF(*c.other), c.child) << c.expected;
    }
}

std::shared_ptr<Loop7> Star(int points, double outer, double inner) {
    std::vector<double> xy;
    for (int i = 0; i < 2 * points; ++i) {
        const double a = M_PI * i / points, r = i % 2 ? inner : outer;
        xy.push_back(r * std::cos(a));
        xy.push_back(r * std::sin(a));
    }
    return Polygon(xy);
}

TEST(LoopSelfIntersection, FoundForCrossingsOnly) {
    std::vector<Point> points;
    EXPECT_TRUE(Polygon({0, 0, 1, 1, 1, 0, 0, 1})->IsSelfIntersect(&points));  // bow tie
    ASSERT_EQ(points.size(), 1u);
    EXPECT_NEAR(points[0][0], 0.5, 1e-12);
    EXPECT_NEAR(points[0][1], 0.5, 1e-12);

    auto eight = Loop7::Create();  // two circles drawn as one stroke through their common point
    eight->InitFromCoordinates(std::vector<double>{0, 0, 2, 0, 0, 0, -2, 0},
                               std::vector<double>{1, 1, -1, -1});
    EXPECT_TRUE(eight->IsSelfIntersect());
    ExpectError(5, "Invalid Loop to generate Inertia Properties: Loop should not cut itself",
                [&] { eight->InertiaBlock(); });

    EXPECT_TRUE(Polygon({0, 0, 4, 0, 2, 0, 2, 2})->IsSelfIntersect());  // a spike folding back
    EXPECT_FALSE(Star(5, 10, 4)->IsSelfIntersect());
    EXPECT_TRUE(
        Polygon({0, 0, 2, 0, 2, 2, 1, -1, 0, 2})->IsSelfIntersect());  // a dent through the bottom edge
    const auto ipe = test::IpeOutline(200, 100, 5.6, 8.5, 12);
    auto section = Loop7::Create();
    section->InitFromCoordinates(ipe.xy, ipe.bulges);
    EXPECT_FALSE(section->IsSelfIntersect());  // fillets tangent to their neighbours
    auto circle = Loop7::Create();
    circle->InitFromCoordinates(std::vector<double>{-1, 0, 1, 0}, std::vector<double>{1, 1});
    EXPECT_FALSE(circle->IsSelfIntersect());
}

TEST(LoopConstruction, CoordinatesThatAreNotNumbersOrOverflowAreRefused) {
    // No infinity or NaN goes into a segment: the loop is refused with 6 "Overflow" when it is built.
    std::vector<double> xy;
    for (int i = 0; i < 64; ++i) {
        xy.push_back(i % 5 == 0 ? NAN : std::cos(i * 0.1) * i);
        xy.push_back(i % 7 == 0 ? NAN : std::sin(i * 0.1) * i);
    }
    ExpectError(6, "Overflow", [&] { Polygon(xy); });
    ExpectError(6, "Overflow", [&] { Polygon({0, 0, 1e308, 0, 1e308, 1e308}); });  // a chord beyond the range
    auto loop = Loop7::Create();
    ExpectError(6, "Overflow", [&] {
        loop->InitFromCoordinates(std::vector<double>{0, 0, 1, 0}, std::vector<double>{1e-320, 0});
    });  // a radius beyond the range
    ExpectError(9, "Subscript out of range", [&] {
        loop->InitFromCoordinates(std::vector<double>{0, 0, 1, 0, 1}, std::vector<double>{0, 0, 0});
    });  // an x without its y
}

TEST(LoopGeometry, TopBottomAndNearestPoint) {
    auto circle = Loop7::Create();
    circle->InitFromCoordinates(std::vector<double>{-1, 0, 1, 0}, std::vector<double>{1, 1});
    Point top, bottom;
    circle->GetTopBottomPoints({1, 1}, top, bottom);
    EXPECT_NEAR(top[0], std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(bottom[1], -std::sqrt(0.5), 1e-12);
    const Point align{5, 0};
    circle->GetTopBottomPoints({0, 1}, top, bottom, &align);
    EXPECT_NEAR(top[0], 5, 1e-12);
    EXPECT_NEAR(top[1], 1, 1e-12);

    double d = 0, angle = 0;
    Point h;
    Square(0, 0, 2)->PointAnalysis({3, 1}, d, h, angle);
    EXPECT_DOUBLE_EQ(d, 1);
    EXPECT_EQ(h, (Point{2, 1, 0}));
    EXPECT_NEAR(angle, M_PI / 2, 1e-12);
}

TEST(LoopGeometry, MoveTakesTheEntityAlongOnlyWhenAsked) {
    auto loop = Square(0, 0, 1);
    auto log = std::make_shared<EntityLog>();
    loop->AcadEntity(log);
    loop->Handle("2F");
    loop->Move({1, 2, 0});
    EXPECT_TRUE(log->moves.empty());
    loop->Move({1, 2, 0}, true);
    ASSERT_EQ(log->moves.size(), 1u);
    EXPECT_EQ(log->moves[0].first, (Point{0, 0, 0}));
    EXPECT_EQ(log->moves[0].second, (Point{1, 2, 0}));
    EXPECT_EQ(loop->Vertex(0), (Point{2, 4, 0}));
    auto copy = loop->Copy();
    EXPECT_EQ(copy->Handle(), "2F");
    EXPECT_EQ(copy->AcadEntity(), log);
    copy->Move({1, 0, 0});
    EXPECT_EQ(loop->Vertex(0), (Point{2, 4, 0}));  // independent segments
}

TEST(LoopGeometry, TransformationRebuildsTheProperties) {
    auto loop = Square(0, 0, 2);
    EXPECT_DOUBLE_EQ(loop->Area(), -4);
    loop->Transformation({10, 0}, 0, 3, 1, {0, 0});
    EXPECT_FALSE(loop->InitInertiaDone());
    EXPECT_DOUBLE_EQ(loop->Area(), -12);
    EXPECT_DOUBLE_EQ(loop->Centroid()[0], 13);
}

// Large loops and random ones against every pair of segments: Loop7sTest (OrderedSweep).

// Section properties of whole loops against closed forms and the published section tables.
using test::LoopOf;
using test::Outline;

// Centroidal properties of a figure traversed clockwise (positive area).
struct Expected {
    double area, xc, yc, ix, iy, ixy, perimeter;
};

void ExpectProperties(Loop7& loop, const Expected& e, double sign, const std::string& name) {
    const double scale = std::max(std::fabs(e.ix), std::fabs(e.iy));
    EXPECT_NEAR(loop.Area(), sign * e.area, 1e-11 * e.area) << name;
    EXPECT_NEAR(loop.AreaAbs(), e.area, 1e-11 * e.area) << name;
    EXPECT_NEAR(loop.Centroid()[0], e.xc, 1e-9) << name;
    EXPECT_NEAR(loop.Centroid()[1], e.yc, 1e-9) << name;
    EXPECT_NEAR(loop.MomentOfInertiaX(), sign * e.ix, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.MomentOfInertiaY(), sign * e.iy, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.ProductOfInertiaXY(), sign * e.ixy, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.Length(), e.perimeter, 1e-9 * e.perimeter) << name;
}

// Circular segment of half-angle t (radius r, centre origin) above its chord, clockwise: the chord
// from right to left, then the arc back over the top. t > pi/2 makes a major segment (|bulge| > 1).
Outline CircularSegment(double r, double t) {
    Outline o;
    o.Add(r * std::sin(t), r * std::cos(t));
    o.Add(-r * std::sin(t), r * std::cos(t), -std::tan(t / 2));
    return o;
}

// Sector minus the triangle centre-A-B (signed, so it also covers the major segment).
Expected CircularSegmentExpected(double r, double t) {
    const double a = 2 * t, w = r * std::sin(t), h = r * std::cos(t);
    const double area = r * r * a / 2 - w * h,
                 yc = (2 * r * r * r * std::sin(t) / 3 - 2 * w * h * h / 3) / area;
    const double yy = std::pow(r, 4) * (a + std::sin(a)) / 8 - w * h * h * h / 2;
    const double xx = std::pow(r, 4) * (a - std::sin(a)) / 8 - w * w * w * h / 6;
    return {area, 0, yc, yy - area * yc * yc, xx, 0, 2 * w + r * a};
}

Expected RoundedRectangleExpected(double x0, double y0, double w, double h, double c) {
    const double quarter = M_PI * c * c / 4, spandrel = c * c - quarter;
    auto spandrelSecond = [&](double half) {  // ∫ v² over one spandrel, v measured from the centre
        const double k = half - c;            // quarter-disc centre
        const double disc = M_PI * std::pow(c, 4) / 16 + 2 * k * std::pow(c, 3) / 3 + k * k * quarter;
        return c * (std::pow(half, 3) - std::pow(half - c, 3)) / 3 - disc;
    };
    return {w * h - 4 * spandrel,
            x0,
            y0,
            w * h * h * h / 12 - 4 * spandrelSecond(h / 2),
            h * w * w * w / 12 - 4 * spandrelSecond(w / 2),
            0,
            2 * (w - 2 * c) + 2 * (h - 2 * c) + 2 * M_PI * c};
}

// An unequal-legged L: a vertical leg a x t and a horizontal leg b x t sharing the corner square.
Outline LSection(double a, double b, double t) {
    return Outline::Polygon({0, 0, 0, a, t, a, t, t, b, t, b, 0});
}

Expected LSectionExpected(double a, double b, double t) {
    const double parts[2][4] = {{t, a, t / 2, a / 2}, {b - t, t, t + (b - t) / 2, t / 2}};  // w, h, x, y
    double A = 0, sx = 0, sy = 0, ix = 0, iy = 0, ixy = 0;
    for (const auto& p : parts) A += p[0] * p[1], sx += p[0] * p[1] * p[2], sy += p[0] * p[1] * p[3];
    const double xc = sx / A, yc = sy / A;
    for (const auto& [w, h, x, y] : parts) {
        ix += w * h * h * h / 12 + w * h * (y - yc) * (y - yc);
        iy += h * w * w * w / 12 + w * h * (x - xc) * (x - xc);
        ixy += w * h * (x - xc) * (y - yc);
    }
    return {A, xc, yc, ix, iy, ixy, 2 * (a + b)};
}

// Each figure clockwise (positive values), counter-clockwise (negative ones) and reversed after
// its block was computed (the same block, inverted rather than recomputed).
TEST(LoopSection, ClosedFormsInBothDirections) {
    const double r = 5, m = 4 * r / (3 * M_PI), r4 = r * r * r * r;
    Outline semicircle;  // flat side on y = 0, clockwise: along the diameter leftwards, arc over the top
    semicircle.Add(r, 0);
    semicircle.Add(-r, 0, -1);
    Outline quarter;  // corner at (2, 3), clockwise
    quarter.Add(2, 3);
    quarter.Add(2, 3 + r, -std::tan(M_PI / 8));
    quarter.Add(2 + r, 3);
    const double q = (M_PI / 16 - 4 / (9 * M_PI)) * r4;
    const std::vector<std::tuple<std::string, Outline, Expected>> cases = {
        {"circle",
         test::Circle(3, -2, r),
         {M_PI * r * r, 3, -2, M_PI * r4 / 4, M_PI * r4 / 4, 0, 2 * M_PI * r}},
        {"semicircle",
         semicircle,
         {M_PI * r * r / 2, 0, m, (M_PI / 8 - 8 / (9 * M_PI)) * r4, M_PI * r4 / 8, 0, M_PI * r + 2 * r}},
        {"quarter disc",
         quarter,
         {M_PI * r * r / 4, 2 + m, 3 + m, q, q, (1.0 / 8 - 4 / (9 * M_PI)) * r4, M_PI * r / 2 + 2 * r}},
        {"minor segment", CircularSegment(r, 0.8), CircularSegmentExpected(r, 0.8)},
        {"major segment", CircularSegment(r, 2.3), CircularSegmentExpected(r, 2.3)},
        {"rectangle",
         test::Rectangle(1, 2, 100, 10),
         {1000, 51, 7, 100 * 1000 / 12.0, 10 * 1e6 / 12, 0, 220}},
        {"rounded rectangle", test::RoundedRectangle(10, 20, 80, 50, 8),
         RoundedRectangleExpected(10, 20, 80, 50, 8)},
        {"L section", LSection(100, 60, 8), LSectionExpected(100, 60, 8)},
    };
    for (const auto& [name, clockwise, expected] : cases) {
        ExpectProperties(*LoopOf(clockwise), expected, 1, name);
        ExpectProperties(*LoopOf(clockwise.Reversed()), expected, -1, name + " counter-clockwise");
        auto loop = LoopOf(clockwise);
        const auto block = loop->InertiaBlock();
        loop->Reverse();
        EXPECT_EQ(loop->InertiaBlock(), block) << name;
        ExpectProperties(*loop, expected, -1, name + " reversed");
    }
}

Outline Turned(const Outline& o, double angle, double dx, double dy) {
    Outline t = o;
    for (std::size_t i = 0; i + 1 < t.xy.size(); i += 2) {
        const double x = o.xy[i], y = o.xy[i + 1];
        t.xy[i] = x * std::cos(angle) - y * std::sin(angle) + dx;
        t.xy[i + 1] = x * std::sin(angle) + y * std::cos(angle) + dy;
    }
    return t;
}

// Turned and moved, a section keeps its principal moments and its axes turn along (modulo a quarter
// turn); a moved loop keeps its moments and its block.
TEST(TurnedSection, KeepsPrincipalMomentsAndTurnsTheirAxes) {
    for (double angle : {0.3, M_PI / 2, 2.5, -0.7}) {
        for (const Outline& shape :
             {LSection(100, 60, 8), test::RoundedRectangle(0, 0, 80, 50, 8), CircularSegment(5, 2.3)}) {
            auto base = LoopOf(shape)->InertiaBlock();
            auto turned = LoopOf(Turned(shape, angle, 250, -40))->InertiaBlock();
            const double i1 = base->PMomentOfInertiaX()->Millimetres(),
                         i2 = base->PMomentOfInertiaY()->Millimetres();
            const double j1 = turned->PMomentOfInertiaX()->Millimetres(),
                         j2 = turned->PMomentOfInertiaY()->Millimetres();
            const double tol = 1e-9 * std::max(i1, i2);
            EXPECT_NEAR(std::min(i1, i2), std::min(j1, j2), tol);
            EXPECT_NEAR(std::max(i1, i2), std::max(j1, j2), tol);
            EXPECT_NEAR(base->Area()->Millimetres(), turned->Area()->Millimetres(),
                        1e-9 * base->Area()->Millimetres());
            if (std::fabs(i1 - i2) > 1e-6 * i1) {  // principal axes are defined
                const double gap = std::fmod(std::fabs(turned->PrincipalAngle()->Radians() -
                                                       base->PrincipalAngle()->Radians() - angle),
                                             M_PI / 2);
                EXPECT_LT(std::min(gap, M_PI / 2 - gap), 1e-9) << angle;
            }
        }
    }
    auto loop = LoopOf(LSection(100, 60, 8));
    const auto block = loop->InertiaBlock();
    const double ix = loop->MomentOfInertiaX();
    const Point before = loop->Centroid();
    loop->Move({30, -20, 0});
    EXPECT_EQ(loop->InertiaBlock(), block);
    EXPECT_NEAR(loop->Centroid()[0], before[0] + 30, 1e-12);
    auto fresh = LoopOf(Turned(LSection(100, 60, 8), 0, 30, -20));
    EXPECT_NEAR(fresh->MomentOfInertiaX(), ix, 1e-9 * ix);
    EXPECT_NEAR(fresh->Centroid()[1], before[1] - 20, 1e-9);
}

TEST(PublishedSections, EuropeanISectionsAgreeWithTheTables) {
    const auto rows = test::ReadSectionTable();
    ASSERT_TRUE(rows) << "tests/data/european_i_sections.csv is missing";
    ASSERT_FALSE(rows->empty());
    for (const auto& row : *rows) {
        auto loop = LoopOf(test::IpeOutline(row.h, row.b, row.tw, row.tf, row.r));
        loop->Reverse();  // clockwise: positive values
        auto block = loop->InertiaBlock();
        EXPECT_LT(test::RelativeGap(block->Area()->Centimetres(), row.A), 1e-3) << row.name;
        EXPECT_LT(test::RelativeGap(block->MomentOfInertiaX()->Centimetres(), row.Iy), 1e-3) << row.name;
        EXPECT_LT(test::RelativeGap(block->MomentOfInertiaY()->Centimetres(), row.Iz), 1e-3) << row.name;
        EXPECT_LT(test::RelativeGap(block->RadiusOfGyrationX()->Centimetres(), row.iy), 5e-3) << row.name;
        EXPECT_LT(test::RelativeGap(block->RadiusOfGyrationY()->Centimetres(), row.iz), 5e-3) << row.name;
        EXPECT_NEAR(block->ProductOfInertiaXY()->Millimetres(), 0,
                    1e-6 * block->MomentOfInertiaX()->Millimetres());
    }
}

// Sections at the ends of the number range, and failed edits that must change nothing.
std::shared_ptr<Loop7> Square(double side, double at = 0) {
    auto loop = Loop7::Create();
    loop->InitFromCoordinates(std::vector<double>{at, at, at, at + side, at + side, at + side, at + side, at},
                              std::vector<double>(4, 0.0));
    return loop;
}

TEST(TinyAndHugeSections, TheRangeOfASectionAndClearErrorsBeyondIt) {
    // Side 1E-100 would be a section, but every side below 1E-05 is dropped as zero length: the loop
    // is empty, and says so instead of dividing by its vertex count of 0.
    ExpectError(
        5,
        "Invalid Loop to generate Inertia Properties: the loop has no segment (sides shorter than 1E-05 are "
        "dropped)",
        [] { Square(1e-200)->InertiaBlock(); });
    EXPECT_EQ(Square(1e-200)->Count(), 0u);
    // Side 1E-4: a tiny section, computed (second moments of 1E-16 / 12).
    EXPECT_NEAR(Square(1e-4)->MomentOfInertiaX(), 1e-16 / 12, 1e-30);
    // Side 1E+100: the area fits, the second moments (1E+400) do not.
    ExpectError(6, "Overflow", [] { Square(1e100)->InertiaBlock(); });
}

TEST(FailedEdits, ChangeNothing) {
    auto loop = Square(10);
    const double area = loop->Area();
    const std::vector<double> before = loop->Coordinates();
    // The entity refuses: its error comes out, the loop has not moved.
    auto refusing = std::make_shared<EntityLog>();
    refusing->refuse = true;
    loop->AcadEntity(refusing);
    ExpectError(440, "the entity is locked", [&] { loop->Move({1, 2, 0}, true); });
    EXPECT_EQ(loop->Coordinates(), before);
    // A move that would overflow: nothing moves, not even the entity.
    auto willing = std::make_shared<EntityLog>();
    loop->AcadEntity(willing);
    loop->Move({1e308, 0, 0}, true);
    EXPECT_EQ(willing->moves.size(), 1u);
    const std::vector<double> moved = loop->Coordinates();
    ExpectError(6, "Overflow", [&] { loop->Move({1e308, 0, 0}, true); });
    EXPECT_EQ(willing->moves.size(), 1u);
    EXPECT_EQ(loop->Coordinates(), moved);
    loop = Square(10);
    // A transformation that would overflow, and one that would collapse the loop.
    ExpectError(6, "Overflow", [&] { loop->Transformation({0, 0, 0}, 0, 1e308, 1, {0, 0, 0}); });
    EXPECT_EQ(loop->Coordinates(), before);
    ExpectError(2411,
                "Cannot Transformation Loop7 with a scale factor of 0: the loop would collapse onto a line",
                [&] {
                    loop->Transformation({0, 0, 0}, 0, 0, 1, {0, 0, 0});
                });
    EXPECT_EQ(loop->Area(), area);
}

TEST(FailedEdits, InertiaBlockInitRefusesNonsenseAndStoresNothing) {
    auto block = InertiaBlock::Create();
    block->Init(1, 2, 3, {4, 5, 0}, 6);
    const Point x{1, 0, 0}, alsoX{-2, 0, 0};
    ExpectError(2411, "Vector unitvec(u) = u = 0", [&] {
        block->Init(7, 8, 9, {0, 0, 0}, 10, 1.0, &x, &alsoX);
    });
    ExpectError(9, "Subscript out of range", [&] { block->Init(7, 8, 9, {}, 10); });
    const Point plane{1, 0};
    ExpectError(9, "Subscript out of range", [&] { block->Init(7, 8, 9, {0, 0, 0}, 10, 1.0, &plane); });
    EXPECT_EQ(block->MomentOfInertiaX()->Millimetres(), 1);
    EXPECT_EQ(block->Centroid(), (Point{4, 5, 0}));
    block->Init(7, 8, 9, {1, 2}, 10);  // a plane centroid gets z = 0
    EXPECT_EQ(block->Centroid(), (Point{1, 2, 0}));
    block->Move({1e308, 0, 0});
    ExpectError(6, "Overflow", [&] { block->Move({1e308, 0, 0}); });
    EXPECT_EQ(block->Centroid(), (Point{1e308 + 1, 2, 0}));
}

// Extreme fibres, elastic and plastic section moduli against closed forms and an independent strip
// reference (the published hollow-section table: SectionGroupingTest, through drawings).
using test::Circle;
using test::Rectangle;
using test::SectionOf;

// A circle whose two arcs meet at 45 degrees, so that the equal-area lines cut the arcs inside.
Outline TurnedCircle(double cx, double cy, double r) {
    const double d = r / std::sqrt(2.0);
    Outline o;
    o.Add(cx - d, cy - d, -1);
    o.Add(cx + d, cy + d, -1);
    return o;
}

// A circle about the origin drawn clockwise as three arcs of 120 degrees from 10 degrees: tilted chords,
// each crossed inside by the axes that halve the area.
Outline ThreeArcCircle(double r) {
    Outline o;
    for (double degrees : {10.0, -110.0, -230.0}) {
        const double a = degrees * M_PI / 180;
        o.Add(r * std::cos(a), r * std::sin(a), -std::tan(M_PI / 6));
    }
    return o;
}

// The plastic modulus of a union of axis-aligned rectangles (x0, y0, w, h) about its horizontal
// equal-area axis, from the rectangles alone: the axis by bisection on the area above it.
struct Plate {
    double x0, y0, w, h;
};
double PlasticModulusOfPlates(const std::vector<Plate>& plates, double& axis) {
    auto above = [&](double t) {
        double a = 0;
        for (const Plate& p : plates) a += p.w * std::clamp(p.y0 + p.h - t, 0.0, p.h);
        return a;
    };
    double lo = -1e9, hi = 1e9;
    const double total = above(lo);
    for (int i = 0; i < 200; ++i) (above((lo + hi) / 2) > total / 2 ? lo : hi) = (lo + hi) / 2;
    axis = (lo + hi) / 2;
    double z = 0;
    for (const Plate& p : plates) {
        const double top = p.y0 + p.h, bottom = p.y0;
        // ∫ |y − axis| w dy from bottom to top, with the antiderivative (y − axis)|y − axis| / 2.
        auto antiderivative = [&](double y) { return (y - axis) * std::fabs(y - axis) / 2; };
        z += p.w * (antiderivative(top) - antiderivative(bottom));
    }
    return z;
}

TEST(SectionModuli, ClosedForms) {
    const double r = 30, b = 40, h = 90;
    struct Case {
        std::string name;
        std::shared_ptr<Loop7s> section;
        double top, bottom, left, right, wx, wy, zx, zy;
    };
    const double ri = 24;
    const std::vector<Case> cases = {
        {"rectangle", SectionOf({Rectangle(10, -20, b, h)}), h / 2, h / 2, b / 2, b / 2, b * h * h / 6,
         h * b * b / 6, b * h * h / 4, h * b * b / 4},
        {"circle", SectionOf({TurnedCircle(5, 7, r)}), r, r, r, r, M_PI * r * r * r / 4, M_PI * r * r * r / 4,
         4 * r * r * r / 3, 4 * r * r * r / 3},
        {"circle of three arcs", SectionOf({ThreeArcCircle(r)}), r, r, r, r, M_PI * r * r * r / 4,
         M_PI * r * r * r / 4, 4 * r * r * r / 3, 4 * r * r * r / 3},
        {"tube", SectionOf({TurnedCircle(0, 0, r), Circle(0, 0, ri)}), r, r, r, r,
         M_PI * (std::pow(r, 4) - std::pow(ri, 4)) / (4 * r),
         M_PI * (std::pow(r, 4) - std::pow(ri, 4)) / (4 * r), 4 * (r * r * r - ri * ri * ri) / 3,
         4 * (r * r * r - ri * ri * ri) / 3},
    };
    for (const Case& c : cases) {
        const SectionModuli m = ComputeModuli(*c.section);
        const double tol = 1e-12;
        EXPECT_NEAR(m.top, c.top, tol * c.top) << c.name;
        EXPECT_NEAR(m.bottom, c.bottom, tol * c.top) << c.name;
        EXPECT_NEAR(m.left, c.left, tol * c.left) << c.name;
        EXPECT_NEAR(m.right, c.right, tol * c.left) << c.name;
        EXPECT_NEAR(m.wxTop, c.wx, tol * c.wx) << c.name;
        EXPECT_NEAR(m.wxBottom, c.wx, tol * c.wx) << c.name;
        EXPECT_NEAR(m.wyLeft, c.wy, tol * c.wy) << c.name;
        EXPECT_NEAR(m.wyRight, c.wy, tol * c.wy) << c.name;
        EXPECT_NEAR(m.zx, c.zx, 1e-11 * c.zx) << c.name;
        EXPECT_NEAR(m.zy, c.zy, 1e-11 * c.zy) << c.name;
    }
}

// Unequal flanges move the equal-area axis off the centroid; plates apart leave a gap in which every
// line halves the area.
TEST(SectionModuli, PlasticAxisOfPlatesAgainstAStripReference) {
    const std::vector<std::vector<Plate>> sections = {
        {{-150, 580, 300, 20}, {-6, 20, 12, 560}, {-200, 0, 400, 20}},  // plate girder, unequal flanges
        {{-50, 100, 100, 10}, {-5, 0, 10, 100}},                        // T
        {{0, 0, 100, 10}, {0, 200, 100, 10}},                           // two flanges, no web
        {{0, 0, 10, 10}, {0, 10, 10, 30}, {10, 0, 5, 5}},               // an L made of three blocks
    };
    for (std::size_t i = 0; i < sections.size(); ++i) {
        auto section = Loop7s::Create();
        for (const Plate& p : sections[i]) section->Add(LoopOf(Rectangle(p.x0, p.y0, p.w, p.h)));
        double axis = 0;
        const double z = PlasticModulusOfPlates(sections[i], axis);
        const SectionModuli m = ComputeModuli(*section);
        EXPECT_NEAR(m.zx, z, 1e-11 * z) << "section " << i;
        if (i != 2) {  // the flanges apart leave a gap where any line halves the area
            EXPECT_NEAR(m.plasticAxisY, axis, 1e-9 * (1 + std::fabs(axis))) << "section " << i;
        }
    }
}

}  // namespace
}  // namespace tgp
