#include "units/RuntimeInteger.h"

#include <limits>

#include "core/Error.h"
#include "core/Rounding.h"
#include "units/NumberText.h"

namespace tgp {

namespace {

template <class Int>
Int RoundToInteger(double value) {
    const double rounded = RoundHalfEven(value, 0);
    // NaN fails both comparisons and so overflows too.
    if (!(rounded >= std::numeric_limits<Int>::min() && rounded <= std::numeric_limits<Int>::max()))
        throw Error::Overflow();
    return static_cast<Int>(rounded);
}

}  // namespace

int16_t ToInteger16(double value) {
    return RoundToInteger<int16_t>(value);
}

int32_t ToInteger32(double value) {
    return RoundToInteger<int32_t>(value);
}

int16_t TextToInteger16(std::string_view text) {
    return ToInteger16(ReadWholeNumber(text));
}

}  // namespace tgp
