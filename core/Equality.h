#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tgp {

// The library-wide equality routine. Two numbers are equal when they are identical, when both
// magnitudes are below |tolerance|, or when |a / b - 1| <= |tolerance| (b the divisor; a ratio that
// cannot be formed because b is 0 counts as unequal).
//
// A tolerance of 0 selects the default 1E-06, and that default is written back into the caller's
// variable, as callers of the published interface observe through their by-reference argument.
bool IsEqual(double a, double b, double& tolerance);

// Same rule with the default tolerance, nothing written back.
bool IsEqual(double a, double b);

// Same rule with a fixed tolerance; 0 still means the default.
bool IsEqualWithin(double a, double b, double tolerance);

// Texts are equal when identical; with a tolerance given they are compared trimmed of blanks and
// without regard to ASCII case.
bool IsEqual(std::string_view a, std::string_view b, std::optional<double> tolerance = std::nullopt);

// Arrays are equal when they have the same count and every pair of elements is equal by the number
// rule (the default tolerance written back as for single numbers).
bool IsEqual(std::span<const double> a, std::span<const double> b, double& tolerance);

}  // namespace tgp
