#pragma once

#include <array>
#include <cmath>

#include "geometry/Point.h"
#include "geometry/Vector.h"

namespace tgp {

// A point of a profile: x, y and a z that the profile code carries but never reads. Segments keep
// their points in this fixed type so that loops of millions of vertices allocate nothing per point;
// the published members convert to and from Point at the class boundary.
using PlanePoint = std::array<double, 3>;

// Reads x, y (and z when present) of a point array; fewer than two elements raise error 9.
PlanePoint ToPlanePoint(const Point& p);
Point ToPoint(const PlanePoint& p);

inline PlanePoint Plus(const PlanePoint& a, const PlanePoint& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline PlanePoint Minus(const PlanePoint& a, const PlanePoint& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline PlanePoint Scaled(const PlanePoint& a, double r) {
    return {a[0] * r, a[1] * r, a[2] * r};
}
inline double Dot2(const PlanePoint& a, const PlanePoint& b) {
    return a[0] * b[0] + a[1] * b[1];
}
inline double Cross2(const PlanePoint& a, const PlanePoint& b) {
    return a[0] * b[1] - a[1] * b[0];
}
inline double Length2(const PlanePoint& a) {
    return std::sqrt(a[0] * a[0] + a[1] * a[1]);
}
inline double Distance2(const PlanePoint& a, const PlanePoint& b) {
    return Length2(Minus(b, a));
}

// The plane angle of (x, y) in (-pi, pi], exactly as Vector::vAngle computes it.
inline double PolarAngle(double x, double y) {
    return Vector::PlaneAngle(x, y);
}
inline double PolarAngle(const PlanePoint& v) {
    return Vector::PlaneAngle(v[0], v[1]);
}

// The turn from direction v to direction w, counter-clockwise positive, in [-pi, pi]
// (Vector::vAngle(v, w) without the point arrays).
inline double TurnAngle(const PlanePoint& v, const PlanePoint& w) {
    return Vector::PlaneTurn(v[0], v[1], w[0], w[1]);
}

// x and y equal under the library's equality routine with its default tolerance.
bool SamePlanePoint(const PlanePoint& a, const PlanePoint& b);

}  // namespace tgp
