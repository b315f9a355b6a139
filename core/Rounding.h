#pragma once

namespace tgp {

// The automation runtime's Round(value, digits): scale by 10^digits, round half to even, scale back.
// Used where results must match that rounding (matrix RoundUp, Heron's factors).
double RoundHalfEven(double value, int digits);

}  // namespace tgp
