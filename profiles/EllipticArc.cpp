#include "profiles/EllipticArc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tgp {

namespace {

// 8-point Gauss-Legendre rule on [-1, 1].
constexpr double kNodes[4] = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267, 0.9602898564975363};
constexpr double kWeights[4] = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                0.1012285362903763};
constexpr double kLongestStep = std::numbers::pi / 8;

// Calls add(t, weight) for the quadrature points of t0..t1 (weights carry the sign of the travel).
template <class Add>
void Quadrature(double t0, double t1, Add add) {
    const int steps = std::max(1, static_cast<int>(std::ceil(std::fabs(t1 - t0) / kLongestStep)));
    const double h = (t1 - t0) / steps;
    for (int k = 0; k < steps; ++k) {
        const double mid = t0 + (k + 0.5) * h;
        for (int n = 0; n < 4; ++n) {
            for (double side : {-1.0, 1.0}) add(mid + side * kNodes[n] * h / 2, kWeights[n] * h / 2);
        }
    }
}

}  // namespace

Point3 EllipticArc::At(double t) const {
    const double c = std::cos(t), s = std::sin(t);
    return {cx + c * ux + s * vx, cy + c * uy + s * vy, 0};
}

EllipticArc EllipticArc::Mapped(double a, double b, double c, double d, double e, double f) const {
    return {a * cx + b * cy + e,
            c * cx + d * cy + f,
            a * ux + b * uy,
            c * ux + d * uy,
            a * vx + b * vy,
            c * vx + d * vy,
            t0,
            t1};
}

EllipticArc EllipticArc::Reversed() const {
    EllipticArc r = *this;
    r.t0 = t1;
    r.t1 = t0;
    return r;
}

SegmentIntegrals IntegralsAbout(const EllipticArc& arc, const Point3& Origin) {
    SegmentIntegrals s;
    Quadrature(arc.t0, arc.t1, [&](double t, double w) {
        const double c = std::cos(t), sn = std::sin(t);
        const double x = (arc.cx - Origin[0]) + c * arc.ux + sn * arc.vx;
        const double y = (arc.cy - Origin[1]) + c * arc.uy + sn * arc.vy;
        const double dx = (-sn * arc.ux + c * arc.vx) * w;
        s.Area += y * dx;
        s.StaticMomentX += y * y / 2 * dx;
        s.StaticMomentY += x * y * dx;
        s.MomentOfInertiaX += y * y * y / 3 * dx;
        s.MomentOfInertiaY += x * x * y * dx;
        s.ProductOfInertiaXY += x * y * y / 2 * dx;
    });
    return s;
}

double Length(const EllipticArc& arc) {
    double length = 0;
    Quadrature(arc.t0, arc.t1, [&](double t, double w) {
        const double c = std::cos(t), s = std::sin(t);
        length += std::hypot(-s * arc.ux + c * arc.vx, -s * arc.uy + c * arc.vy) * std::fabs(w);
    });
    return length;
}

SegmentBox BoundingBox(const EllipticArc& arc) {
    const double low = std::min(arc.t0, arc.t1), high = std::max(arc.t0, arc.t1);
    SegmentBox box = SegmentBox::Empty();
    auto include = [&](double t) {
        const Point3 p = arc.At(t);
        box.Include({p[0], p[1], p[0], p[1]});
    };
    include(arc.t0);
    include(arc.t1);
    // x turns where -ux sin t + vx cos t = 0, y where -uy sin t + vy cos t = 0: each twice a turn.
    for (double turn : {std::atan2(arc.vx, arc.ux), std::atan2(arc.vy, arc.uy)}) {
        for (double t = turn - 2 * std::numbers::pi * std::ceil((turn - low) / (2 * std::numbers::pi) + 1);
             t <= high; t += std::numbers::pi) {
            if (t >= low) include(t);
        }
    }
    return box;
}

int ArcPieces(const EllipticArc& arc) {
    return std::max(2,
                    static_cast<int>(std::ceil(std::fabs(arc.t1 - arc.t0) / (2 * std::numbers::pi) * 512)));
}

std::vector<double> ArcsAlong(const EllipticArc& arc, int pieces) {
    std::vector<double> out;
    for (int i = 0; i < pieces; ++i) {
        const double ta = arc.t0 + (arc.t1 - arc.t0) * i / pieces;
        const double tb = arc.t0 + (arc.t1 - arc.t0) * (i + 1) / pieces;
        const Point3 a = arc.At(ta), m = arc.At((ta + tb) / 2), b = arc.At(tb);
        // The arc through a, m and b: the angle at m is pi minus half the included angle, so the
        // bulge, the tangent of a quarter of that angle, is the cotangent of half the angle at m.
        const Point3 ma = Minus(a, m), mb = Minus(b, m);
        const double angle = std::atan2(std::fabs(Cross2(ma, mb)), Dot2(ma, mb));
        const double turn = Cross2(Minus(m, a), Minus(b, m));  // positive: turning left, counter-clockwise
        const double bulge = std::tan((std::numbers::pi - angle) / 2);
        out.push_back(a[0]);
        out.push_back(a[1]);
        out.push_back(turn >= 0 ? bulge : -bulge);
    }
    return out;
}

}  // namespace tgp
