#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "core/Point3.h"
#include "profiles/Loop7.h"

namespace tgp {

// A piece of a section's boundary, straight or a circular arc, travelled with the material on its
// left: P(t) = C + e^(i turn t) (A - C) for t in [t0, t1] of its segment's [0, 1] (a straight one:
// A + t (B - A)).
struct BoundaryPanel {
    Point3 a, b, center;  // the segment's ends and, for an arc, its centre
    double turn = 0;      // the segment's included angle, counter-clockwise positive; 0 straight
    double t0 = 0, t1 = 1;
    Point3 middle;  // of the panel, and its length: what tells near targets from far ones
    double length = 0;

    Point3 At(double t) const;
    // dP/dt of the segment's parameter (not the panel's).
    Point3 Derivative(double t) const;
    double Length() const;
    // Whether both are pieces of the same segment.
    bool OnSegmentOf(const BoundaryPanel& other) const;
    // Closer than 1.5 times the panel's length: integrated adaptively, not by the panel's nodes (at
    // that distance 12 Gauss nodes integrate the kernels to about 1E-18, the Bernstein ellipse of
    // the target having ρ = 3 + √8).
    bool Near(const Point3& target) const;
};

// Quadrature nodes on a section's boundary: Gauss-Legendre nodes of each panel with their outward
// unit normals and arc-length weights. Panels are at most `base` long and halve in length towards
// every re-entrant corner down to 2^-depth of their segment, so that the corner singularities of
// harmonic functions are resolved, and towards convex corners half as deep.
struct BoundaryNode {
    Point3 p, normal;  // position, outward unit normal
    double weight = 0;
    std::size_t panel = 0;
};

class BoundaryPanels {
  public:
    static constexpr int kOrder = 12;  // Gauss-Legendre nodes per panel

    // The loops of one solid with the material on the left of each (an outer boundary
    // counter-clockwise, its holes clockwise) are given as segments; `shift` is subtracted from every
    // point (the centroid, so that moments are about it).
    BoundaryPanels(const std::vector<std::vector<LoopDLine>>& loops, const Point3& shift, double base,
                   int depth);

    const std::vector<BoundaryPanel>& Panels() const { return panels_; }
    const std::vector<BoundaryNode>& Nodes() const { return nodes_; }
    // Weights of a node's own panel for the logarithm: ∫ f ln|P(node) - P| ds over that panel is
    // Σ_m weights[m] f(node m) to the interpolant's accuracy. With the panel's parameter u and
    // |P(u_i) - P(u)| = |u_i - u| R(u), R smooth (|dP/du| where u = u_i, the same all along a line or
    // an arc), ln|u_i - u| takes LogarithmWeights and ln R the Gauss weights.
    std::array<double, kOrder> OwnLogarithmWeights(std::size_t node) const;
    // Values at the nodes of a coarser boundary of the same loops (whose panels each hold some of
    // these), interpolated onto these nodes by the coarser panels' interpolants.
    std::vector<double> Interpolated(const BoundaryPanels& coarser, const std::vector<double>& values) const;
    // The Gauss-Legendre rule on [-1, 1] the panels use.
    static const std::vector<double>& GaussPoints();
    static const std::vector<double>& GaussWeights();

  private:
    void AddSegment(const BoundaryPanel& whole, int depthAtStart, int depthAtEnd, double base);
    void AddPanel(const BoundaryPanel& whole, double t0, double t1);

    std::vector<BoundaryPanel> panels_;
    std::vector<BoundaryNode> nodes_;
};

// The Gauss-Legendre rule of n points on [-1, 1] (Newton's method on the Legendre polynomial).
void GaussLegendre(int n, std::vector<double>& points, std::vector<double>& weights);

// The Lagrange basis of a panel's Gauss nodes at u of [-1, 1] (barycentric form): a function known at
// the nodes is sum basis[m] f[m] there.
void PanelBasisAt(double u, std::vector<double>& basis);

// Product integration of the logarithm on a panel's own nodes: W[i][m] = ∫ ln|x_i - u| L_m(u) du over
// [-1, 1], x_i the Gauss points and L_m their Lagrange basis, so that ∫ ln|x_i - u| f(u) du =
// Σ_m W[i][m] f(x_m) for f of degree 11 and to the interpolant's accuracy for smooth f. Row i is
// &weights[i * kOrder].
const std::vector<double>& LogarithmWeights();

// Indefinite integration on a panel's own nodes: W[m][k] = ∫ L_k(u) du over [-1, x_m], so that
// ∫ f du from -1 to node m is Σ_k W[m][k] f(x_k), exactly for f of degree 11. Row m is
// &weights[m * kOrder].
const std::vector<double>& IndefiniteWeights();

// ∫ f(y, normal, u, ds) over the part [ua, ub] of a panel's [-1, 1], cut in halves while a piece is
// closer to the target than 1.5 times its length (down to pieces of 2^-40 of the panel): what the nodes
// cannot integrate near a target.
template <class F>
void IntegrateNear(const BoundaryPanel& panel, const Point3& target, const F& f, double ua = -1,
                   double ub = 1, int depth = 0) {
    const double length = panel.length * (ub - ua) / 2;
    auto t = [&](double u) { return panel.t0 + (panel.t1 - panel.t0) * (u + 1) / 2; };
    const Point3 middle = panel.At(t((ua + ub) / 2));
    const double mx = middle.x - target.x, my = middle.y - target.y;
    if (mx * mx + my * my < 2.25 * length * length) {
        // A piece of 1E-12 of the panel, or one whose parameters rounding no longer tells apart: its
        // share is below rounding.
        if (depth >= 40 || (ub - ua) * (panel.t1 - panel.t0) < 1e-13) return;
        IntegrateNear(panel, target, f, ua, (ua + ub) / 2, depth + 1);
        IntegrateNear(panel, target, f, (ua + ub) / 2, ub, depth + 1);
        return;
    }
    const auto& points = BoundaryPanels::GaussPoints();
    const auto& weights = BoundaryPanels::GaussWeights();
    for (std::size_t k = 0; k < points.size(); ++k) {
        const double u = ua + (ub - ua) * (points[k] + 1) / 2;
        const Point3 d = panel.Derivative(t(u));
        const double speed = std::sqrt(d.x * d.x + d.y * d.y);
        const double ds = weights[k] * (ub - ua) / 2 * speed * (panel.t1 - panel.t0) / 2;
        f(panel.At(t(u)), Point3{d.y / speed, -d.x / speed, 0}, u, ds);
    }
}

}  // namespace tgp
