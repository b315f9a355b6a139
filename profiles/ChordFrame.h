#pragma once

#include "profiles/PlanePoint.h"

namespace tgp {

// An arc seen from its chord: origin at the chord's midpoint M, u along the chord from A to B, v
// perpendicular to it towards the arc. With the half chord a, the half included angle theta and the
// curvature kappa = 1/R = sin(theta)/a, the arc's circle is the zero set of
//     F(u, v) = kappa (u² − a² + v²) + 2 cos(theta) v,
// and the arc is the part of that circle with v >= 0. Nothing here involves the radius or the
// centre, which run off to infinity as the arc straightens: F tends to 2v, the chord's line, and
// every quantity below stays well conditioned for every bulge. (Scaled by kappa, F / 2 is close to the
// signed distance from the circle near the arc.)
struct ChordFrame {
    Point3 m;       // chord midpoint
    double tx, ty;  // unit chord direction, A to B
    double wx, wy;  // unit normal towards the arc
    double a;       // half chord
    double kappa;   // curvature
    double s, c;    // sin and cos of the half included angle
    double theta;   // half included angle, in (0, pi)

    // The frame of the arc from A to B with the signed included angle Alfa (not 0); A ≠ B.
    static ChordFrame Of(const Point3& A, const Point3& B, double Alfa);

    double U(const Point3& p) const { return (p[0] - m[0]) * tx + (p[1] - m[1]) * ty; }
    double V(const Point3& p) const { return (p[0] - m[0]) * wx + (p[1] - m[1]) * wy; }
    Point3 World(double u, double v) const { return {m[0] + u * tx + v * wx, m[1] + u * ty + v * wy, 0}; }
    // A frame direction (du, dv) as a world direction.
    Point3 WorldDirection(double du, double dv) const { return {du * tx + dv * wx, du * ty + dv * wy, 0}; }

    double F(double u, double v) const { return kappa * ((u - a) * (u + a) + v * v) + 2 * c * v; }

    // The radial projection of (u, v) onto the circle: false at the centre itself. (nu, nv) is the
    // outward unit normal there, gap the signed distance from the circle (outside positive).
    struct Projection {
        double u, v, nu, nv, gap;
    };
    bool Project(double u, double v, Projection& out) const;

    // The point of the arc at angle phi in [-theta, theta] from the v axis, seen from the centre
    // (-theta at A, theta at B), in frame coordinates.
    void PointAt(double phi, double& u, double& v) const;
    // The angle phi of a point of the circle, the inverse of PointAt.
    double AngleOf(double u, double v) const;

    // The point of the circle whose outward normal is the world unit direction e, when it lies on
    // the arc: the arc's extreme point in that direction.
    bool ExtremeTowards(const Point3& e, Point3& point) const;

    // Positions tau along the world line X0 + tau e (e a unit vector) where it meets the circle
    // (0, 1 or 2 of them), and the position where it comes closest to the circle (when the circle
    // is curved). Returns the number of positions written.
    int LinePositions(const Point3& X0, const Point3& e, double tau[3]) const;
};

}  // namespace tgp
