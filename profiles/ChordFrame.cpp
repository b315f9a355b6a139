#include "profiles/ChordFrame.h"

#include <cmath>

namespace tgp {

ChordFrame ChordFrame::Of(const Point3& A, const Point3& B, double Alfa) {
    const double dx = B[0] - A[0], dy = B[1] - A[1];
    const double chord = std::sqrt(dx * dx + dy * dy);
    ChordFrame f{};
    f.tx = dx / chord;
    f.ty = dy / chord;
    const double turn = Alfa > 0 ? 1.0 : -1.0;  // a positive bulge bulges to the right of A-to-B
    f.wx = turn * f.ty;
    f.wy = -turn * f.tx;
    f.m = {A[0] + dx / 2, A[1] + dy / 2, 0};
    f.a = chord / 2;
    f.theta = std::fabs(Alfa) / 2;
    f.s = std::sin(f.theta);
    f.c = std::cos(f.theta);
    f.kappa = f.s / f.a;
    return f;
}

bool ChordFrame::Project(double u, double v, Projection& out) const {
    const double nu = kappa * u, nv = kappa * v + c;  // kappa (P − centre)
    const double length = std::sqrt(nu * nu + nv * nv);
    if (length == 0 || !std::isfinite(length)) return false;
    out.nu = nu / length;
    out.nv = nv / length;
    out.gap = F(u, v) / (1 + length);  // |P − centre| − R, without R
    out.u = u - out.gap * out.nu;
    out.v = v - out.gap * out.nv;
    return true;
}

void ChordFrame::PointAt(double phi, double& u, double& v) const {
    u = a * std::sin(phi) / s;
    v = 2 * a / s * std::sin((theta + phi) / 2) * std::sin((theta - phi) / 2);  // R (cos phi − cos theta)
}

double ChordFrame::AngleOf(double u, double v) const {
    return std::atan2(kappa * u, kappa * v + c);
}

bool ChordFrame::ExtremeTowards(const Point3& e, Point3& point) const {
    const double eu = e[0] * tx + e[1] * ty, ev = e[0] * wx + e[1] * wy;
    if (!(ev >= c)) return false;
    const double halfSin = std::sin(theta / 2);
    const double fromTop = ev > 0 ? eu * eu / (1 + ev) : 1 - ev;  // 1 − ev, without cancellation
    point = World(a * eu / s, a / s * (2 * halfSin * halfSin - fromTop));
    return true;
}

int ChordFrame::LinePositions(const Point3& X0, const Point3& e, double tau[3]) const {
    // From the foot of the chord's midpoint on the line, so that far-off X0 costs no digits.
    const double shift = (m[0] - X0[0]) * e[0] + (m[1] - X0[1]) * e[1];
    const Point3 foot = {X0[0] + shift * e[0], X0[1] + shift * e[1], 0};
    const double pu = U(foot), pv = V(foot);
    const double eu = e[0] * tx + e[1] * ty, ev = e[0] * wx + e[1] * wy;
    // F along the line: kappa tau² + 2 B tau + C.
    const double B = kappa * (pu * eu + pv * ev) + c * ev, C = F(pu, pv);
    int n = 0;
    if (kappa == 0) {
        if (B != 0) tau[n++] = shift - C / (2 * B);
        return n;
    }
    const double disc = B * B - kappa * C;
    if (disc >= 0) {
        const double q = -(B + std::copysign(std::sqrt(disc), B));
        if (q != 0) {
            tau[n++] = shift + q / kappa;
            tau[n++] = shift + C / q;
        } else {
            tau[n++] = shift;
        }
    }
    tau[n++] = shift - B / kappa;  // closest approach: a tangent within tolerance
    return n;
}

}  // namespace tgp
