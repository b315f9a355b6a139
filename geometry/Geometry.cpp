#include "geometry/Geometry.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/Constants.h"
#include "core/Equality.h"
#include "core/Rounding.h"
#include "geometry/UCS.h"
#include "geometry/Vector.h"

namespace tgp {

namespace {

constexpr const char* kNoTriangle =
    "Function Area_3Distances fails: the given lengths do not form a triangle";

// The library's own choice where the published loop would never end (an angle so large that
// subtracting a turn no longer changes it, or an infinity): one remainder. NaN stays NaN.
void ReduceByRemainder(double& angle) {
    angle = std::fmod(angle, kTwoPi);
    if (angle < 0) angle += kTwoPi;
}

// `while (x > limit) x -= step;` for step > 0 and limit >= 0, with the result the loop itself would
// leave, in time that does not grow with x; nothing when the loop would never end.
//
// Within one binade [2^(e-1), 2^e) the doubles are the multiples of u = 2^(e-53), so x - step,
// rounded to nearest, is x less a whole number d of u's: d is step / u rounded to nearest, the same
// for every subtraction that stays in the binade. Only a tie (step / u = m + 1/2) depends on x: it
// goes to the even neighbour, so the first subtraction makes x an even multiple of u and from then on
// d is whichever of m and m + 1 is even. One ordinary subtraction first, then all the subtractions
// that stay in the binade and keep x above the limit at once; the step that leaves the binade, or
// ends the loop, is again an ordinary one.
std::optional<double> SubtractWhileAbove(double x, double step, double limit) {
    while (x > limit) {
        int exponent = 0;
        std::frexp(x, &exponent);
        const double low = std::ldexp(1.0, exponent - 1), u = std::ldexp(1.0, exponent - 53);
        const double next = x - step;
        if (next == x) return std::nullopt;  // the subtraction changes nothing: no end
        x = next;
        if (x < low || x <= limit) continue;  // left the binade, or the loop is over
        const double q = step / u, whole = std::floor(q), fraction = q - whole;
        const double d = fraction < 0.5   ? whole
                         : fraction > 0.5 ? whole + 1
                                          : (std::fmod(whole, 2) == 0 ? whole : whole + 1);
        if (d == 0) return std::nullopt;
        const double n = x / u, nLow = low / u;     // whole numbers below 2^53
        double steps = std::floor((n - nLow) / d);  // staying in the binade
        if (limit >= low) steps = std::min(steps, std::ceil((n - limit / u) / d));  // until x <= limit
        x = (n - steps * d) * u;
    }
    return x;
}

void ClearFlags(bool* Rotate180, bool* XMirror) {
    if (Rotate180) *Rotate180 = false;
    if (XMirror) *XMirror = false;
}

void SetFlags(bool* Rotate180, bool rotate, bool* XMirror, bool mirror) {
    if (Rotate180) *Rotate180 = rotate;
    if (XMirror) *XMirror = mirror;
}

double SnapToUnitOrZero(double x) {
    if (IsEqual(x, 1.0)) x = 1;
    if (IsEqual(x, 0.0)) x = 0;
    if (IsEqual(x, -1.0)) x = -1;
    return x;
}

// A horizontal unit vector perpendicular to the unit direction u; (1, 0, 0) when u is vertical.
Point PerpendicularAxis(const Point& u) {
    const double u0 = Element(u, 0), u1 = Element(u, 1), u2 = Element(u, 2);
    if (IsEqual(std::fabs(u2), 1.0) && IsEqual(u1, 0.0) && IsEqual(u0, 0.0)) return {1, 0, 0};
    const double r = std::sqrt(u1 * u1 + u0 * u0);
    return {u1 / r, -u0 / r, 0};
}

struct RotationFrame {
    UCS system;
    Point local;  // the point's coordinates in the system
};

// Builds the system whose z-axis is the rotation axis and finds the point's coordinates in it.
void BuildRotationFrame(const Point& point, const Point& Org, const Point& Uz, RotationFrame& frame) {
    const Point uz = Vector::UnitVec(Uz);
    const Point ux = PerpendicularAxis(uz);
    const Point uy = Vector::vxv(uz, ux);
    frame.system.SetUCS(Org, ux, uy, &uz);
    frame.local = Vector::AssocVector(Vector::VectorAB(Org, point), ux, uy, uz);
}

}  // namespace

double Geometry::pi() {
    return kPi;
}

double Geometry::DegToRad(double Angle) {
    return CheckFinite((Angle / 180) * pi());
}

double Geometry::DegFromRad(double Angle) {
    return CheckFinite((Angle / pi()) * 180);
}

// Subtract the turn while above it, then add it while below 0, exactly as those loops do, whatever
// the size of the angle.
void Geometry::FixAngle360(double& Angle) {
    const double twoPi = 2 * pi();
    const double original = Angle;
    if (!std::isfinite(Angle)) {
        ReduceByRemainder(Angle);
        return;
    }
    if (Angle > twoPi) {
        const std::optional<double> down = SubtractWhileAbove(Angle, twoPi, twoPi);
        if (!down) {
            Angle = original;
            ReduceByRemainder(Angle);
            return;
        }
        Angle = *down;
    }
    if (Angle < 0) {
        // x += turn for negative x is the mirror image of |x| -= turn (rounding is symmetric).
        const std::optional<double> up = SubtractWhileAbove(-Angle, twoPi, 0);
        if (!up) {
            Angle = original;
            ReduceByRemainder(Angle);
            return;
        }
        Angle = 0.0 - *up;  // 0 - 0 is +0, as x + turn = 0 is
    }
}

void Geometry::FixAngle180(double& Angle, bool* Rotate180, bool* XMirror) {
    FixAngle360(Angle);
    ClearFlags(Rotate180, XMirror);
    if (Angle > pi()) {
        Angle -= pi();
        SetFlags(Rotate180, true, XMirror, false);
    }
}

void Geometry::FixAngle90(double& Angle, bool* Rotate180, bool* XMirror) {
    FixAngle360(Angle);
    ClearFlags(Rotate180, XMirror);
    const double halfPi = pi() / 2;
    const double threeHalfPi = pi() + pi() / 2;
    // The first row sets both flags although the direction is unchanged there; callers rely on it.
    if (Angle > threeHalfPi) {
        Angle -= 2 * pi();
        SetFlags(Rotate180, true, XMirror, true);
    } else if (Angle > pi()) {
        Angle -= pi();
        SetFlags(Rotate180, true, XMirror, false);
    } else if (Angle > halfPi) {
        Angle -= pi();
        SetFlags(Rotate180, false, XMirror, true);
    }
}

void Geometry::FixAngle180180(double& Angle) {
    FixAngle360(Angle);
    if (Angle > pi()) Angle -= 2 * pi();
}

void Geometry::FixAngle9090(double& Angle, bool* Rotate180, bool* XMirror) {
    FixAngle180(Angle);
    ClearFlags(Rotate180, XMirror);
    if (Angle > pi() / 2) {
        Angle -= pi();
        SetFlags(Rotate180, true, XMirror, false);
    }
}

double Geometry::ASin(double& x) {
    x = SnapToUnitOrZero(x);
    if (std::fabs(x) > 1) throw Error(713, "ASin(X): X must smaller than 1.");
    if (x == 1) return pi() / 2;
    if (x == -1) return -pi() / 2;
    return std::atan(x / std::sqrt(1 - x * x));
}

double Geometry::ACos(double& x) {
    x = SnapToUnitOrZero(x);
    if (std::fabs(x) > 1) throw Error(713, "ACos(X): X must smaller than 1.");
    if (x == 0) return pi() / 2;
    const double r = std::atan(std::sqrt(1 - x * x) / x);
    return x < 0 ? r + pi() : r;
}

double Geometry::Area_3Distances(double A, double b, double C) {
    // Heron's product of three negative factors is positive: negative lengths are no triangle.
    if (A < 0 || b < 0 || C < 0) ThrowLibraryError(kNoTriangle);
    const double s = CheckFinite((A + b + C) / 2);
    // Rounding the factors turns the round-off of a flat triangle into an exact 0.
    const double sa = RoundHalfEven((-A + b + C) / 2, 8);
    const double sb = RoundHalfEven((A - b + C) / 2, 8);
    const double sc = RoundHalfEven((A + b - C) / 2, 8);
    const double p = CheckFinite(s * sa * sb * sc);
    if (p < 0) ThrowLibraryError(kNoTriangle);
    return std::sqrt(p);
}

double Geometry::Area_3Points(const Point& P1, const Point& P2, const Point& P3) {
    return Area_3Distances(Vector::vLength(P2, P3), Vector::vLength(P1, P3), Vector::vLength(P1, P2));
}

Point Geometry::NormalVector(const Point& A, const Point& b, const Point& C) {
    const Point n = Vector::vxv(Vector::VectorAB(A, b), Vector::VectorAB(b, C));
    // The published member also raises 713 "NormalVector function fails: A, B, C do not form a
    // Triangle" when the caller left an unhandled error pending. Natively no error is ever pending
    // (failures are thrown), so that check cannot fire and is not reproduced.
    return Vector::UnitVec(n);
}

double Geometry::Volume_4Points(const Point& A, const Point& b, const Point& C, const Point& D) {
    const double area = Area_3Points(b, C, D);
    if (area == 0) return 0;
    double distance = 0;
    Analyse_Point_Plane(A, b, C, D, distance);
    return CheckFinite(distance * area / 3);
}

APlane_Result Geometry::Analyse_Point_Plane(const Point& P, const Point& A, const Point& b, const Point& C,
                                            double& Distance, Point* FootPoint, std::string* Desc) {
    PointPlaneAnalysis analysis = Analysis::PointPlane(P, A, b, C);
    Distance = analysis.distance;
    if (FootPoint) *FootPoint = std::move(analysis.foot);
    if (Desc) *Desc = std::move(analysis.desc);
    return analysis.result;
}

void Geometry::RotatePoint(const Point& point, const Point& Org, const Point& Uz, double Rotation,
                           Point& ReturnPoint) {
    RotationFrame frame;
    try {
        BuildRotationFrame(point, Org, Uz, frame);
    } catch (const Error&) {
        throw Error(713, "Method RotatePoint of Geometry module fails");
    }
    const double a = Element(frame.local, 0), b = Element(frame.local, 1), c = Element(frame.local, 2);
    const double r = std::sqrt(a * a + b * b);
    const double phi = Vector::vAngle({a, b}) + Rotation;
    Point turned{r * std::cos(phi), r * std::sin(phi), c};
    frame.system.TranslateToUCS(turned, UCS{});
    ReturnPoint = CheckAllFinite(std::move(turned));
}

}  // namespace tgp
