// Section properties of loops with arcs of every bulge against a 113-bit reference: the defining line
// integrals (∫ y dx, ∫ y²/2 dx, ...) taken along each arc by Gauss-Legendre quadrature in __float128,
// an independent route that shares nothing with the library's closed forms and series.
#include <gtest/gtest.h>
#include <quadmath.h>

#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "core/Error.h"
#include "profiles/Loop7.h"

namespace {

using quad = __float128;

// Gauss-Legendre nodes and weights on [-1, 1], by Newton's method on the Legendre polynomial.
struct GaussLegendre {
    static constexpr int kPoints = 24;
    std::array<quad, kPoints> node{}, weight{};

    GaussLegendre() {
        const quad pi = 4 * atanq(1);
        for (int i = 0; i < kPoints; ++i) {
            quad x = cosq(pi * (4 * i + 3) / (4 * kPoints + 2));
            quad derivative = 0;
            for (int iteration = 0; iteration < 100; ++iteration) {
                quad p0 = 1, p1 = x;
                for (int k = 2; k <= kPoints; ++k) {
                    const quad p2 = ((2 * k - 1) * x * p1 - (k - 1) * p0) / k;
                    p0 = p1;
                    p1 = p2;
                }
                derivative = kPoints * (x * p1 - p0) / (x * x - 1);
                const quad step = p1 / derivative;
                x -= step;
                if (fabsq(step) < static_cast<quad>(1e-32)) break;
            }
            node[i] = x;
            weight[i] = 2 / ((1 - x * x) * derivative * derivative);
        }
    }
};

const GaussLegendre& Rule() {
    static const GaussLegendre rule;
    return rule;
}

// The six integrals of the loop's boundary about an origin, its perimeter, in 113 bits.
struct Sums {
    quad a = 0, sx = 0, sy = 0, ixx = 0, iyy = 0, ixy = 0, length = 0;
};

void AddLine(Sums& s, quad xa, quad ya, quad xb, quad yb) {
    s.length += sqrtq((xb - xa) * (xb - xa) + (yb - ya) * (yb - ya));
    const quad half = (xb - xa) / 2;
    for (int i = 0; i < GaussLegendre::kPoints; ++i) {  // exact: the integrands are cubic in x
        const quad t = (Rule().node[i] + 1) / 2;
        const quad x = xa + (xb - xa) * t, y = ya + (yb - ya) * t, w = Rule().weight[i] * half;
        s.a += w * y;
        s.sx += w * y * y / 2;
        s.sy += w * x * y;
        s.ixx += w * y * y * y / 3;
        s.iyy += w * x * x * y;
        s.ixy += w * x * y * y / 2;
    }
}

// The arc by its angle phi in [-theta, theta] seen from the centre, measured from the chord's normal:
// P(phi) = M + R sin(phi) t + R (cos phi - cos theta) w, with the last factor written as a product of
// sines so that a nearly straight arc (R of 1E12) costs no digits.
void AddArc(Sums& s, quad xa, quad ya, quad xb, quad yb, double bulge) {
    const quad dx = xb - xa, dy = yb - ya, chord = sqrtq(dx * dx + dy * dy);
    const quad alfa = 4 * atanq(static_cast<quad>(bulge));
    const quad theta = fabsq(alfa) / 2, radius = chord / 2 / sinq(theta);
    const quad tx = dx / chord, ty = dy / chord;
    const quad wx = alfa > 0 ? ty : -ty, wy = alfa > 0 ? -tx : tx;  // towards the arc
    const quad mx = xa + dx / 2, my = ya + dy / 2;
    s.length += radius * 2 * theta;
    const int pieces = 1 + static_cast<int>(10 * theta);
    for (int p = 0; p < pieces; ++p) {
        const quad from = -theta + 2 * theta * p / pieces, half = theta / pieces;
        for (int i = 0; i < GaussLegendre::kPoints; ++i) {
            const quad phi = from + half * (Rule().node[i] + 1);
            const quad along = radius * sinq(phi),
                       across = 2 * radius * sinq((theta + phi) / 2) * sinq((theta - phi) / 2);
            const quad x = mx + along * tx + across * wx, y = my + along * ty + across * wy;
            const quad dxdphi = radius * cosq(phi) * tx - radius * sinq(phi) * wx;
            const quad w = Rule().weight[i] * half * dxdphi;
            s.a += w * y;
            s.sx += w * y * y / 2;
            s.sy += w * x * y;
            s.ixx += w * y * y * y / 3;
            s.iyy += w * x * x * y;
            s.ixy += w * x * y * y / 2;
        }
    }
}

struct Properties {
    double area, xc, yc, ix, iy, ixy, length;
};

Properties Reference(const std::vector<double>& xy, const std::vector<double>& bulges) {
    const std::size_t n = bulges.size();
    const quad ox = xy[0], oy = xy[1];
    Sums s;
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = (i + 1) % n;
        const quad xa = xy[2 * i] - ox, ya = xy[2 * i + 1] - oy, xb = xy[2 * j] - ox, yb = xy[2 * j + 1] - oy;
        if (bulges[i] == 0)
            AddLine(s, xa, ya, xb, yb);
        else
            AddArc(s, xa, ya, xb, yb, bulges[i]);
    }
    const quad xc = s.sy / s.a, yc = s.sx / s.a;
    return {static_cast<double>(s.a),
            static_cast<double>(ox + xc),
            static_cast<double>(oy + yc),
            static_cast<double>(s.ixx - s.a * yc * yc),
            static_cast<double>(s.iyy - s.a * xc * xc),
            static_cast<double>(s.ixy - s.a * xc * yc),
            static_cast<double>(s.length)};
}

