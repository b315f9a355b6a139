#pragma once

#include <cmath>
#include <cstddef>

namespace tgp {

// The library's one fixed point (and direction) type. Indices 0, 1 and 2 read x, y and z, as the
// point arrays of the published members do; profile code carries z but never reads it. Points of
// the published members (arrays of any length that scripts pass) are converted at the class boundary.
struct Point3 {
    double x = 0, y = 0, z = 0;

    double operator[](std::size_t i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](std::size_t i) { return i == 0 ? x : i == 1 ? y : z; }
    bool operator==(const Point3&) const = default;

    Point3 operator+(const Point3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    Point3 operator-(const Point3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    Point3 operator*(double k) const { return {x * k, y * k, z * k}; }
    double Dot(const Point3& o) const { return x * o.x + y * o.y + z * o.z; }
    Point3 Cross(const Point3& o) const { return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x}; }
    double Length() const { return std::hypot(x, y, z); }
};

}  // namespace tgp
