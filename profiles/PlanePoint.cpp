#include "profiles/PlanePoint.h"

#include "core/Equality.h"

namespace tgp {

Point3 ToPlanePoint(const Point& p) {
    return {Element(p, 0), Element(p, 1), p.size() > 2 ? p[2] : 0.0};
}

bool SamePlanePoint(const Point3& a, const Point3& b) {
    return IsEqual(a[0], b[0]) && IsEqual(a[1], b[1]);
}

}  // namespace tgp
