// The angle normalisers, the degree conversions and the guarded ASin/ACos on any double: each must
// end (in bounded time), land in its range for finite input, and raise only the library's errors.
#include <cmath>
#include <cstdlib>

#include "FuzzSupport.h"
#include "core/Constants.h"
#include "core/Error.h"
#include "geometry/Geometry.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const double angle = tgp::fuzz::AnyDouble(data);
    const bool finite = std::isfinite(angle);
    using G = tgp::Geometry;
    double a = angle;
    G::FixAngle360(a);
    if (finite) Require(a >= 0 && a <= tgp::kTwoPi);
    bool rotate = true, mirror = true;
    a = angle;
    G::FixAngle180(a, &rotate, &mirror);
    if (finite) Require(a >= 0 && a <= tgp::kPi && !mirror);
    a = angle;
    G::FixAngle90(a, &rotate, &mirror);
    if (finite) Require(a > -tgp::kHalfPi - 1e-15 && a <= tgp::kHalfPi + 1e-15);
    a = angle;
    G::FixAngle180180(a);
    if (finite) Require(a > -tgp::kPi - 1e-15 && a <= tgp::kPi + 1e-15);
    a = angle;
    G::FixAngle9090(a, &rotate, &mirror);
    if (finite) Require(!mirror);
    for (auto convert : {&G::DegToRad, &G::DegFromRad}) {
        try {
            Require(std::isfinite(convert(angle)));
        } catch (const tgp::Error& e) {
            Require(e.number() == 6);  // not finite, or overflowing: refused
        }
    }
    for (auto f : {&G::ASin, &G::ACos}) {
        double x = angle;
        try {
            const double r = f(x);
            Require(std::isnan(x) || (r >= -tgp::kHalfPi - 1e-15 && r <= tgp::kPi + 1e-15));
        } catch (const tgp::Error& e) {
            Require(e.number() == 713 || e.number() == 6);
        }
    }
    return 0;
}
