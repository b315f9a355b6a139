#pragma once

#include <cmath>

#include "geometry/Point.h"
#include "geometry/Vector.h"

namespace tgp {

// The plane arithmetic of profiles on fixed points (x and y; z is carried along). Segments keep their
// points fixed so that loops of millions of vertices allocate nothing per point.

// Reads x, y (and z when present) of a point array; fewer than two elements raise error 9.
Point3 ToPlanePoint(const Point& p);

inline Point3 Plus(const Point3& a, const Point3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline Point3 Minus(const Point3& a, const Point3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Point3 Scaled(const Point3& a, double r) {
    return {a[0] * r, a[1] * r, a[2] * r};
}
inline double Dot2(const Point3& a, const Point3& b) {
    return a[0] * b[0] + a[1] * b[1];
}
inline double Cross2(const Point3& a, const Point3& b) {
    return a[0] * b[1] - a[1] * b[0];
}
inline double Length2(const Point3& a) {
    return std::sqrt(a[0] * a[0] + a[1] * a[1]);
}
inline double Distance2(const Point3& a, const Point3& b) {
    return Length2(Minus(b, a));
}

// The plane angle of (x, y) in (-pi, pi], exactly as Vector::vAngle computes it.
inline double PolarAngle(double x, double y) {
    return Vector::PlaneAngle(x, y);
}
inline double PolarAngle(const Point3& v) {
    return Vector::PlaneAngle(v[0], v[1]);
}

// The turn from direction v to direction w, counter-clockwise positive, in [-pi, pi]
// (Vector::vAngle(v, w) without the point arrays).
inline double TurnAngle(const Point3& v, const Point3& w) {
    return Vector::PlaneTurn(v[0], v[1], w[0], w[1]);
}

// x and y equal under the library's equality routine with its default tolerance.
bool SamePlanePoint(const Point3& a, const Point3& b);

}  // namespace tgp
