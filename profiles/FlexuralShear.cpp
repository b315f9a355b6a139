#include "profiles/FlexuralShear.h"

#include <cmath>

#include "profiles/InertiaBlock.h"
#include "profiles/NeumannProblem.h"

namespace tgp {

namespace {

// In the section's plane: a boundary point's z (the drawing's elevation) is not read.
double PlaneDot(const Point3& a, const Point3& b) {
    return a.x * b.x + a.y * b.y;
}

// One solid's share: its shear compliance (xx, xy, yy) and elastic shear centre (from the section's
// centroid), and its area and second moments about the section's centroid.
struct SolidShear {
    double compliance[3], stiffness[3];  // xx, xy, yy; each the other's inverse
    Point3 centre;
    double area, ix, iy, ixy;
};

// The polynomials of one solid's flexure, in X, Y from its centroid.
struct Flexure {
    double ix, iy, ixy, nu;
    // The vectors d (of Ψ) and h (of Φ).
    Point3 D(const Point3& p) const {
        const double r = p.x * p.x - p.y * p.y, q = 2 * p.x * p.y;
        return {ix * r - ixy * q, ixy * r + ix * q, 0};
    }
    Point3 H(const Point3& p) const {
        const double r = p.x * p.x - p.y * p.y, q = 2 * p.x * p.y;
        return {-ixy * r + iy * q, -iy * r - ixy * q, 0};
    }
    // The sources' halves f (of Ψ) and F (of Φ), and the cubics whose Laplacians they are, g and G.
    double F(const Point3& p) const { return ix * p.x - ixy * p.y; }
    double FPhi(const Point3& p) const { return iy * p.y - ixy * p.x; }
    double G(const Point3& p) const { return (ix * p.x * p.x * p.x - ixy * p.y * p.y * p.y) / 6; }
    double GPhi(const Point3& p) const { return (iy * p.y * p.y * p.y - ixy * p.x * p.x * p.x) / 6; }
    Point3 GradG(const Point3& p) const { return {ix * p.x * p.x / 2, -ixy * p.y * p.y / 2, 0}; }
    Point3 GradGPhi(const Point3& p) const { return {-ixy * p.x * p.x / 2, iy * p.y * p.y / 2, 0}; }
    // The particular solutions -2g and -2G take the sources away; the harmonic rest has these fluxes.
    double PsiFlux(const Point3& p, const Point3& n) const {
        return PlaneDot(D(p) * (nu / 2) + GradG(p) * 2, n);
    }
    double PhiFlux(const Point3& p, const Point3& n) const {
        return PlaneDot(H(p) * (nu / 2) + GradGPhi(p) * 2, n);
    }
};

// The inverse of a symmetric 2 x 2 matrix (xx, xy, yy).
void Invert(const double m[3], double out[3]) {
    const double det = m[0] * m[2] - m[1] * m[1];
    out[0] = m[2] / det;
    out[1] = -m[1] / det;
    out[2] = m[0] / det;
}

SolidShear ShearOfSolid(const BoundaryPanels& boundary, const std::vector<double>& warping, double nu) {
    const auto& nodes = boundary.Nodes();
    double area = 0, sx = 0, sy = 0;
    for (const BoundaryNode& node : nodes) {
        const double x = node.p.x, y = node.p.y, ds = node.weight;
        area += x * node.normal.x * ds;
        sx += x * x / 2 * node.normal.x * ds;
        sy += y * y / 2 * node.normal.y * ds;
    }
    const Point3 o{sx / area, sy / area, 0};
    Flexure k{0, 0, 0, nu};
    for (const BoundaryNode& node : nodes) {
        const Point3 p = node.p - o;
        k.ix += p.y * p.y * p.y / 3 * node.normal.y * node.weight;
        k.iy += p.x * p.x * p.x / 3 * node.normal.x * node.weight;
        k.ixy += p.x * p.x * p.y / 2 * node.normal.x * node.weight;
    }
    const auto harmonic = NeumannProblem(boundary).Solve(
        {[&](const Point3& p, const Point3& n) { return k.PsiFlux(p - o, n); },
         [&](const Point3& p, const Point3& n) { return k.PhiFlux(p - o, n); }});

    // Area integrals through the boundary: a homogeneous polynomial P of degree m has
    // ∫ P dA = ∮ P (r·n) ds / (m + 2); a harmonic u has ∫ u f dA = ∮ (u dg/dn - g du/dn) ds.
    double dd = 0, hh = 0, dh = 0, scx = 0, scy = 0;  // ∫|d|², ∫|h|², ∫d·h, the shear centre's cubics
    double psiF = 0, psiFPhi = 0, phiF = 0, phiFPhi = 0, omegaF = 0, omegaFPhi = 0;  // ∫ u f dA
    double psiD = 0, phiH = 0, phiD = 0, omegaD = 0, omegaH = 0;                     // ∮ u d·n ds
    for (std::size_t j = 0; j < nodes.size(); ++j) {
        const Point3 p = nodes[j].p - o, n = nodes[j].normal;
        const double ds = nodes[j].weight, rn = PlaneDot(p, n) * ds, r2 = PlaneDot(p, p);
        const Point3 d = k.D(p), h = k.H(p);
        const double g = k.G(p), gPhi = k.GPhi(p), dg = PlaneDot(k.GradG(p), n),
                     dgPhi = PlaneDot(k.GradGPhi(p), n);
        const double f = k.F(p), fPhi = k.FPhi(p), dn = PlaneDot(d, n) * ds, hn = PlaneDot(h, n) * ds;
        dd += PlaneDot(d, d) * rn / 6;
        hh += PlaneDot(h, h) * rn / 6;
        dh += PlaneDot(d, h) * rn / 6;
        scx += (k.iy * p.x + k.ixy * p.y) * r2 * rn / 5;
        scy += (k.ix * p.y + k.ixy * p.x) * r2 * rn / 5;
        // Ψ = -2g + ψ, Φ = -2G + φ with ψ, φ harmonic; ω about the solid's centroid.
        const double psi = harmonic[0][j], phi = harmonic[1][j];
        const double psiFlux = k.PsiFlux(p, n), phiFlux = k.PhiFlux(p, n);
        psiF += -2 * g * f * rn / 6 + (psi * dg - g * psiFlux) * ds;
        psiFPhi += -2 * g * fPhi * rn / 6 + (psi * dgPhi - gPhi * psiFlux) * ds;
        phiF += -2 * gPhi * f * rn / 6 + (phi * dg - g * phiFlux) * ds;
        phiFPhi += -2 * gPhi * fPhi * rn / 6 + (phi * dgPhi - gPhi * phiFlux) * ds;
        const double omega = warping[j] - o.y * nodes[j].p.x + o.x * nodes[j].p.y;
        const double omegaFlux = p.y * n.x - p.x * n.y;
        omegaF += (omega * dg - g * omegaFlux) * ds;
        omegaFPhi += (omega * dgPhi - gPhi * omegaFlux) * ds;
        psiD += (psi - 2 * g) * dn;
        phiH += (phi - 2 * gPhi) * hn;
        phiD += (phi - 2 * gPhi) * dn;
        omegaD += omega * dn;
        omegaH += omega * hn;
    }
    // The shear energies of unit forces, ∫ (∇Ψ - ν/2 d)·(∇Φ - ν/2 h) dA and the like, by Green's first
    // identity; the moment of the stresses about the centroid gives the shear centre.
    const double kxx = -nu / 2 * psiD + (2 + 4 * nu) * psiF + nu * nu / 4 * dd;
    const double kyy = -nu / 2 * phiH + (2 + 4 * nu) * phiFPhi + nu * nu / 4 * hh;
    const double kxy = 2 * (1 + nu) * psiFPhi - nu / 2 * phiD + 2 * nu * phiF + nu * nu / 4 * dh;
    const double delta = 2 * (1 + nu) * (k.ix * k.iy - k.ixy * k.ixy);
    const Point3 centre{(nu / 2 * scx - (nu / 2 * omegaH + 2 * omegaFPhi)) / delta,
                        (nu / 2 * scy + (nu / 2 * omegaD + 2 * omegaF)) / delta, 0};
    const double d2 = delta * delta;
    SolidShear shear{{kxx / d2, kxy / d2, kyy / d2},
                     {},
                     centre + o,
                     area,
                     k.ix + area * o.y * o.y,
                     k.iy + area * o.x * o.x,
                     k.ixy + area * o.x * o.y};
    Invert(shear.compliance, shear.stiffness);
    return shear;
}

}  // namespace

FlexuralShear::FlexuralShear(const SaintVenantTorsion& torsion, double poisson) : poisson_(poisson) {
    std::vector<SolidShear> solids;
    double stiffness[3] = {0, 0, 0}, ix = 0, iy = 0, ixy = 0;
    for (const auto& solid : torsion.Solids()) {
        solids.push_back(ShearOfSolid(solid.boundary, solid.warping, poisson));
        for (int i = 0; i < 3; ++i) stiffness[i] += solids.back().stiffness[i];
        ix += solids.back().ix;
        iy += solids.back().iy;
        ixy += solids.back().ixy;
    }
    Invert(stiffness, compliance_);
    // A force V parts into the solids' shares S_k C V; the moment of the shares about the centroid
    // places the shear centre (one solid: its own).
    auto moment = [&](double vx, double vy) {
        const double cx = compliance_[0] * vx + compliance_[1] * vy,
                     cy = compliance_[1] * vx + compliance_[2] * vy;
        double m = 0;
        for (const SolidShear& solid : solids) {
            const double* s = solid.stiffness;
            m += solid.centre.x * (s[1] * cx + s[2] * cy) - solid.centre.y * (s[0] * cx + s[1] * cy);
        }
        return m;
    };
    shearCentre_ = Point3{moment(0, 1), -moment(1, 0), 0} + torsion.Centroid();
    const double angle = SettledMajorAndMinor(ix, iy, ixy).Angle, c = std::cos(angle), s = std::sin(angle);
    areas12_[0] = 1 / (c * c * compliance_[0] + 2 * c * s * compliance_[1] + s * s * compliance_[2]);
    areas12_[1] = 1 / (s * s * compliance_[0] - 2 * c * s * compliance_[1] + c * c * compliance_[2]);
}

}  // namespace tgp
