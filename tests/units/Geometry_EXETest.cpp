#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/Expectations.h"
#include "units/Geometry_EXE.h"
#include "units/UnitSetting.h"

namespace tgp {
namespace {

struct FactoryCase {
    const char* what;
    std::function<std::shared_ptr<Quantity>()> make;
    DimensionObjectType kind;
    std::function<double(const Quantity&)> storedAmount;
    double expected;
};

template <class Q>
std::function<double(const Quantity&)> Read(double (Q::*get)() const) {
    return [get](const Quantity& q) { return (dynamic_cast<const Q&>(q).*get)(); };
}

TEST(Geometry_EXE, FactoriesStoreTheValueInTheGivenUnitOrUnitZero) {
    const FactoryCase cases[] = {
        {"feet", [] { return Geometry_EXE::GetDLength(1, ft_UnitID); }, DLengthObject,
         Read(&DLength::Millimetres), 304.8},
        {"pressure default", [] { return Geometry_EXE::GetDPressure(5); }, DPressureObject,
         Read(&DPressure::KN_m2), 5e6},
        {"angle degrees", [] { return Geometry_EXE::GetDAngle(180, Degree_UnitID); }, DAngleObject,
         Read(&DAngle::Radians), 3.14159265358979},
        {"area cm", [] { return Geometry_EXE::GetDArea(2, cm_UnitID); }, DAreaObject,
         Read(&DArea::Millimetres), 200},
        {"volume litres", [] { return Geometry_EXE::GetDVolume(2, dm_UnitID); }, DVolumeObject,
         Read(&DVolume::Millimetres), 2e6},
        {"force N", [] { return Geometry_EXE::GetDForce(500, N_unitID); }, DForceObject, Read(&DForce::KN),
         0.5},
        {"density", [] { return Geometry_EXE::GetDForceDensity(3, KN_m_unitID); }, DForceDensityObject,
         Read(&DForceDensity::KN_m3), 3},
        {"moment KNm", [] { return Geometry_EXE::GetDForceMoment(2, KN_m_unitID); }, DForceMomentObject,
         Read(&DForceMoment::KNmm), 2000},
        {"per area", [] { return Geometry_EXE::GetDForcePerArea(4, daN_cm_unitID); }, DForcePerareaObject,
         Read(&DForcePerArea::KN_m2), 400},
        {"per line", [] { return Geometry_EXE::GetDForcePerLine(7); }, DForcePerLineObject,
         Read(&DForcePerLine::KN_mm), 7},
        {"inertia cm", [] { return Geometry_EXE::GetDMomentOfInertia(1, cm_UnitID); }, DMomentOfInertiaObject,
         Read(&DMomentOfInertia::Millimetres), 10000},
    };
    for (const FactoryCase& c : cases) {
        auto q = c.make();
        EXPECT_EQ(q->DimensionType(), c.kind) << c.what;
        EXPECT_EQ(c.storedAmount(*q), c.expected) << c.what;
    }
}

TEST(Geometry_EXE, InvalidUnitsFailWithTheKindsTextAndUnknownSymbolsAreMinusOne) {
    test::ExpectError(24111, "1 is an invalid UnitID for ForceMoment",
                      [] { Geometry_EXE::GetDForceMoment(1, daN_cm_unitID); });
    test::ExpectError(24111, "2 is an invalid UnitID for Angle", [] { Geometry_EXE::GetDAngle(1, 2); });
    // GetUnitID reports -1 where reading a text would take unit 0.
    DAngle angle;
    EXPECT_EQ(Geometry_EXE::GetUnitID("12 deg", angle), -1);
    EXPECT_EQ(Geometry_EXE::GetUnitID("12 \u00ba", angle), 1);
    DPressure pressure;
    EXPECT_EQ(Geometry_EXE::GetUnitID("3 MPa", pressure), 11);
}

TEST(Geometry_EXE, GetUnitStringResolvesNumbersAndSettings) {
    auto setting = std::make_shared<UnitSetting>();
    setting->UnitID(DLengthObject, in_UnitID);
    EXPECT_EQ(Geometry_EXE::GetUnitString(DLengthObject, setting), "in");
    EXPECT_EQ(Geometry_EXE::GetUnitString(DVolumeObject, "2"), "dm\u00b3");
    test::ExpectError(2411, "GetUnitString no found",
                      [] { Geometry_EXE::GetUnitString(DForceMomentObject, 1); });
}

}  // namespace
}  // namespace tgp
