// Section properties of whole loops against closed forms and the published section tables.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/Constants.h"
#include "profiles/Loop7.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::Outline;

// Centroidal properties of a figure traversed clockwise (positive area).
struct Expected {
    double area, xc, yc, ix, iy, ixy, perimeter;
};

struct SectionCase {
    std::string name;
    Outline clockwise;
    Expected expected;
};

using test::LoopOf;

void ExpectProperties(Loop7& loop, const Expected& e, double sign, const std::string& name) {
    const double scale = std::max(std::fabs(e.ix), std::fabs(e.iy));
    EXPECT_NEAR(loop.Area(), sign * e.area, 1e-11 * e.area) << name;
    EXPECT_NEAR(loop.AreaAbs(), e.area, 1e-11 * e.area) << name;
    const Point c = loop.Centroid();
    EXPECT_NEAR(c[0], e.xc, 1e-9) << name;
    EXPECT_NEAR(c[1], e.yc, 1e-9) << name;
    EXPECT_NEAR(loop.MomentOfInertiaX(), sign * e.ix, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.MomentOfInertiaY(), sign * e.iy, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.ProductOfInertiaXY(), sign * e.ixy, 1e-10 * scale) << name;
    EXPECT_NEAR(loop.Length(), e.perimeter, 1e-9 * e.perimeter) << name;
}

// Closed forms. r: radius; the reference sums use the full-precision pi.
using test::Circle;
using test::Rectangle;
using test::RoundedRectangle;

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
    const double area = r * r * a / 2 - w * h;
    const double sy = 2 * r * r * r * std::sin(t) / 3 - 2 * w * h * h / 3;
    const double yy = std::pow(r, 4) * (a + std::sin(a)) / 8 - w * h * h * h / 2;
    const double xx = std::pow(r, 4) * (a - std::sin(a)) / 8 - w * w * w * h / 6;
    const double yc = sy / area;
    return {area, 0, yc, yy - area * yc * yc, xx, 0, 2 * w + r * a};
}

Expected RoundedRectangleExpected(double x0, double y0, double w, double h, double c) {
    const double quarter = M_PI * c * c / 4, spandrel = c * c - quarter;
    auto spandrelSecond = [&](double half) {  // ∫ v² over one spandrel, v measured from the centre
        const double square = c * (std::pow(half, 3) - std::pow(half - c, 3)) / 3;
        const double k = half - c;  // quarter-disc centre
        const double disc = M_PI * std::pow(c, 4) / 16 + 2 * k * std::pow(c, 3) / 3 + k * k * quarter;
        return square - disc;
    };
    const double area = w * h - 4 * spandrel;
    const double ix = w * h * h * h / 12 - 4 * spandrelSecond(h / 2);
    const double iy = h * w * w * w / 12 - 4 * spandrelSecond(w / 2);
    return {area, x0, y0, ix, iy, 0, 2 * (w - 2 * c) + 2 * (h - 2 * c) + 2 * M_PI * c};
}

// An unequal-legged L: a vertical leg a x t and a horizontal leg b x t sharing the corner square.
Outline LSection(double a, double b, double t) {
    return Outline::Polygon({0, 0, 0, a, t, a, t, t, b, t, b, 0});
}

Expected LSectionExpected(double a, double b, double t) {
    struct Part {
        double w, h, x, y;  // size and centre
    };
    const Part parts[2] = {{t, a, t / 2, a / 2}, {b - t, t, t + (b - t) / 2, t / 2}};
    double A = 0, sx = 0, sy = 0;
    for (const Part& p : parts) {
        A += p.w * p.h;
        sx += p.w * p.h * p.x;
        sy += p.w * p.h * p.y;
    }
    const double xc = sx / A, yc = sy / A;
    double ix = 0, iy = 0, ixy = 0;
    for (const Part& p : parts) {
        const double ap = p.w * p.h;
        ix += p.w * p.h * p.h * p.h / 12 + ap * (p.y - yc) * (p.y - yc);
        iy += p.h * p.w * p.w * p.w / 12 + ap * (p.x - xc) * (p.x - xc);
        ixy += ap * (p.x - xc) * (p.y - yc);
    }
    return {A, xc, yc, ix, iy, ixy, 2 * (a + b)};
}

