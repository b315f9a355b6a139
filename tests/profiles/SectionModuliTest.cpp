// Extreme fibres, elastic and plastic section moduli against closed forms and an independent strip
// reference (the published hollow-section table: SectionGroupingTest, through drawings).

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "profiles/Loop7s.h"
#include "profiles/SectionModuli.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::Circle;
using test::LoopOf;
using test::Outline;
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
