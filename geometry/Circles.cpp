#include "geometry/Circles.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "geometry/Analysis.h"
#include "geometry/Space3.h"

namespace tgp {
namespace {

double CheckRadius(double radius, const char* member) {
    if (!std::isfinite(radius)) throw Error::InvalidProcedureCall();
    if (radius <= 0) ThrowLibraryError(std::string(member) + " fails: the radius must be positive");
    return radius;
}

Point OnPlane(double x, double y, double z) {
    return {x, y, z};
}

// sqrt(r^2 - h^2) formed as a product, which keeps its digits when h is close to r.
double HalfChord(double r, double h) {
    return std::sqrt(std::max(0.0, (r - h) * (r + h)));
}

}  // namespace

CircleIntersection Circles::LineCircle(const Point& A, const Point& b, const Point& Center, double Radius) {
    constexpr const char* member = "Intersect_Line_Circle";
    const Point3 a = ReadPoint3(A, member), e = ReadPoint3(b, member), c = ReadPoint3(Center, member);
    const double r = CheckRadius(Radius, member);
    const double dx = e.x - a.x, dy = e.y - a.y;
    const double squared = dx * dx + dy * dy;
    if (squared == 0) ThrowLibraryError(std::string(member) + " fails: the line's two points coincide");
    const double t0 = ((c.x - a.x) * dx + (c.y - a.y) * dy) / squared;
    const double fx = a.x + t0 * dx, fy = a.y + t0 * dy;  // the foot of the centre on the line
    const double h = std::hypot(c.x - fx, c.y - fy);
    CircleIntersection result;
    if (h > r * (1 + kAnalysisTolerance)) return result;
    if (h >= r * (1 - kAnalysisTolerance)) {
        result.count = 1;
        result.p1 = OnPlane(fx, fy, c.z);
        return result;
    }
    const double half = HalfChord(r, h) / std::sqrt(squared);
    result.count = 2;
    result.p1 = OnPlane(fx - half * dx, fy - half * dy, c.z);
    result.p2 = OnPlane(fx + half * dx, fy + half * dy, c.z);
    return result;
}

CircleIntersection Circles::CircleCircle(const Point& Center1, double Radius1, const Point& Center2,
                                         double Radius2) {
    constexpr const char* member = "Intersect_Circle_Circle";
    const Point3 c1 = ReadPoint3(Center1, member), c2 = ReadPoint3(Center2, member);
    const double r1 = CheckRadius(Radius1, member), r2 = CheckRadius(Radius2, member);
    const double tolerance = kAnalysisTolerance * std::max(r1, r2);
    const double dx = c2.x - c1.x, dy = c2.y - c1.y;
    const double d = std::hypot(dx, dy);
    CircleIntersection result;
    if (d <= tolerance) {  // concentric: the same circle or none in common
        if (std::fabs(r1 - r2) <= tolerance) result.count = -1;
        return result;
    }
    const double ux = dx / d, uy = dy / d;
    const double outer = r1 + r2, inner = std::fabs(r1 - r2);
    if (d > outer + tolerance || d < inner - tolerance) return result;
    if (std::fabs(d - outer) <= tolerance || std::fabs(d - inner) <= tolerance) {
        // Touching: outside each other, or the smaller inside the larger (on the far side if it is
        // the first circle that is smaller).
        const double along = (std::fabs(d - outer) <= tolerance || r1 > r2) ? r1 : -r1;
        result.count = 1;
        result.p1 = OnPlane(c1.x + along * ux, c1.y + along * uy, c1.z);
        return result;
    }
    const double a = (d * d + r1 * r1 - r2 * r2) / (2 * d);  // from the first centre to the chord
    const double h = HalfChord(r1, std::fabs(a));
    const double bx = c1.x + a * ux, by = c1.y + a * uy;
    result.count = 2;
    result.p1 = OnPlane(bx - h * uy, by + h * ux, c1.z);
    result.p2 = OnPlane(bx + h * uy, by - h * ux, c1.z);
    return result;
}

bool Circles::Through3Points(const Point& P1, const Point& P2, const Point& P3, Point& Center,
                             double& Radius) {
    Center.clear();
    Radius = 0;
    if (Analysis::TriPoints(P1, P2, P3).result != A3P_Triangle) return false;
    constexpr const char* member = "Circle_3Points";
    const Point3 p = ReadPoint3(P1, member), q = ReadPoint3(P2, member), s = ReadPoint3(P3, member);
    // With a = p - s and b = q - s: centre = s + ((|a|^2 b - |b|^2 a) x (a x b)) / (2 |a x b|^2).
    const Point3 a = p - s, b = q - s, n = a.Cross(b);
    const Point3 offset = (b * a.Dot(a) - a * b.Dot(b)).Cross(n) * (1 / (2 * n.Dot(n)));
    Center = ToPoint(s + offset);
    Radius = offset.Length();
    return true;
}

}  // namespace tgp