std::vector<SectionCase> SectionCases() {
    const double r = 5;
    Outline semicircle;  // flat side on y = 0, clockwise: along the diameter leftwards, arc over the top
    semicircle.Add(r, 0);
    semicircle.Add(-r, 0, -1);
    Outline quarter;  // corner at (2, 3), clockwise
    quarter.Add(2, 3);
    quarter.Add(2, 3 + r, -std::tan(M_PI / 8));
    quarter.Add(2 + r, 3);
    const double m = 4 * r / (3 * M_PI);
    const double rr = r * r, r4 = rr * rr;
    return {
        {"circle", Circle(3, -2, r), {M_PI * rr, 3, -2, M_PI * r4 / 4, M_PI * r4 / 4, 0, 2 * M_PI * r}},
        {"semicircle",
         semicircle,
         {M_PI * rr / 2, 0, m, (M_PI / 8 - 8 / (9 * M_PI)) * r4, M_PI * r4 / 8, 0, M_PI * r + 2 * r}},
        {"quarter_disc",
         quarter,
         {M_PI * rr / 4, 2 + m, 3 + m, (M_PI / 16 - 4 / (9 * M_PI)) * r4, (M_PI / 16 - 4 / (9 * M_PI)) * r4,
          (1.0 / 8 - 4 / (9 * M_PI)) * r4, M_PI * r / 2 + 2 * r}},
        {"minor_segment", CircularSegment(r, 0.8), CircularSegmentExpected(r, 0.8)},
        {"major_segment", CircularSegment(r, 2.3), CircularSegmentExpected(r, 2.3)},
        {"rectangle", Rectangle(1, 2, 100, 10), {1000, 51, 7, 100 * 1000 / 12.0, 10 * 1e6 / 12, 0, 220}},
        {"rounded_rectangle", RoundedRectangle(10, 20, 80, 50, 8),
         RoundedRectangleExpected(10, 20, 80, 50, 8)},
        {"l_section", LSection(100, 60, 8), LSectionExpected(100, 60, 8)},
    };
}

class LoopSection : public ::testing::TestWithParam<SectionCase> {};

TEST_P(LoopSection, ClockwiseGivesPositiveValues) {
    ExpectProperties(*LoopOf(GetParam().clockwise), GetParam().expected, 1, GetParam().name);
}

TEST_P(LoopSection, CounterClockwiseGivesNegativeValues) {
    ExpectProperties(*LoopOf(GetParam().clockwise.Reversed()), GetParam().expected, -1, GetParam().name);
}

TEST_P(LoopSection, ReverseInvertsTheComputedBlock) {
    auto loop = LoopOf(GetParam().clockwise);
    const auto block = loop->InertiaBlock();
    loop->Reverse();
    EXPECT_EQ(loop->InertiaBlock(), block);  // the same object, inverted rather than recomputed
    ExpectProperties(*loop, GetParam().expected, -1, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Shapes, LoopSection, ::testing::ValuesIn(SectionCases()),
                         [](const auto& info) { return info.param.name; });

// ---- invariants --------------------------------------------------------------------------------

Outline Turned(const Outline& o, double angle, double dx, double dy) {
    Outline t = o;
    for (std::size_t i = 0; i + 1 < t.xy.size(); i += 2) {
        const double x = o.xy[i], y = o.xy[i + 1];
        t.xy[i] = x * std::cos(angle) - y * std::sin(angle) + dx;
        t.xy[i + 1] = x * std::sin(angle) + y * std::cos(angle) + dy;
    }
    return t;
}

// Distance between two angles taken modulo a quarter turn.
double QuarterTurnGap(double a, double b) {
    const double q = M_PI / 2;
    const double d = std::fmod(std::fabs(a - b), q);
    return std::min(d, q - d);
}

class TurnedSection : public ::testing::TestWithParam<double> {};

TEST_P(TurnedSection, KeepsPrincipalMomentsAndTurnsTheirAxes) {
    const double angle = GetParam();
    for (const Outline& shape :
         {LSection(100, 60, 8), RoundedRectangle(0, 0, 80, 50, 8), CircularSegment(5, 2.3)}) {
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
            EXPECT_LT(QuarterTurnGap(turned->PrincipalAngle()->Radians(),
                                     base->PrincipalAngle()->Radians() + angle),
                      1e-9);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Angles, TurnedSection, ::testing::Values(0.3, 1.0, M_PI / 2, 2.5, -0.7, M_PI));

TEST(LoopMove, KeepsMomentsAndShiftsTheCentroid) {
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

// ---- published section tables -----------------------------------------------------------------

TEST(PublishedSections, EuropeanISectionsAgreeWithTheTables) {
    const auto rows = test::ReadSectionTable();
    ASSERT_TRUE(rows) << "tests/data/european_i_sections.csv is missing";
    ASSERT_FALSE(rows->empty());
    for (const auto& row : *rows) {
        const test::Outline o = test::IpeOutline(row.h, row.b, row.tw, row.tf, row.r);
        auto loop = LoopOf(o);
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

}  // namespace
}  // namespace tgp
