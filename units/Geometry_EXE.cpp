#include "units/Geometry_EXE.h"

#include "units/UnitSymbols.h"

namespace tgp {

namespace {

// Every factory: a new object whose Value(Unit) is set; a bad unit fails before anything is returned.
template <class Q>
std::shared_ptr<Q> Make(double value, int16_t unit) {
    auto quantity = std::make_shared<Q>();
    quantity->Value(UnitArg(unit), value);
    return quantity;
}

}  // namespace

std::string Geometry_EXE::GetUnitString(DimensionObjectType DimensionType, const UnitArg& Unit) {
    return tgp::GetUnitString(DimensionType, Unit);
}

int16_t Geometry_EXE::GetUnitID(std::string_view ValueStr, const Quantity& DObject) {
    return RecogniseUnit(ValueStr, DObject.DimensionType());
}

std::shared_ptr<DAngle> Geometry_EXE::GetDAngle(double Value, int16_t Unit) {
    return Make<DAngle>(Value, Unit);
}
std::shared_ptr<DLength> Geometry_EXE::GetDLength(double Value, int16_t Unit) {
    return Make<DLength>(Value, Unit);
}
std::shared_ptr<DArea> Geometry_EXE::GetDArea(double Value, int16_t Unit) {
    return Make<DArea>(Value, Unit);
}
std::shared_ptr<DVolume> Geometry_EXE::GetDVolume(double Value, int16_t Unit) {
    return Make<DVolume>(Value, Unit);
}
std::shared_ptr<DForce> Geometry_EXE::GetDForce(double Value, int16_t Unit) {
    return Make<DForce>(Value, Unit);
}
std::shared_ptr<DForceDensity> Geometry_EXE::GetDForceDensity(double Value, int16_t Unit) {
    return Make<DForceDensity>(Value, Unit);
}
std::shared_ptr<DForceMoment> Geometry_EXE::GetDForceMoment(double Value, int16_t Unit) {
    return Make<DForceMoment>(Value, Unit);
}
std::shared_ptr<DForcePerArea> Geometry_EXE::GetDForcePerArea(double Value, int16_t Unit) {
    return Make<DForcePerArea>(Value, Unit);
}
std::shared_ptr<DForcePerLine> Geometry_EXE::GetDForcePerLine(double Value, int16_t Unit) {
    return Make<DForcePerLine>(Value, Unit);
}
std::shared_ptr<DMomentOfInertia> Geometry_EXE::GetDMomentOfInertia(double Value, int16_t Unit) {
    return Make<DMomentOfInertia>(Value, Unit);
}
std::shared_ptr<DPressure> Geometry_EXE::GetDPressure(double Value, int16_t Unit) {
    return Make<DPressure>(Value, Unit);
}

}  // namespace tgp
