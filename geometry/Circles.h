#pragma once
// Circles in the XY plane: where a line or another circle meets one, and the circle through three
// points. Points have two or three coordinates; z is ignored by the intersections and the points
// they return carry the (first) centre's z. Tangency is decided within kAnalysisTolerance x the
// larger radius: a line that passes that close to touching gives its one touching point.
#include "geometry/Point.h"

namespace tgp {

struct CircleIntersection {
    int count = 0;  // 0, 1 or 2 points; -1 when two circles coincide (every point is common)
    Point p1, p2;   // the points found (empty when fewer); for a line in its direction from A to b,
                    // for two circles p1 on the left of the way from the first centre to the second
};

class Circles {
  public:
    // A radius that is not positive raises 2411 "<member> fails: the radius must be positive"; a
    // line whose two points coincide raises 2411 "... the line's two points coincide".
    static CircleIntersection LineCircle(const Point& A, const Point& b, const Point& Center, double Radius);
    static CircleIntersection CircleCircle(const Point& Center1, double Radius1, const Point& Center2,
                                           double Radius2);
    // The circle through three points in space (its centre lies in their plane). False, with Center
    // emptied and Radius 0, when the points form no triangle (Analysis::TriPoints decides).
    static bool Through3Points(const Point& P1, const Point& P2, const Point& P3, Point& Center,
                               double& Radius);
};

}  // namespace tgp
