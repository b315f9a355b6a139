// Section properties of whole loops against closed forms and the published section tables.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "core/Constants.h"
#include "profiles/Loop7.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

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

}  // namespace
}  // namespace tgp
