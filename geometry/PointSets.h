#pragma once
// Sets of points: box, centroid, convex hull, nearest point, order along a direction; and linear
// interpolation between two points and in a table. Points have two or three coordinates (a missing
// z is 0) and results have three. A list with no points raises 2411 "<member> fails: the list
// holds no points".
#include <cstddef>
#include <vector>

#include "geometry/Point.h"

namespace tgp {

using PointList = std::vector<Point>;

class PointSets {
  public:
    // The smallest and largest coordinate in each direction.
    static void BoundingBox(const PointList& Points, Point& MinPoint, Point& MaxPoint);
    // The mean of the points.
    static Point Centroid(const PointList& Points);
    // The convex hull in the XY plane, counter-clockwise from the point with the least x (the
    // least y among equals), corners only: points on an edge are left out. One point for points
    // that all coincide, the two ends for points on one line. z is 0.
    static PointList ConvexHull(const PointList& Points);
    // The point nearest to P and its position in the list (the first of equals).
    static Point Nearest(const PointList& Points, const Point& P, std::size_t& Index);
    // The points in the order of their projection on Direction (a stable sort: equals keep their
    // order). A zero direction raises 2411.
    static PointList SortAlong(const PointList& Points, const Point& Direction);

    // A + t (b - A): t = 0 gives A, 1 gives b; other t extend the line.
    static Point InterpolatePoint(const Point& A, const Point& b, double t);
    // The value at X of the polyline through (Xs[i], Ys[i]). Xs must increase strictly and both
    // lists have the same count, at least 2. X outside [Xs.front(), Xs.back()] raises 2411 unless
    // Extrapolate, which extends the first or last piece.
    static double InterpolateTable(double X, const std::vector<double>& Xs, const std::vector<double>& Ys,
                                   bool Extrapolate = false);
};

}  // namespace tgp
