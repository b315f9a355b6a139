#include "geometry/Analysis.h"

#include <algorithm>
#include <cmath>

#include "geometry/Geometry.h"
#include "geometry/Space3.h"
#include "geometry/Vector.h"

namespace tgp {
namespace {

// The direction from a to b of a line; a line whose two points coincide has none.
Point3 LineDirection(const Point3& a, const Point3& b, const char* member) {
    const Point3 d = b - a;
    if (d.x == 0 && d.y == 0 && d.z == 0)
        ThrowLibraryError(std::string(member) + " fails: the line's two points coincide");
    return d;
}

// The unit normal of the plane through three points (NormalVector's rule and failure), plane points
// taken with z = 0.
Point3 PlaneNormal(const Point& A, const Point& b, const Point& C, const char* member) {
    const Point n = Geometry::NormalVector(ToPoint(ReadPoint3(A, member)), ToPoint(ReadPoint3(b, member)),
                                           ToPoint(ReadPoint3(C, member)));
    return {n[0], n[1], n[2]};
}

// Angle between two directions taken as lines (no orientation): in [0, pi/2].
double LineAngle(const Point3& u, const Point3& v) {
    return std::atan2(u.Cross(v).Length(), std::fabs(u.Dot(v)));
}

// Sine of the angle between two directions.
double Sine(const Point3& u, const Point3& v) {
    return u.Cross(v).Length() / (u.Length() * v.Length());
}

// Distance of p from the plane through `on` with unit normal n.
double PlaneDistance(const Point3& p, const Point3& on, const Point3& n) {
    return std::fabs((p - on).Dot(n));
}

}  // namespace

TriPointsAnalysis Analysis::TriPoints(const Point& P1, const Point& P2, const Point& P3) {
    constexpr const char* member = "Analyse_TriPoints";
    const Point3 a = ReadPoint3(P1, member), b = ReadPoint3(P2, member), c = ReadPoint3(P3, member);
    const double tolerance = kAnalysisTolerance * Extent({a, b, c});
    const Point3 cross = (b - a).Cross(c - a);
    const double sides[] = {(b - a).Length(), (c - b).Length(), (a - c).Length()};
    int coincident = 0;
    for (double side : sides) coincident += side <= tolerance ? 1 : 0;

    TriPointsAnalysis r{A3P_Triangle, cross.Length() / 2, {0, 0, 0}, ""};
    if (coincident >= 2) {  // two short sides leave the third within twice the tolerance
        r.result = A3P_AllCoincident;
        r.desc = "The three points coincide";
    } else if (coincident > 0) {
        r.result = A3P_TwoCoincident;
        r.desc = "Two of the points coincide";
    } else if (cross.Length() / std::max({sides[0], sides[1], sides[2]}) <= tolerance) {
        r.result = A3P_Collinear;  // the triangle's least height is within the tolerance
        r.desc = "The three points lie on one line";
    } else {
        r.normal = ToPoint(cross * (1 / cross.Length()));
        r.desc = "The three points form a triangle";
        return r;
    }
    r.area = 0;
    return r;
}

PointLineAnalysis Analysis::PointLine(const Point& P, const Point& A, const Point& b) {
    constexpr const char* member = "Analyse_Point_Line";
    const Point3 p = ReadPoint3(P, member), a = ReadPoint3(A, member), e = ReadPoint3(b, member);
    const Point3 d = LineDirection(a, e, member);
    const double t = (p - a).Dot(d) / d.Dot(d);
    const Point3 foot = a + d * t;
    PointLineAnalysis r{};
    r.distance = (p - foot).Length();
    r.foot = ToPoint(foot);
    r.parameter = t;
    r.onLine = r.distance <= kAnalysisTolerance * Extent({p, a, e});
    r.between = t >= -kAnalysisTolerance && t <= 1 + kAnalysisTolerance;
    const std::string where = r.between ? "between the two points" : "outside the two points";
    r.desc = r.onLine ? "The point lies on the line, " + where
                      : "The point lies off the line; its foot lies " + where;
    return r;
}

PointPlaneAnalysis Analysis::PointPlane(const Point& P, const Point& A, const Point& b, const Point& C) {
    // The height and foot are formed with the vector members, so Volume_4Points' distance is the
    // published one: exactly 0 when the point's height over the plane is exactly 0.
    const Point n = Geometry::NormalVector(A, b, C);
    const double height = Vector::vxxv(Vector::VectorAB(P, A), n);
    const Point foot = height == 0 ? P : Vector::vplusv(P, Vector::vxr(n, height));
    PointPlaneAnalysis r{};
    r.distance = height == 0 ? 0 : Vector::vLength(P, foot);
    r.foot = foot;
    // Arrays of any length are measured here, as by the vector members, so the scale is too.
    double scale = 0;
    const Point* points[] = {&P, &A, &b, &C};
    for (int i = 0; i < 4; ++i)
        for (int j = i + 1; j < 4; ++j) scale = std::max(scale, Vector::vLength(*points[i], *points[j]));
    if (height == 0 || r.distance <= kAnalysisTolerance * scale) {
        r.result = APlane_PointOnPlane;
        r.desc = "The point lies on the plane";
    } else if (height < 0) {  // the plane lies behind the point: the point is on the normal's side
        r.result = APlane_PointInFront;
        r.desc = "The point lies in front of the plane";
    } else {
        r.result = APlane_PointBehind;
        r.desc = "The point lies behind the plane";
    }
    return r;
}

LinePlaneAnalysis Analysis::LinePlane(const Point& A, const Point& b, const Point& P1, const Point& P2,
                                      const Point& P3) {
    constexpr const char* member = "Analyse_Line_Plane";
    const Point3 a = ReadPoint3(A, member), e = ReadPoint3(b, member), q = ReadPoint3(P1, member);
    const Point3 d = LineDirection(a, e, member);
    const Point3 n = PlaneNormal(P1, P2, P3, member);
    const double scale = Extent({a, e, q, ReadPoint3(P2, member), ReadPoint3(P3, member)});
    LinePlaneAnalysis r{};
    r.angle = std::atan2(std::fabs(d.Dot(n)), d.Cross(n).Length());
    if (std::fabs(d.Dot(n)) / d.Length() <= kAnalysisTolerance) {
        const bool inPlane = PlaneDistance(a, q, n) <= kAnalysisTolerance * scale;
        r.result = inPlane ? APlane_LineInPlane : APlane_LineParallel;
        r.desc = inPlane ? "The line lies in the plane" : "The line is parallel to the plane";
        return r;
    }
    r.parameter = (q - a).Dot(n) / d.Dot(n);
    r.crossPoint = ToPoint(a + d * r.parameter);
    r.result = APlane_LineCrossing;
    r.desc = "The line crosses the plane";
    return r;
}

LineLineAnalysis Analysis::LineLine(const Point& A, const Point& b, const Point& C, const Point& D) {
    constexpr const char* member = "Analyse_Line_Line";
    const Point3 a = ReadPoint3(A, member), e = ReadPoint3(b, member), c = ReadPoint3(C, member),
                 f = ReadPoint3(D, member);
    const Point3 d1 = LineDirection(a, e, member), d2 = LineDirection(c, f, member);
    const double tolerance = kAnalysisTolerance * Extent({a, e, c, f});
    LineLineAnalysis r{};
    r.angle = LineAngle(d1, d2);
    if (Sine(d1, d2) <= kAnalysisTolerance) {
        // Parallel: a's foot on the second line gives the pair of closest points.
        const Point3 foot = c + d2 * ((a - c).Dot(d2) / d2.Dot(d2));
        r.onFirst = ToPoint(a);
        r.onSecond = ToPoint(foot);
        r.distance = (a - foot).Length();
        const bool same = r.distance <= tolerance;
        r.result = same ? A2L_SameLine : A2L_Parallel;
        r.desc = same ? "The two lines are the same line" : "The two lines are parallel";
        return r;
    }
    // The closest points a + s d1 and c + t d2: their joining vector is normal to both lines.
    const Point3 w = a - c;
    const double aa = d1.Dot(d1), ab = d1.Dot(d2), bb = d2.Dot(d2), aw = d1.Dot(w), bw = d2.Dot(w);
    const double denominator = aa * bb - ab * ab;
    const double s = (ab * bw - bb * aw) / denominator;
    const double t = (aa * bw - ab * aw) / denominator;
    const Point3 p1 = a + d1 * s, p2 = c + d2 * t;
    r.onFirst = ToPoint(p1);
    r.onSecond = ToPoint(p2);
    r.distance = (p1 - p2).Length();
    if (r.distance <= tolerance) {
        r.result = A2L_Intersecting;
        r.intersection = ToPoint((p1 + p2) * 0.5);
        r.desc = "The two lines intersect";
    } else {
        r.result = A2L_Skew;
        r.desc = "The two lines are skew";
    }
    return r;
}

PlanePlaneAnalysis Analysis::PlanePlane(const Point& A1, const Point& b1, const Point& C1, const Point& A2,
                                        const Point& b2, const Point& C2) {
    constexpr const char* member = "Analyse_Plane_Plane";
    const Point3 a1 = ReadPoint3(A1, member), a2 = ReadPoint3(A2, member);
    const double scale = Extent({a1, ReadPoint3(b1, member), ReadPoint3(C1, member), a2,
                                 ReadPoint3(b2, member), ReadPoint3(C2, member)});
    const Point3 n1 = PlaneNormal(A1, b1, C1, member), n2 = PlaneNormal(A2, b2, C2, member);
    PlanePlaneAnalysis r{};
    r.angle = LineAngle(n1, n2);
    const Point3 along = n1.Cross(n2);
    if (along.Length() <= kAnalysisTolerance) {
        r.distance = PlaneDistance(a2, a1, n1);
        const bool same = r.distance <= kAnalysisTolerance * scale;
        r.result = same ? APlane_PlanesSame : APlane_PlanesParallel;
        r.desc = same ? "The two planes are the same plane" : "The two planes are parallel";
        return r;
    }
    // The point p with n1.p = n1.a1, n2.p = n2.a2 and u.p = u.a1, by Cramer's rule in vector form.
    const Point3 u = along * (1 / along.Length());
    const double h1 = n1.Dot(a1), h2 = n2.Dot(a2), h3 = u.Dot(a1);
    const Point3 p = (n2.Cross(u) * h1 + u.Cross(n1) * h2 + n1.Cross(n2) * h3) * (1 / n1.Dot(n2.Cross(u)));
    r.linePoint = ToPoint(p);
    r.lineDirection = ToPoint(u);
    r.result = APlane_PlanesCrossing;
    r.desc = "The two planes cross in a line";
    return r;
}

}  // namespace tgp
