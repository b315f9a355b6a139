#include "geometry/Vector.h"

#include <algorithm>
#include <cmath>

#include "core/Constants.h"
#include "core/Equality.h"
#include "geometry/Geometry.h"
#include "geometry/Matrix.h"

namespace tgp {

namespace {

// Floating division as the automation runtime does it: a zero divisor raises error 11 rather than
// producing an infinity.
double Divide(double numerator, double denominator) {
    if (denominator == 0) throw Error::DivisionByZero();
    return numerator / denominator;
}

Point AddSharedIndices(const Point& sum, const Point& item) {
    Point result(std::max(sum.size(), item.size()), 0.0);
    const std::size_t shared = std::min(sum.size(), item.size());
    for (std::size_t i = 0; i < shared; ++i) result[i] = sum[i] + item[i];
    return result;
}

// Sine (IsParallel) or cosine (IsVertical) of the angle between two directions, compared with the
// direction tolerance.
bool BelowDirectionTolerance(double measure, const Point& V1, const Point& V2) {
    const double k = Divide(measure, Vector::vLength(V1) * Vector::vLength(V2));
    return k < kDirectionTolerance;
}

}  // namespace

Point Vector::vplusv(std::span<const Point> parArr) {
    if (parArr.empty()) throw Error::SubscriptOutOfRange();
    Point sum = parArr.front();
    for (const Point& item : parArr.subspan(1)) sum = AddSharedIndices(sum, item);
    return CheckAllFinite(sum);
}

Point Vector::vplusv(const Point& V1, const Point& V2) {
    const Point items[] = {V1, V2};
    return vplusv(std::span<const Point>(items));
}

Point Vector::vminusv(const Point& V1, const Point& V2) {
    return vplusv(V1, vxr(V2, -1));
}

Point Vector::vxr(const Point& v, double r) {
    Point scaled(v);
    for (double& element : scaled) element = CheckFinite(element * r);
    return scaled;
}

// Plane angle of (x, y) in (-pi, pi] with the shortened pi.
double Vector::PlaneAngle(double x, double y) {
    if (x == 0) {
        if (y > 0) return kPi / 2;
        if (y < 0) return -kPi / 2;
        return 0;
    }
    const double t = std::atan(y / x);
    if (x < 0) return y >= 0 ? t + kPi : t - kPi;
    return t;
}

double Vector::PlaneTurn(double vx, double vy, double wx, double wy) {
    double d = PlaneAngle(wx, wy) - PlaneAngle(vx, vy);
    if (d > kPi) d -= kTwoPi;
    if (d < -kPi) d += kTwoPi;
    return d;
}

double Vector::vAngle(const Point& v) {
    return PlaneAngle(Element(v, 0), Element(v, 1));
}

double Vector::vAngle(const Point& v, const Point& V1) {
    return PlaneTurn(Element(v, 0), Element(v, 1), Element(V1, 0), Element(V1, 1));
}

double Vector::vLength(const Point& A) {
    double squares = 0;
    for (double element : A) squares += element * element;
    return CheckFinite(std::sqrt(squares));
}

double Vector::vLength(const Point& A, const Point& b) {
    return vLength(vminusv(b, A));
}

Point Vector::vRotate(const Point& v, double r) {
    // A plane operation: z takes no part, neither in the angle nor in the length.
    const double length = vLength({Element(v, 0), Element(v, 1)});
    const double angle = vAngle(v) + r;
    return CheckAllFinite(Point{length * std::cos(angle), length * std::sin(angle)});
}

Point Vector::vxv(const Point& V1, const Point& V2) {
    const double x1 = Element(V1, 0), y1 = Element(V1, 1), z1 = Element(V1, 2);
    const double x2 = Element(V2, 0), y2 = Element(V2, 1), z2 = Element(V2, 2);
    return CheckAllFinite(Point{y1 * z2 - z1 * y2, x2 * z1 - x1 * z2, x1 * y2 - y1 * x2});
}

double Vector::vxxv(const Point& V1, const Point& V2) {
    double sum = 0;
    for (std::size_t i = 0; i < V1.size(); ++i) sum += V1[i] * Element(V2, i);
    return CheckFinite(sum);
}

Point Vector::vProjectTo(const Point& Vec, const Point& ToVector) {
    const Point e = UnitVec(ToVector);
    return vxr(e, vxxv(Vec, e));
}

double Vector::vAngle3D(const Point& uA, const Point& uX0, const Point* Uz) {
    const Point a = UnitVec(uA);
    const Point x = UnitVec(uX0);
    const double c = vxxv(a, x);
    if (IsEqual(c, 1.0)) return 0;
    if (IsEqual(c, -1.0)) return kPi;

    // Without an axis the normal x -> a is taken, which makes the result the unsigned angle in
    // [0, pi] between the two directions.
    Point z = Uz ? *Uz : vxv(x, a);
    z = vxr(z, Divide(1, vLength(z)));
    const Point y = vxv(z, x);
    const double s = vxxv(a, y);

    if (IsEqual(c, 0.0)) return s > 0 ? kPi / 2 : -kPi / 2;
    const double t = std::atan(s / c);
    return c < 0 ? t + kPi : t;
}

Point Vector::UnitVec(Point u) {
    // A length that overflows cannot be divided by either: scaled by 1/inf the vector would come
    // back as zeros, so it fails as a zero vector does.
    double squares = 0;
    for (double element : u) squares += element * element;
    const double length = std::sqrt(squares);
    if (length == 0 || !std::isfinite(length)) ThrowLibraryError("Vector unitvec(u) = u = 0");
    return vxr(u, 1 / length);
}

Point Vector::UnitVec(const Point& u, const Point& PointB) {
    return UnitVec(VectorAB(u, PointB));
}

void Vector::RoundZeroVector(Point& v, double& fuzz) {
    if (fuzz == 0) fuzz = kDefaultTolerance;
    for (double& element : v) {
        if (IsEqual(element, 0.0, fuzz)) element = 0;
    }
}

void Vector::RoundZeroVector(Point& v) {
    double fuzz = 0;
    RoundZeroVector(v, fuzz);
}

Point Vector::AssocVector(Point Fvector, const Point& u, const Point& v, const Point& w) {
    try {
        auto basis = std::make_shared<Matrix>();
        basis->Reset(3, 3);
        basis->LetColumn(u, 0);
        basis->LetColumn(v, 1);
        basis->LetColumn(w, 2);
        // Rounding to 12 digits first lets a basis that is singular up to round-off be detected.
        const auto inverse = basis->RoundUp(12)->Inverse();
        if (inverse->RowCount() == 0) throw Error::InvalidProcedureCall();  // singular: no inverse
        return inverse->MultiplyWithVector(Fvector);
    } catch (const Error&) {
        ThrowLibraryError("AssocVector fails: The Inverse Matrix method return Null");
    }
}

Point Vector::VectorAB(const Point& A, const Point& b) {
    return vminusv(b, A);
}

Point Vector::ConvertVariantToArray(const Point& P) {
    return P;
}

bool Vector::IsParallel(const Point& V1, const Point& V2) {
    return BelowDirectionTolerance(vLength(vxv(V1, V2)), V1, V2);
}

bool Vector::IsVertical(const Point& V1, const Point& V2) {
    return BelowDirectionTolerance(std::fabs(vxxv(V1, V2)), V1, V2);
}

bool Vector::Fix_NegativeVector(Point& SP, Point& EP, double OffsetAngle) {
    double a = vAngle(VectorAB(SP, EP)) - OffsetAngle;
    Geometry::FixAngle360(a);
    // Half open on purpose: exactly pi/2 counts as positive, 3 pi/2 (within tolerance) as negative.
    const bool positive = (a <= kPi / 2 || a > kThreeHalfPi) && !IsEqual(a, kThreeHalfPi);
    if (positive) return false;
    std::swap(SP, EP);
    return true;
}

}  // namespace tgp
