#pragma once
// Moving, scaling, mirroring, turning and transforming points. Each member takes a list of points
// (two or three coordinates each, a missing z is 0) and returns the list moved, with three
// coordinates per point; the automation layer also passes a single point as a list of one.
#include "geometry/Matrix.h"
#include "geometry/PointSets.h"

namespace tgp {

class PointTransforms {
  public:
    static PointList Move(const PointList& Points, const Point& Displacement);
    // About BasePoint by Factor (any finite factor; 0 gathers every point at the base, a negative
    // one also turns them half round).
    static PointList Scale(const PointList& Points, const Point& BasePoint, double Factor);
    // Mirrored about the line through A and b in the XY plane; z is kept. A and b must differ.
    static PointList Mirror(const PointList& Points, const Point& A, const Point& b);
    // Turned in the XY plane about Center by Angle radians, counter-clockwise; z is kept.
    static PointList Rotate(const PointList& Points, const Point& Center, double Angle);
    // By a 3x3 matrix, the linear map p' = M p of (x, y, z); or by a 4x4 matrix acting on
    // (x, y, z, 1) with the result divided by its fourth element (which must not be 0). Other
    // sizes raise 2411 "Transform_Points fails: the matrix must be 3x3 or 4x4".
    static PointList Transform(const PointList& Points, const Matrix& M);
};

}  // namespace tgp
