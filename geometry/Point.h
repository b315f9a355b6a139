#pragma once

#include <cstddef>
#include <vector>

#include "core/Error.h"
#include "core/Point3.h"

namespace tgp {

// A point or vector: element 0 = x, 1 = y, 2 = z. Arrays arriving from scripts with another lower
// bound are re-based to index 0 before they get here, so every member indexes from 0.
using Point = std::vector<double>;

// Reads element i the way the automation runtime reads an array: a missing element raises
// error 9 "Subscript out of range" instead of reading past the end.
inline double Element(const Point& p, std::size_t i) {
    if (i >= p.size()) throw Error::SubscriptOutOfRange();
    return p[i];
}

inline double& Element(Point& p, std::size_t i) {
    if (i >= p.size()) throw Error::SubscriptOutOfRange();
    return p[i];
}

// A fixed point as a point array of three elements.
inline Point ToPoint(const Point3& p) {
    return {p.x, p.y, p.z};
}

}  // namespace tgp
