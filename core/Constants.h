#pragma once

namespace tgp {

// The geometry and profile code works with a shortened pi on purpose: results are reproduced
// with these literals, not with the full-precision constant.
inline constexpr double kPi = 3.14159265358979;
inline constexpr double kTwoPi = 6.28318530717958;
inline constexpr double kHalfPi = kPi / 2;
inline constexpr double kThreeHalfPi = 4.712388980384685;  // 1.5 times the shortened pi

// Tolerance the equality routine falls back to when given none.
inline constexpr double kDefaultTolerance = 1e-06;
// Segments shorter than this (under the equality routine) are dropped from a loop.
inline constexpr double kZeroLengthTolerance = 1e-05;
// Direction tolerance of the parallel and perpendicular tests: 0.02 degrees in radians.
inline constexpr double kDirectionTolerance = kPi / 9000;

}  // namespace tgp