Properties Computed(const std::vector<double>& xy, const std::vector<double>& bulges) {
    auto loop = tgp::Loop7::Create();
    loop->InitFromCoordinates(xy, bulges);
    const tgp::Point c = loop->Centroid();
    return {loop->Area(),
            c[0],
            c[1],
            loop->MomentOfInertiaX(),
            loop->MomentOfInertiaY(),
            loop->ProductOfInertiaXY(),
            loop->Length()};
}

// A square of side `side` at (offset, offset) whose top edge carries the bulge, traversed so that the
// arc bulges outwards (counter-clockwise for a positive bulge, clockwise for a negative one).
void SquareWithArcTop(double side, double offset, double bulge, std::vector<double>& xy,
                      std::vector<double>& b) {
    const double o = offset, s = side;
    if (bulge > 0) {
        xy = {o, o, o + s, o, o + s, o + s, o, o + s};
        b = {0, 0, bulge, 0};
    } else {
        xy = {o, o, o, o + s, o + s, o + s, o + s, o};
        b = {0, bulge, 0, 0};
    }
}

// The same square with every edge bulging outwards by the same amount.
void SquareWithArcEdges(double side, double offset, double bulge, std::vector<double>& xy,
                        std::vector<double>& b) {
    SquareWithArcTop(side, offset, bulge, xy, b);
    b.assign(4, bulge);
}

// A lens: two arcs between the same two points.
void Lens(double side, double offset, double bulge, std::vector<double>& xy, std::vector<double>& b) {
    xy = {offset, offset, offset + side, offset};
    b = {bulge, bulge};
}

// Relative to the section's own magnitude: the area, the extent for the centroid (plus the last bit
// of a coordinate far from the origin, which no double can do better than), the larger centroidal
// moment for the three moments, the perimeter for the length.
void ExpectClose(const Properties& got, const Properties& want, double extent, const std::string& what) {
    constexpr double kRelative = 1e-10;
    const double moments = std::max(std::fabs(want.ix), std::fabs(want.iy));
    auto coordinate = [&](double c) { return kRelative * extent + 4 * std::fabs(c) * 0x1p-52; };
    EXPECT_NEAR(got.area, want.area, kRelative * std::fabs(want.area)) << what;
    EXPECT_NEAR(got.xc, want.xc, coordinate(want.xc)) << what;
    EXPECT_NEAR(got.yc, want.yc, coordinate(want.yc)) << what;
    EXPECT_NEAR(got.ix, want.ix, kRelative * moments) << what;
    EXPECT_NEAR(got.iy, want.iy, kRelative * moments) << what;
    EXPECT_NEAR(got.ixy, want.ixy, kRelative * moments) << what;
    EXPECT_NEAR(got.length, want.length, kRelative * want.length) << what;
}

using ShapeBuilder = void (*)(double, double, double, std::vector<double>&, std::vector<double>&);

struct Shape {
    const char* name;
    ShapeBuilder build;
    double largestBulge;  // beyond it the arcs of the shape would cross one another
};

