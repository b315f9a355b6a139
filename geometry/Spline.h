#pragma once

#include <vector>

#include "core/Point3.h"

namespace tgp {

// A B-spline as a drawing gives it: degree, knots, control points with optional weights (a
// rational spline), or only fit points.
struct SplineData {
    int degree = 3;
    std::vector<double> knots;
    std::vector<Point3> control;
    std::vector<double> weights;  // empty, or one per control point
    std::vector<Point3> fit;
};

// How closely a flattened spline follows the curve: no chord's midpoint lies farther from the curve
// than this fraction of the size (the diagonal of the box around the control points).
inline constexpr double kSplineFlatness = 1e-5;

// The curve as points from its first to its last parameter: every knot span is cut into at least
// four pieces and halved again until each piece's chord is within the flatness of the curve. A
// spline with fit points only follows its fit points. Knots that do not fit the control points
// (their number, or an order that decreases) are replaced by clamped uniform ones. Empty when there
// is nothing to draw.
std::vector<Point3> FlattenSpline(const SplineData& spline);

}  // namespace tgp
