#pragma once

#include <span>
#include <vector>

#include "geometry/Point.h"

namespace tgp {

// Stateless vector functions on point arrays (the global Vector class). Every member is static;
// members call one another, so an error raised by an inner member reaches the caller unchanged.
//
// Element counts: vplusv, vminusv, vxr, vLength, vxxv, UnitVec, VectorAB, ConvertVariantToArray,
// RoundZeroVector, vProjectTo and IsVertical use as many elements as the arrays hold; vAngle,
// vRotate and Fix_NegativeVector read x and y only; vxv, IsParallel and vAngle3D need x, y and z
// (a shorter array raises error 9). A zero divisor raises error 11. Arguments are typed arrays here,
// so the runtime's type mismatch (13) for a non-array argument is raised by the automation layer
// while it converts the argument, before any member runs.
class Vector {
  public:
    // Sum of all items. Each partial sum is as long as the longer operand, but only the indices
    // both operands share are added: the tail beyond the shorter one stays 0 ((1,2,3)+(1,1) is
    // (2,3,0)). No items raises error 9.
    static Point vplusv(std::span<const Point> parArr);
    static Point vplusv(const Point& V1, const Point& V2);
    // V1 - V2, formed as vplusv(V1, vxr(V2, -1)) (same zero tail).
    static Point vminusv(const Point& V1, const Point& V2);
    // Every element times r; a list of points is scaled point by point, at any depth.
    static Point vxr(const Point& v, double r);
    template <class T>
    static std::vector<std::vector<T>> vxr(const std::vector<std::vector<T>>& v, double r) {
        std::vector<std::vector<T>> scaled;
        scaled.reserve(v.size());
        for (const auto& item : v) scaled.push_back(vxr(item, r));
        return scaled;
    }
    // Plane angle of (x, y) in (-pi, pi]; 0 for the zero vector.
    static double vAngle(const Point& v);
    // Turn from v to V1, counter-clockwise positive, in [-pi, pi].
    static double vAngle(const Point& v, const Point& V1);
    // The same two angles on plain coordinates, for callers that keep points in fixed types and
    // must not build a point array per call (the profile code); results are identical to the bit.
    static double PlaneAngle(double x, double y);
    static double PlaneTurn(double vx, double vy, double wx, double wy);
    // Length of A (0 when empty), or the distance from A to b.
    static double vLength(const Point& A);
    static double vLength(const Point& A, const Point& b);
    // (L cos(a + r), L sin(a + r)) with L, a the length and plane angle of (x, y): two elements.
    static Point vRotate(const Point& v, double r);
    // Cross product of two three-element vectors.
    static Point vxv(const Point& V1, const Point& V2);
    // Dot product over the element count of V1.
    static double vxxv(const Point& V1, const Point& V2);
    // The component of Vec along ToVector; error 2411 for a zero ToVector.
    static Point vProjectTo(const Point& Vec, const Point& ToVector);
    // Angle of direction uA from reference direction uX0 about axis Uz, in (-pi/2, 3pi/2]; when Uz
    // is null, the unsigned angle between them in [0, pi]. Directions within 1E-06 (on the cosine)
    // of each other give exactly 0, of opposite ones exactly pi.
    static double vAngle3D(const Point& uA, const Point& uX0, const Point* Uz = nullptr);
    // u scaled to unit length; with PointB, the unit vector from u to PointB. Error 2411
    // "Vector unitvec(u) = u = 0" for a zero vector.
    static Point UnitVec(Point u);
    static Point UnitVec(const Point& u, const Point& PointB);
    // Sets every element within fuzz of 0 to exactly 0. A fuzz of 0 means 1E-06, written back.
    static void RoundZeroVector(Point& v, double& fuzz);
    static void RoundZeroVector(Point& v);
    // Coordinates of Fvector in the basis u, v, w (through the matrix inverse); error 2411
    // "AssocVector fails: The Inverse Matrix method return Null" for any failure.
    static Point AssocVector(Point Fvector, const Point& u, const Point& v, const Point& w);
    // b - A.
    static Point VectorAB(const Point& A, const Point& b);
    // A zero-based copy.
    static Point ConvertVariantToArray(const Point& P);
    // Sine of the angle between the directions below pi/9000 (opposite directions count).
    static bool IsParallel(const Point& V1, const Point& V2);
    // Cosine of the angle between the directions below pi/9000.
    static bool IsVertical(const Point& V1, const Point& V2);
    // Exchanges SP and EP (and returns true) unless the direction SP -> EP, measured from
    // OffsetAngle, lies in the half plane (-pi/2, pi/2] of that direction.
    static bool Fix_NegativeVector(Point& SP, Point& EP, double OffsetAngle = 0);
};

}  // namespace tgp