TEST(ArcAccuracy, EveryBulgeChordAndOffsetAgreesWithQuadratureIn113Bits) {
    const Shape shapes[] = {{"square with arc top", SquareWithArcTop, 1e3},
                            {"square with four arcs", SquareWithArcEdges, 1.0},
                            {"lens", Lens, 1e3}};
    const double magnitudes[] = {1e-12, 1e-10, 1e-9, 1e-7, 3e-5, 1e-4, 9.99e-4, 1e-3,  0.0123,
                                 0.2,   0.27,  0.55, 1.0,  1.7,  10,   1e2,     999.9, 1e3};
    const double chords[] = {1e-3, 0.37, 1, 250, 1e4};
    const double offsets[] = {0, 1e6};
    int checked = 0;
    for (const Shape& shape : shapes) {
        for (double magnitude : magnitudes) {
            if (magnitude > shape.largestBulge) continue;
            for (double sign : {1.0, -1.0}) {
                for (double chord : chords) {
                    for (double offset : offsets) {
                        std::vector<double> xy, bulges;
                        shape.build(chord, offset, sign * magnitude, xy, bulges);
                        const std::string what = std::string(shape.name) + " bulge " +
                                                 std::to_string(sign * magnitude) + " chord " +
                                                 std::to_string(chord) + " offset " + std::to_string(offset);
                        const Properties want = Reference(xy, bulges);
                        const double extent = std::max(chord, std::sqrt(std::fabs(want.area)));
                        try {
                            ExpectClose(Computed(xy, bulges), want, extent, what);
                        } catch (const tgp::Error& e) {
                            // A lens thinner than about ten times the on-line tolerance (1E-6) may
                            // have its two arcs within that tolerance somewhere between its ends:
                            // touching, refused as cutting itself. Anything else must compute.
                            const bool sliver = shape.build == Lens && chord * magnitude < 1e-5;
                            EXPECT_TRUE(sliver && e.number() == 5) << what << ": " << e.description();
                        }
                        ++checked;
                    }
                }
            }
        }
    }
    EXPECT_GT(checked, 300);
}

// As the bulge goes to 0 every property approaches that of the straight loop, in proportion to the
// bulge: random convex polygons, a random edge bulged, bulges from 1E-1 down to 1E-14.
TEST(ArcAccuracy, BulgedLoopConvergesSmoothlyToTheStraightLoop) {
    std::mt19937_64 random(20261122);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int trial = 0; trial < 200; ++trial) {
        const int n = 3 + static_cast<int>(unit(random) * 8);
        const double size = std::pow(10.0, -2 + 6 * unit(random));
        const double offset = unit(random) < 0.5 ? 0.0 : 1e6 * unit(random);
        std::vector<double> xy;
        for (int i = 0; i < n; ++i) {  // a convex polygon, clockwise: angles decreasing
            const double angle = -2 * M_PI * (i + 0.8 * unit(random)) / n;
            xy.push_back(offset + size * std::cos(angle));
            xy.push_back(offset + size * std::sin(angle));
        }
        std::vector<double> bulges(static_cast<std::size_t>(n), 0.0);
        const Properties straight = Computed(xy, bulges);
        const std::size_t edge = static_cast<std::size_t>(unit(random) * n);
        const double sign = unit(random) < 0.5 ? 1.0 : -1.0;  // outwards (clockwise loop) or inwards
        const double scaleA = std::fabs(straight.area);
        const double scaleI = std::max(std::fabs(straight.ix), std::fabs(straight.iy));
        double previous = HUGE_VAL;
        for (int k = 1; k <= 14; ++k) {
            bulges[edge] = sign * std::pow(10.0, -k);
            const Properties p = Computed(xy, bulges);
            const double b = std::pow(10.0, -k);
            // An arc of bulge b on a chord c adds about (2/3) c² b of area: bounded by the size.
            const double change =
                std::max({std::fabs(p.area - straight.area) / scaleA, std::fabs(p.ix - straight.ix) / scaleI,
                          std::fabs(p.iy - straight.iy) / scaleI, std::fabs(p.ixy - straight.ixy) / scaleI,
                          std::fabs(p.xc - straight.xc) / size, std::fabs(p.yc - straight.yc) / size});
            EXPECT_LE(change, 20 * b + 1e-12) << "trial " << trial << " bulge 1E-" << k;
            if (change > 1e-11) {
                EXPECT_LT(change, previous) << "trial " << trial << " bulge 1E-" << k;
            }
            previous = change;
            EXPECT_NEAR(p.length, straight.length, (4 * b * b + 1e-13) * straight.length) << trial;
        }
    }
}

}  // namespace
