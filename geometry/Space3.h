#pragma once
// The toolbox's arithmetic (analysis, circles, transformations) on fixed points read from point arrays
// of two or three finite coordinates.
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>

#include "geometry/Point.h"

namespace tgp {

// Reads a point of two or three finite coordinates; anything else raises 2411 naming the member.
inline Point3 ReadPoint3(const Point& p, const char* member) {
    if (p.size() < 2 || p.size() > 3)
        ThrowLibraryError(std::string(member) + " fails: a point needs two or three coordinates");
    for (double v : p)
        if (!std::isfinite(v)) throw Error::InvalidProcedureCall();
    return {p[0], p[1], p.size() == 3 ? p[2] : 0.0};
}

// The largest distance between two of the points: the scale the toolbox's length tolerance is
// relative to, so a result does not change when a drawing is scaled or moved.
inline double Extent(std::initializer_list<Point3> points) {
    double largest = 0;
    for (auto p = points.begin(); p != points.end(); ++p)
        for (auto q = p + 1; q != points.end(); ++q) largest = std::max(largest, (*p - *q).Length());
    return largest;
}

}  // namespace tgp
