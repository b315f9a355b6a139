// The text form of every quantity class and the unit recogniser: any text read, any unit and digit
// count written, and nothing but the library's own errors may come out.
#include <string>

#include "FuzzSupport.h"
#include "core/Error.h"
#include "units/Geometry_EXE.h"
#include "units/NumberText.h"
#include "units/UnitSymbols.h"

namespace {

template <class Q>
void Exercise(FuzzedDataProvider& data, const std::string& text) {
    Q quantity;
    try {
        quantity.ValueFromString(text);
    } catch (const tgp::Error&) {
    }
    const auto unit = data.ConsumeIntegral<int16_t>();
    const auto digits = data.ConsumeIntegral<int16_t>();
    const bool noBracket = data.ConsumeBool();
    try {
        const std::string written = quantity.ValueToString(tgp::UnitArg(unit), digits, noBracket);
        Q again;
        again.ValueFromString(written);
    } catch (const tgp::Error&) {
    }
    try {
        quantity.Value(tgp::UnitArg(unit), tgp::fuzz::AnyDouble(data));
    } catch (const tgp::Error&) {
    }
    (void)tgp::Geometry_EXE::GetUnitID(text, quantity);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const int kind = data.ConsumeIntegralInRange<int>(0, 10);
    const std::string text = data.ConsumeRandomLengthString(200);
    switch (kind) {
        case 0: Exercise<tgp::DAngle>(data, text); break;
        case 1: Exercise<tgp::DLength>(data, text); break;
        case 2: Exercise<tgp::DArea>(data, text); break;
        case 3: Exercise<tgp::DMomentOfInertia>(data, text); break;
        case 4: Exercise<tgp::DForce>(data, text); break;
        case 5: Exercise<tgp::DPressure>(data, text); break;
        case 6: Exercise<tgp::DForcePerArea>(data, text); break;
        case 7: Exercise<tgp::DForceMoment>(data, text); break;
        case 8: Exercise<tgp::DForcePerLine>(data, text); break;
        default: Exercise<tgp::DForceDensity>(data, text); break;
    }
    (void)tgp::RecogniseUnit(text,
                             static_cast<tgp::DimensionObjectType>(data.ConsumeIntegralInRange<int>(-2, 12)));
    for (auto read : {&tgp::ReadNumber, &tgp::ReadWholeNumber}) {
        try {
            (void)read(text);
        } catch (const tgp::Error&) {
        }
    }
    (void)tgp::FormatNumber(tgp::fuzz::AnyDouble(data), data.ConsumeIntegral<int16_t>());
    try {
        (void)tgp::GetUnitString(static_cast<tgp::DimensionObjectType>(data.ConsumeIntegral<int32_t>()),
                                 tgp::UnitArg(data.ConsumeIntegral<int16_t>()));
    } catch (const tgp::Error&) {
    }
    return 0;
}
