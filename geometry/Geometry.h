#pragma once

#include <string>

#include "geometry/Analysis.h"
#include "geometry/Point.h"

namespace tgp {

// The global Geometry class: angle functions, triangle and tetrahedron measurement and point
// rotation. All members are static. Angles are radians, and pi is the shortened literal
// 3.14159265358979 everywhere, as results are reproduced with it.
class Geometry {
  public:
    static double pi();
    // (Angle / 180) * pi and (Angle / pi) * 180, in that order of operations.
    static double DegToRad(double Angle);
    static double DegFromRad(double Angle);

    // Normalisers; each changes Angle in place. The flags, when given, are first set to false and
    // tell how an object drawn at the angle must be turned (Rotate180) or mirrored (XMirror) to
    // stay readable.
    //   FixAngle360    -> [0, 2 pi]   (exactly 2 pi stays 2 pi)
    //   FixAngle180    -> [0, pi]     (Rotate180 when pi was taken off)
    //   FixAngle90     -> (-pi/2, pi/2]
    //   FixAngle180180 -> (-pi, pi]
    //   FixAngle9090   -> (-pi/2, pi/2] (XMirror always false)
    // FixAngle360 gives the result of the published loops (subtract the full turn while above it, add
    // it while below 0) bit for bit for every finite angle, in time that does not grow with it. Where
    // those loops would never end (beyond about 7E+16, where a subtraction no longer changes the
    // angle) it takes one remainder instead; infinities become NaN, NaN stays NaN.
    static void FixAngle360(double& Angle);
    static void FixAngle180(double& Angle, bool* Rotate180 = nullptr, bool* XMirror = nullptr);
    static void FixAngle90(double& Angle, bool* Rotate180 = nullptr, bool* XMirror = nullptr);
    static void FixAngle180180(double& Angle);
    static void FixAngle9090(double& Angle, bool* Rotate180 = nullptr, bool* XMirror = nullptr);

    // Arcsine and arccosine that first snap x to exactly 1, 0 or -1 when it is within 1E-06 of
    // one of them (the caller's variable changes). |x| > 1 after that raises error 713.
    static double ASin(double& x);
    static double ACos(double& x);

    // Heron's formula with the three side factors rounded to 8 decimals (half to even), so a flat
    // triangle gives 0. Lengths that form no triangle raise error 2411.
    static double Area_3Distances(double A, double b, double C);
    static double Area_3Points(const Point& P1, const Point& P2, const Point& P3);
    // Unit normal of the plane through A, b, C (right-hand rule over A -> b -> C); collinear
    // points raise UnitVec's error 2411.
    static Point NormalVector(const Point& A, const Point& b, const Point& C);
    // Volume of the tetrahedron on four points: the face b, C, D times the height of A over it / 3.
    static double Volume_4Points(const Point& A, const Point& b, const Point& C, const Point& D);
    // Perpendicular distance of P from the plane through A, b, C (never negative), optionally the
    // foot of the perpendicular and a description; where P lies (Analysis::PointPlane has the
    // tolerance). Collinear A, b, C raise error 2411.
    static APlane_Result Analyse_Point_Plane(const Point& P, const Point& A, const Point& b, const Point& C,
                                             double& Distance, Point* FootPoint = nullptr,
                                             std::string* Desc = nullptr);

    // Turns point about the axis through Org along Uz by Rotation radians (counter-clockwise seen
    // from the tip of Uz) into ReturnPoint. Failures while setting up the axis system (a zero Uz,
    // short arrays) raise error 713 "Method RotatePoint of Geometry module fails".
    static void RotatePoint(const Point& point, const Point& Org, const Point& Uz, double Rotation,
                            Point& ReturnPoint);
};

}  // namespace tgp
