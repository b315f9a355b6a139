#include "geometry/PointTransforms.h"

#include <cmath>
#include <string>

#include "geometry/Space3.h"

namespace tgp {
namespace {

double FiniteNumber(double value) {
    if (!std::isfinite(value)) throw Error::InvalidProcedureCall();
    return value;
}

// Every point of the list through f, with the member's name for the points' errors.
template <class Map>
PointList MapPoints(const PointList& points, const char* member, Map f) {
    PointList mapped;
    mapped.reserve(points.size());
    for (const Point& p : points) mapped.push_back(CheckAllFinite(ToPoint(f(ReadPoint3(p, member)))));
    return mapped;
}

}  // namespace

PointList PointTransforms::Move(const PointList& Points, const Point& Displacement) {
    const Point3 by = ReadPoint3(Displacement, "Move_Points");
    return MapPoints(Points, "Move_Points", [&](const Point3& p) { return p + by; });
}

PointList PointTransforms::Scale(const PointList& Points, const Point& BasePoint, double Factor) {
    const Point3 base = ReadPoint3(BasePoint, "Scale_Points");
    const double k = FiniteNumber(Factor);
    return MapPoints(Points, "Scale_Points", [&](const Point3& p) { return base + (p - base) * k; });
}

PointList PointTransforms::Mirror(const PointList& Points, const Point& A, const Point& b) {
    constexpr const char* member = "Mirror_Points";
    const Point3 a = ReadPoint3(A, member), e = ReadPoint3(b, member);
    const double dx = e.x - a.x, dy = e.y - a.y, squared = dx * dx + dy * dy;
    if (squared == 0) ThrowLibraryError(std::string(member) + " fails: the line's two points coincide");
    return MapPoints(Points, member, [&](const Point3& p) {
        // Reflect across the line: twice the foot minus the point.
        const double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / squared;
        return Point3{2 * (a.x + t * dx) - p.x, 2 * (a.y + t * dy) - p.y, p.z};
    });
}

PointList PointTransforms::Rotate(const PointList& Points, const Point& Center, double Angle) {
    const Point3 c = ReadPoint3(Center, "Rotate_Points");
    const double cosine = std::cos(FiniteNumber(Angle)), sine = std::sin(Angle);
    return MapPoints(Points, "Rotate_Points", [&](const Point3& p) {
        const double x = p.x - c.x, y = p.y - c.y;
        return Point3{c.x + cosine * x - sine * y, c.y + sine * x + cosine * y, p.z};
    });
}

PointList PointTransforms::Transform(const PointList& Points, const Matrix& M) {
    constexpr const char* member = "Transform_Points";
    const int n = M.RowCount();
    if (!M.IsSquareMatrix() || (n != 3 && n != 4))
        ThrowLibraryError(std::string(member) + " fails: the matrix must be 3x3 or 4x4");
    return MapPoints(Points, member, [&](const Point3& p) {
        const double in[4] = {p.x, p.y, p.z, 1};
        double out[4] = {0, 0, 0, 1};
        for (int i = 0; i < n; ++i) {
            out[i] = 0;
            for (int j = 0; j < n; ++j) out[i] += M.Item(i, j) * in[j];
        }
        if (out[3] == 0) ThrowLibraryError(std::string(member) + " fails: a point maps to infinity (w = 0)");
        return Point3{out[0] / out[3], out[1] / out[3], out[2] / out[3]};
    });
}

}  // namespace tgp
