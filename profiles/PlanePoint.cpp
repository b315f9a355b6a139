#include "profiles/PlanePoint.h"

#include "core/Equality.h"

namespace tgp {

PlanePoint ToPlanePoint(const Point& p) {
    return {Element(p, 0), Element(p, 1), p.size() > 2 ? p[2] : 0.0};
}

Point ToPoint(const PlanePoint& p) {
    return {p[0], p[1], p[2]};
}

bool SamePlanePoint(const PlanePoint& a, const PlanePoint& b) {
    return IsEqual(a[0], b[0]) && IsEqual(a[1], b[1]);
}

}  // namespace tgp
