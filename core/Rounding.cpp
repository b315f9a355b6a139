#include "core/Rounding.h"

#include <cmath>

#include "core/Error.h"

namespace tgp {

double RoundHalfEven(double value, int digits) {
    if (digits < 0) throw Error::InvalidProcedureCall();  // the runtime's Round takes no negative count
    if (!std::isfinite(value)) return value;
    const double scale = std::pow(10.0, digits);
    const double scaled = value * scale;
    if (!std::isfinite(scaled)) return value;  // too large to carry that many decimals
    // The remainder decides the direction; an exact half goes to the even neighbour.
    const double lower = std::floor(scaled);
    const double fraction = scaled - lower;
    double rounded = lower;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(lower, 2.0) != 0)) rounded = lower + 1;
    return rounded / scale;
}

}  // namespace tgp
