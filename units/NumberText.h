#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tgp {

// The library's one way between numbers and text. It ignores the process locale on purpose (the host
// may have set a decimal comma): numbers are always written with a decimal point, and read with a
// point or a comma.
//
// FormatNumber:
//   NumberOfDigits >= 0: fixed notation with exactly that many decimals (2.5 with 2 -> "2.50");
//   NumberOfDigits < 0 (the default -2 everywhere): the shortest text that reads back to the same
//   double ("1234.5", "0.1", "1e+20").
//   Zero never comes out as "-0" (nor a rounded negative as "-0.00").
std::string FormatNumber(double value, int16_t NumberOfDigits = -2);

// The number at the start of the text after leading blanks and tabs; whatever follows it (a unit)
// is ignored. Accepts an optional sign, decimals and an exponent ("-1.5e3 mm"). The decimal
// separator is a point or, in a number without a point, a comma ("2,5 m" is 2.5, as a macro's CStr
// writes it under a decimal-comma locale). Grouping separators are not read: a number followed by
// a second separator and a digit ("1,000.5", "1.000,5", "1.2.3") fails with 13 "Type mismatch"
// rather than losing its tail, as does a text without a number there; a number beyond the double
// range fails with 6 "Overflow".
double ReadNumber(std::string_view text);

// A text that holds one number and nothing else but blanks around it; any other text fails with
// 13 "Type mismatch" (used where the runtime converts a whole text, such as a numeric unit argument).
double ReadWholeNumber(std::string_view text);

}  // namespace tgp
