#include "geometry/PointSets.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "geometry/Space3.h"

namespace tgp {
namespace {

std::vector<Point3> ReadAll(const PointList& points, const char* member) {
    if (points.empty()) ThrowLibraryError(std::string(member) + " fails: the list holds no points");
    std::vector<Point3> read;
    read.reserve(points.size());
    for (const Point& p : points) read.push_back(ReadPoint3(p, member));
    return read;
}

// Twice the signed area of o, a, b: positive when they turn counter-clockwise.
double Turn(const Point3& o, const Point3& a, const Point3& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

}  // namespace

void PointSets::BoundingBox(const PointList& Points, Point& MinPoint, Point& MaxPoint) {
    const std::vector<Point3> points = ReadAll(Points, "Points_BoundingBox");
    Point3 lo = points.front(), hi = lo;
    for (const Point3& p : points) {
        lo = {std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z)};
        hi = {std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z)};
    }
    MinPoint = ToPoint(lo);
    MaxPoint = ToPoint(hi);
}

Point PointSets::Centroid(const PointList& Points) {
    const std::vector<Point3> points = ReadAll(Points, "Points_Centroid");
    const Point3 sum = std::accumulate(points.begin(), points.end(), Point3{});
    return CheckAllFinite(ToPoint(sum * (1.0 / static_cast<double>(points.size()))));
}

PointList PointSets::ConvexHull(const PointList& Points) {
    std::vector<Point3> points = ReadAll(Points, "Points_ConvexHull");
    for (Point3& p : points) p.z = 0;
    std::sort(points.begin(), points.end(),
              [](const Point3& a, const Point3& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    points.erase(std::unique(points.begin(), points.end(),
                             [](const Point3& a, const Point3& b) { return a.x == b.x && a.y == b.y; }),
                 points.end());
    if (points.size() < 3) {
        PointList ends;
        for (const Point3& p : points) ends.push_back(ToPoint(p));
        return ends;
    }
    // Andrew's monotone chain: the lower hull left to right, then the upper hull back.
    std::vector<Point3> hull(2 * points.size());
    std::size_t k = 0;
    for (const Point3& p : points) {
        while (k >= 2 && Turn(hull[k - 2], hull[k - 1], p) <= 0) --k;
        hull[k++] = p;
    }
    for (std::size_t i = points.size() - 1, lower = k + 1; i-- > 0;) {
        while (k >= lower && Turn(hull[k - 2], hull[k - 1], points[i]) <= 0) --k;
        hull[k++] = points[i];
    }
    hull.resize(k - 1);  // the last point is the first again
    PointList corners;
    for (const Point3& p : hull) corners.push_back(ToPoint(p));
    return corners;
}

Point PointSets::Nearest(const PointList& Points, const Point& P, std::size_t& Index) {
    constexpr const char* member = "Points_Nearest";
    const std::vector<Point3> points = ReadAll(Points, member);
    const Point3 target = ReadPoint3(P, member);
    Index = 0;
    double best = (points[0] - target).Length();
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double distance = (points[i] - target).Length();
        if (distance < best) {
            best = distance;
            Index = i;
        }
    }
    return ToPoint(points[Index]);
}

PointList PointSets::SortAlong(const PointList& Points, const Point& Direction) {
    constexpr const char* member = "Points_SortAlong";
    const std::vector<Point3> points = ReadAll(Points, member);
    const Point3 direction = ReadPoint3(Direction, member);
    if (direction.Length() == 0)
        ThrowLibraryError(std::string(member) + " fails: the direction is a zero vector");
    std::vector<std::size_t> order(points.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return points[a].Dot(direction) < points[b].Dot(direction);
    });
    PointList sorted;
    sorted.reserve(order.size());
    for (std::size_t i : order) sorted.push_back(ToPoint(points[i]));
    return sorted;
}

Point PointSets::InterpolatePoint(const Point& A, const Point& b, double t) {
    constexpr const char* member = "Interpolate_Point";
    if (!std::isfinite(t)) throw Error::InvalidProcedureCall();
    const Point3 a = ReadPoint3(A, member), e = ReadPoint3(b, member);
    return CheckAllFinite(ToPoint(a + (e - a) * t));
}

double PointSets::InterpolateTable(double X, const std::vector<double>& Xs, const std::vector<double>& Ys,
                                   bool Extrapolate) {
    const std::string fails = "Interpolate_Table fails: ";
    if (!std::isfinite(X)) throw Error::InvalidProcedureCall();
    if (Xs.size() != Ys.size()) ThrowLibraryError(fails + "the two lists differ in length");
    if (Xs.size() < 2) ThrowLibraryError(fails + "the table needs at least two rows");
    for (std::size_t i = 0; i < Xs.size(); ++i) {
        if (!std::isfinite(Xs[i]) || !std::isfinite(Ys[i])) throw Error::InvalidProcedureCall();
        if (i > 0 && !(Xs[i] > Xs[i - 1])) ThrowLibraryError(fails + "the abscissae do not increase");
    }
    if (!Extrapolate && (X < Xs.front() || X > Xs.back()))
        ThrowLibraryError(fails + "X lies outside the table");
    // The piece [Xs[i], Xs[i + 1]] that holds X (the first or last piece beyond the ends).
    const auto upper = std::upper_bound(Xs.begin() + 1, Xs.end() - 1, X);
    const std::size_t i = static_cast<std::size_t>(upper - Xs.begin()) - 1;
    if (X == Xs[i]) return Ys[i];
    if (X == Xs[i + 1]) return Ys[i + 1];
    const double t = (X - Xs[i]) / (Xs[i + 1] - Xs[i]);
    return CheckFinite(Ys[i] + t * (Ys[i + 1] - Ys[i]));
}

}  // namespace tgp
