#include "profiles/PlanePoint.h"

#include "core/Constants.h"
#include "core/Equality.h"

namespace tgp {

PlanePoint ToPlanePoint(const Point& p) {
    return {Element(p, 0), Element(p, 1), p.size() > 2 ? p[2] : 0.0};
}

Point ToPoint(const PlanePoint& p) { return {p[0], p[1], p[2]}; }

double PolarAngle(double x, double y) {
    if (x == 0) {
        if (y > 0) return kHalfPi;
        return y < 0 ? -kHalfPi : 0.0;
    }
    const double t = std::atan(y / x);
    if (x < 0) return y >= 0 ? t + kPi : t - kPi;
    return t;
}

double TurnAngle(const PlanePoint& v, const PlanePoint& w) {
    double d = PolarAngle(w) - PolarAngle(v);
    if (d > kPi) d -= kTwoPi;
    else if (d < -kPi) d += kTwoPi;
    return d;
}

bool SamePlanePoint(const PlanePoint& a, const PlanePoint& b) { return IsEqual(a[0], b[0]) && IsEqual(a[1], b[1]); }

}  // namespace tgp
