#pragma once
// How points, lines and planes in space lie to each other: the Analyse_* members of Geometry.
//
// Points have two or three coordinates (a missing z is 0). Lines are given by two points and are
// unbounded; planes by three points. Each analysis classifies with two tolerances, both relative:
//   - lengths:    kAnalysisTolerance x the largest distance between two of the points given, so
//                 a result does not change when a drawing is scaled or moved;
//   - directions: two directions are parallel when the sine of their angle is within
//                 kAnalysisTolerance.
// The measured values (distances, feet, angles) are always the computed ones, never rounded to the
// classification: a point 1E-12 from a plane of size 1 is "on" it and still has its distance.
// A line whose two points coincide exactly raises 2411 "<member> fails: the line's two points
// coincide"; three collinear plane points raise UnitVec's 2411, as NormalVector does.
#include <string>

#include "geometry/Point.h"

namespace tgp {

constexpr double kAnalysisTolerance = 1E-09;

// Three points.
enum A3P_Result : int {
    A3P_Triangle = 0,       // a proper triangle
    A3P_Collinear = 1,      // three distinct points on one line
    A3P_TwoCoincident = 2,  // two of the points coincide
    A3P_AllCoincident = 3,  // all three coincide
};

// Two lines in space.
enum A2L_Result : int {
    A2L_Intersecting = 0,  // they meet in one point
    A2L_Parallel = 1,      // parallel and apart
    A2L_SameLine = 2,      // parallel and on each other
    A2L_Skew = 3,          // neither parallel nor meeting
};

// A point, a line or a plane against a plane.
enum APlane_Result : int {
    APlane_PointOnPlane = 0,    // the point lies in the plane
    APlane_PointInFront = 1,    // on the side the plane's normal points to (right hand over its points)
    APlane_PointBehind = 2,     // on the other side
    APlane_LineCrossing = 3,    // the line crosses the plane in one point
    APlane_LineParallel = 4,    // parallel to the plane and off it
    APlane_LineInPlane = 5,     // the line lies in the plane
    APlane_PlanesCrossing = 6,  // the planes meet in a line
    APlane_PlanesParallel = 7,  // parallel and apart
    APlane_PlanesSame = 8,      // the same plane
};

struct TriPointsAnalysis {
    A3P_Result result;
    double area;   // of the triangle, 0 for collinear or coincident points
    Point normal;  // unit normal, right hand over P1 -> P2 -> P3; (0, 0, 0) unless a triangle
    std::string desc;
};

struct PointLineAnalysis {
    bool onLine;       // the point lies on the line
    double distance;   // from the point to the line
    Point foot;        // the foot of the perpendicular on the line
    double parameter;  // of the foot along the line: 0 at A, 1 at b
    bool between;      // the foot lies between A and b (the parameter in [0, 1] within the tolerance)
    std::string desc;
};

struct PointPlaneAnalysis {
    APlane_Result result;
    double distance;  // never negative; exactly 0 only when the point's height over the plane is 0
    Point foot;       // the foot of the perpendicular in the plane
    std::string desc;
};

struct LinePlaneAnalysis {
    APlane_Result result;
    Point crossPoint;  // where the line crosses the plane; empty when it does not cross
    double parameter;  // of the crossing along the line (0 at A, 1 at b); 0 when it does not cross
    double angle;      // between the line and the plane, radians in [0, pi/2]
    std::string desc;
};

struct LineLineAnalysis {
    A2L_Result result;
    Point onFirst;       // the point of the first line closest to the second
    Point onSecond;      // the point of the second line closest to the first
    double distance;     // between those two points (between the lines)
    Point intersection;  // where they meet (midway between the closest points); empty otherwise
    double angle;        // between the lines, radians in [0, pi/2]
    std::string desc;
};

struct PlanePlaneAnalysis {
    APlane_Result result;
    Point linePoint;      // the point of the common line closest to the first plane's first point
    Point lineDirection;  // the common line's unit direction, n1 x n2; both empty unless crossing
    double angle;         // between the planes, radians in [0, pi/2]
    double distance;      // between parallel planes; 0 when they cross
    std::string desc;
};

class Analysis {
  public:
    static TriPointsAnalysis TriPoints(const Point& P1, const Point& P2, const Point& P3);
    static PointLineAnalysis PointLine(const Point& P, const Point& A, const Point& b);
    static PointPlaneAnalysis PointPlane(const Point& P, const Point& A, const Point& b, const Point& C);
    static LinePlaneAnalysis LinePlane(const Point& A, const Point& b, const Point& P1, const Point& P2,
                                       const Point& P3);
    static LineLineAnalysis LineLine(const Point& A, const Point& b, const Point& C, const Point& D);
    static PlanePlaneAnalysis PlanePlane(const Point& A1, const Point& b1, const Point& C1, const Point& A2,
                                         const Point& b2, const Point& C2);
};

}  // namespace tgp
