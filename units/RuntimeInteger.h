#pragma once

#include <cstdint>
#include <string_view>

namespace tgp {

// The automation runtime's conversions to its 16-bit Integer and 32-bit Long: round half to even,
// then fail with 6 "Overflow" when the result does not fit (NaN and infinities do not fit either).
int16_t ToInteger16(double value);
int32_t ToInteger32(double value);

// A whole text holding one number (blanks around it allowed) converted to a 16-bit Integer;
// any other text fails with 13 "Type mismatch".
int16_t TextToInteger16(std::string_view text);

}  // namespace tgp
