#pragma once

#include <vector>

#include "profiles/LoopDLine.h"

namespace tgp {

// An arc of an ellipse: the points C + cos(t) U + sin(t) V for t from t0 to t1 (either way). U and V
// are conjugate semi-diameters (the semi-axes of a drawn ellipse, or their image under any affine
// map, which keeps an ellipse an ellipse).
struct EllipticArc {
    double cx = 0, cy = 0, ux = 1, uy = 0, vx = 0, vy = 1, t0 = 0, t1 = 0;

    Point3 At(double t) const;
    // The same arc under x' = a x + b y + e, y' = c x + d y + f.
    EllipticArc Mapped(double a, double b, double c, double d, double e, double f) const;
    // The same arc travelled the other way.
    EllipticArc Reversed() const;
};

// The six integrals of the loop-segment kind (∫ y dx, ∫ y²/2 dx, ∫ x y dx, ∫ y³/3 dx, ∫ x² y dx,
// ∫ x y²/2 dx) along the arc with Origin as the origin, and the arc's length. Each integrand is a
// trigonometric polynomial in t; Gauss-Legendre quadrature on steps of at most a sixteenth of a turn
// integrates it to the rounding of the result.
SegmentIntegrals IntegralsAbout(const EllipticArc& arc, const Point3& Origin);
double Length(const EllipticArc& arc);
// The box around the arc: its ends and the points where it turns in x or in y.
SegmentBox BoundingBox(const EllipticArc& arc);

// Circular arcs through points of the ellipse, for what needs a loop of lines and arcs (containment,
// crossings, the cut at the plastic axis): `pieces` arcs from t0 to t1, each through the ellipse's
// points at its ends and its middle. Returns their start points and bulges (x, y, bulge per arc).
std::vector<double> ArcsAlong(const EllipticArc& arc, int pieces);
// How many arcs ArcsAlong takes for an arc of the given turn: 512 for a whole ellipse, which keeps
// the arcs' area within 2E-9 of the ellipse's for axes of 1 to 10.
int ArcPieces(const EllipticArc& arc);

}  // namespace tgp
