#pragma once

namespace tgp {

// The automation runtime's Round(value, digits): scale by 10^digits, round half to even, scale back.
// Used where results must match that rounding (matrix RoundUp, Heron's factors). A negative digit
// count raises 5 "Invalid procedure call or argument", as the runtime's Round does.
double RoundHalfEven(double value, int digits);

}  // namespace tgp
