// Quantities: every unit of every kind against an independent model of the catalogue, the unit
// argument in each of its forms, and the factories.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/Error.h"
#include "support/Expectations.h"
#include "units/DAngle.h"
#include "units/DArea.h"
#include "units/DForce.h"
#include "units/DForceDensity.h"
#include "units/DForceMoment.h"
#include "units/DForcePerArea.h"
#include "units/DForcePerLine.h"
#include "units/DLength.h"
#include "units/DMomentOfInertia.h"
#include "units/DPressure.h"
#include "units/DVolume.h"
#include "units/Geometry_EXE.h"
#include "units/RuntimeInteger.h"
#include "units/UnitArg.h"
#include "units/UnitSetting.h"

namespace tgp {
namespace {

// Every unit of every kind: written in one unit, read in every other, against an independent model
// of the catalogue that repeats its operations in the same order, so results compare bit for bit.
struct Amount {
    double raw = 0;
    double factor = 0;
};
struct UnitModel {
    int id;
    std::function<double(Amount)> read;
    std::function<Amount(double)> write;
};
struct KindModel {
    std::string name;
    std::function<std::shared_ptr<Quantity>()> make;
    std::vector<UnitModel> units;
    const UnitModel& operator[](int id) const {
        for (const UnitModel& unit : units)
            if (unit.id == id) return unit;
        throw std::logic_error("no unit");
    }
};

UnitModel Divide(int id, double f) {
    return {id, [f](Amount a) { return a.raw / f; }, [f](double v) { return Amount{v * f}; }};
}
UnitModel Multiply(int id, double f) {
    return {id, [f](Amount a) { return a.raw * f; }, [f](double v) { return Amount{v / f}; }};
}
UnitModel Through(int id, const UnitModel& base, double k) {
    return {id, [base, k](Amount a) { return base.read(a) / k; },
            [base, k](double v) { return base.write(v * k); }};
}
// Raw-and-factor kinds: written raw = v, factor = f; read (factor / divisors...) * raw.
UnitModel Pair(int id, double f, std::vector<double> divisors) {
    return {id,
            [divisors](Amount a) {
                double x = a.factor;
                for (double d : divisors) x /= d;
                return x * a.raw;
            },
            [f](double v) {
                return Amount{v, f};
            }};
}

template <class Q>
std::function<std::shared_ptr<Quantity>()> Maker() {
    return [] { return std::make_shared<Q>(); };
}

// clang-format off
std::vector<UnitModel> PressureUnits() {
    const UnitModel kgM2 = Divide(2, 0.00981), psi = Divide(4, 6.897112576), pa = Multiply(11, 1000);
    return {Divide(0, 1000000), Divide(1, 100), kgM2, Through(3, kgM2, 1000), psi, Through(5, psi, 1000),
            Divide(6, 1000), Divide(7, 1), Divide(8, 10000), Divide(9, 98.1), Divide(10, 98.1), pa,
            Through(12, pa, 1000), Through(13, pa, 1000000)};
}

std::vector<UnitModel> ForceLengthUnits(UnitModel base, double kg, double pound, UnitModel perMetre) {
    const UnitModel kgUnit = Divide(2, kg), poundUnit = Divide(4, pound);
    return {base, kgUnit, Through(3, kgUnit, 1000), poundUnit, Through(5, poundUnit, 1000), perMetre};
}

std::vector<KindModel> Catalogue() {
    const double pi = 3.14159265358979;
    const UnitModel kg = {2, [](Amount a) { return (1000 / 9.81) * a.raw; },
                          [](double v) { return Amount{v * 9.81 / 1000}; }};
    const UnitModel moiCm = Pair(1, 10000, {10000});
    return {
        {"Angle", Maker<DAngle>(), {Divide(0, 1),
            {1, [pi](Amount a) { return a.raw / pi * 180; }, [pi](double v) { return Amount{v / 180 * pi}; }}}},
        {"Length", Maker<DLength>(),
            {Divide(0, 1), Divide(1, 10), Divide(2, 100), Divide(3, 1000), Divide(4, 25.4), Divide(5, 304.8)}},
        {"Area", Maker<DArea>(), {Divide(0, 1), Divide(1, 100), Divide(2, 10000), Divide(3, 1000000),
            {4, [](Amount a) { return a.raw / 25.4 / 25.4; }, [](double v) { return Amount{v * 25.4 * 25.4}; }},
            {5, [](Amount a) { return a.raw / 304.8 / 304.8; }, [](double v) { return Amount{v * 304.8 * 304.8}; }}}},
        {"Volume", Maker<DVolume>(),
            {Pair(0, 1, {}), Pair(1, 1000, {1000}), Pair(2, 1e6, {1e6}), Pair(3, 1e9, {1e9}),
             Pair(4, 16387.064, {25.4, 25.4, 25.4}), Pair(5, 28316846.592000004, {304.8, 304.8, 304.8})}},
        {"MomentOfInertia", Maker<DMomentOfInertia>(), {Pair(0, 1, {}), moiCm, Through(2, moiCm, 10000),
            {3, [](Amount a) { return (a.factor / 1e12) * a.raw; }, [](double v) { return Amount{v * 1e6, 1e6}; }},
            Pair(4, 416231.42559999996, {25.4, 25.4, 25.4, 25.4}), Pair(5, std::pow(304.8, 4), {std::pow(304.8, 4)})}},
        {"Force", Maker<DForce>(), {Divide(0, 1), Multiply(1, 100), kg, Through(3, kg, 1000),
            {4, [](Amount a) { return a.raw * 1000 / 4.44974115; }, [](double v) { return Amount{v * 4.44974115 / 1000}; }},
            Divide(5, 4.44974115), Multiply(6, 1000)}},
        {"Pressure", Maker<DPressure>(), PressureUnits()},
        {"ForcePerArea", Maker<DForcePerArea>(), PressureUnits()},
        {"ForceMoment", Maker<DForceMoment>(), ForceLengthUnits(Divide(0, 1), 9.81, 0.113023425, Divide(7, 1000))},
        {"ForcePerLine", Maker<DForcePerLine>(), ForceLengthUnits(Divide(0, 1), 9.81e-06, 0.000175187, Multiply(7, 1000))},
        {"ForceDensity", Maker<DForceDensity>(), ForceLengthUnits(Divide(0, 1e9), 0.00981, 271.5398652, Divide(7, 1))},
    };
}
// clang-format on

const double kSamples[] = {1, 12.345, -0.7, 1e-3, 987654.321};

TEST(Conversion, EveryUnitWrittenReadsBackInEveryUnitExactly) {
    for (const KindModel& kind : Catalogue()) {
        for (const UnitModel& written : kind.units) {
            for (double v : kSamples) {
                auto q = kind.make();
                q->Value(written.id, v);
                for (const UnitModel& read : kind.units)
                    EXPECT_EQ(q->Value(read.id), read.read(written.write(v)))
                        << kind.name << " written in " << written.id << " read in " << read.id << " value "
                        << v;
            }
        }
    }
}

TEST(Conversion, AFreshQuantityIsZeroAndEveryInvalidIdFailsWithItsTextAndKeepsTheAmount) {
    for (const KindModel& kind : Catalogue()) {
        for (const UnitModel& unit : kind.units) EXPECT_EQ(kind.make()->Value(unit.id), 0) << kind.name;
        std::vector<int> invalid = {-32768, -1, 14, 99, 32767};
        for (int id = 0; id < 14; ++id) {
            bool valid = false;
            for (const UnitModel& unit : kind.units) valid = valid || unit.id == id;
            if (!valid) invalid.push_back(id);
        }
        auto q = kind.make();
        q->Value(0, 42);
        for (int id : invalid) {
            const std::string expected = std::to_string(id) + " is an invalid UnitID for " + kind.name;
            test::ExpectError(24111, expected, [&] { q->Value(id, 7); });
            test::ExpectError(24111, expected, [&] { q->Value(id); });
            EXPECT_EQ(q->Value(0), 42) << kind.name << " after a failed let with " << id;
        }
    }
    const auto catalogue = Catalogue();
    for (int kind = 0; kind < 11; ++kind)
        EXPECT_EQ(catalogue[kind].make()->DimensionType(), kind) << catalogue[kind].name;
}

// The named properties must select the unit of their name: each is compared with Value(id).
template <class Q>
struct Property {
    int id;
    double (Q::*get)() const;
    void (Q::*set)(double);
};

template <class Q>
void ExpectPropertiesMatchIds(const std::vector<Property<Q>>& properties) {
    for (const Property<Q>& property : properties) {
        Q byName, byId;
        (byName.*property.set)(3.75);
        byId.Value(property.id, 3.75);
        EXPECT_EQ(byName.Value(0), byId.Value(0)) << "let of unit " << property.id;
        EXPECT_EQ((byId.*property.get)(), byId.Value(property.id)) << "get of unit " << property.id;
    }
}

// DArea and DMomentOfInertia share DLength's property template, DForcePerArea DPressure's.
TEST(Conversion, NamedPropertiesSelectTheirUnits) {
    // clang-format off
    using A = DAngle; using L = DLength; using V = DVolume; using F = DForce; using P = DPressure;
    using M = DForceMoment; using PL = DForcePerLine; using D = DForceDensity;
    ExpectPropertiesMatchIds<A>({{0, &A::Radians, &A::Radians}, {1, &A::Degrees, &A::Degrees}});
    ExpectPropertiesMatchIds<L>({{0, &L::Millimetres, &L::Millimetres}, {1, &L::Centimetres, &L::Centimetres},
        {2, &L::Decimetres, &L::Decimetres}, {3, &L::Metres, &L::Metres}, {4, &L::Inches, &L::Inches},
        {5, &L::Feet, &L::Feet}});
    ExpectPropertiesMatchIds<V>({{0, &V::Millimetres, &V::Millimetres}, {1, &V::Centimetres, &V::Centimetres},
        {2, &V::Litres, &V::Litres}, {3, &V::Metres, &V::Metres}, {4, &V::Inches, &V::Inches}, {5, &V::Feet, &V::Feet}});
    ExpectPropertiesMatchIds<F>({{0, &F::KN, &F::KN}, {1, &F::daN, &F::daN}, {2, &F::KG, &F::KG},
        {3, &F::tons, &F::tons}, {4, &F::pound, &F::pound}, {5, &F::kip, &F::kip}, {6, &F::Newtons, &F::Newtons}});
    ExpectPropertiesMatchIds<P>({{0, &P::KN_mm2, &P::KN_mm2}, {1, &P::daN_cm2, &P::daN_cm2}, {2, &P::KG_m2, &P::KG_m2},
        {3, &P::ton_m2, &P::ton_m2}, {4, &P::psi, &P::psi}, {5, &P::ksi, &P::ksi}, {6, &P::N_mm2, &P::N_mm2},
        {7, &P::KN_m2, &P::KN_m2}, {8, &P::KN_cm2, &P::KN_cm2}, {9, &P::KG_cm2, &P::KG_cm2}, {10, &P::atm, &P::atm},
        {11, &P::PA, &P::PA}, {12, &P::KPa, &P::KPa}, {13, &P::MPa, &P::MPa}});
    ExpectPropertiesMatchIds<M>({{0, &M::KNmm, &M::KNmm}, {2, &M::KGm, &M::KGm}, {3, &M::tm, &M::tm},
        {4, &M::lbin, &M::lbin}, {5, &M::kipin, &M::kipin}, {7, &M::KNm, &M::KNm}});
    ExpectPropertiesMatchIds<PL>({{0, &PL::KN_mm, &PL::KN_mm}, {2, &PL::KG_m, &PL::KG_m}, {3, &PL::tons_m, &PL::tons_m},
        {4, &PL::lbin, &PL::lbin}, {5, &PL::kipin, &PL::kipin}, {7, &PL::KN_m, &PL::KN_m}});
    ExpectPropertiesMatchIds<D>({{0, &D::KN_mm3, &D::KN_mm3}, {2, &D::KG_m3, &D::KG_m3}, {3, &D::tons_m3, &D::tons_m3},
        {4, &D::pci, &D::pci}, {5, &D::kci, &D::kci}, {7, &D::KN_m3, &D::KN_m3}});
    // clang-format on
}

TEST(Conversion, CatalogueLandmarks) {
    DArea area;
    area.Inches(1);
    EXPECT_NEAR(area.Millimetres(), 645.16, 2 * 645.16 * 2.3e-16);

    DMomentOfInertia inertia;
    inertia.Metres(1);
    EXPECT_EQ(inertia.Millimetres(), 1e12);
    EXPECT_EQ(inertia.Metres(), 1);

    DForce force;
    force.kip(1);
    EXPECT_EQ(force.KN(), 4.44974115);
    EXPECT_NEAR(force.pound(), 1000, 1e-9);

    DPressure pressure;
    for (double v : kSamples) {
        pressure.KN_m2(v);
        EXPECT_EQ(pressure.atm(), pressure.KG_cm2());
    }
    DLength length;  // an overflowing conversion fails and keeps the amount
    length.Millimetres(5);
    test::ExpectError(6, "Overflow", [&] { length.Metres(1e306); });
    EXPECT_EQ(length.Millimetres(), 5);
}

// Copy goes through unit id 0, which for pressures and densities is not the storage unit.
TEST(Conversion, CopyCarriesTheAmountThroughUnitZeroAndIsIndependent) {
    DPressure pressure;
    pressure.KN_m2(0.1234567);
    auto copy = pressure.Copy();
    EXPECT_EQ(copy->KN_m2(), (0.1234567 / 1000000) * 1000000);
    pressure.KN_m2(9);
    EXPECT_EQ(copy->KN_m2(), (0.1234567 / 1000000) * 1000000);

    DForceDensity density;
    density.KN_m3(0.3);
    EXPECT_EQ(density.Copy()->KN_m3(), (0.3 / 1e9) * 1e9);

    DMomentOfInertia inertia;  // raw = 3, factor = 25.4^4; the copy holds raw = amount in mm4, factor 1
    inertia.Inches(3);
    auto inertiaCopy = inertia.Copy();
    EXPECT_EQ(inertiaCopy->Millimetres(), 416231.42559999996 * 3);
    EXPECT_EQ(inertiaCopy->Centimetres(), (1 / 10000.0) * (416231.42559999996 * 3));

    DVolume volume;
    volume.Litres(2);
    EXPECT_EQ(volume.Copy()->Centimetres(), (1 / 1000.0) * 2e6);
}

// The four ways of giving a unit: missing, a number, a numeric text, an object naming the unit.
struct ResolveCase {
    const char* what;
    UnitArg unit;
    int16_t expected;
};

TEST(UnitArg, NumbersAndTextsResolveLikeTheRuntimesInteger) {
    const ResolveCase cases[] = {
        {"missing", UnitArg(), 0},
        {"int", UnitArg(3), 3},
        {"enum", UnitArg(ft_UnitID), 5},
        {"double rounds half to even down", UnitArg(2.5), 2},
        {"double rounds half to even up", UnitArg(3.5), 4},
        {"negative double", UnitArg(-1.5), -2},
        {"smallest", UnitArg(-32768.5), -32768},
        {"text", UnitArg("3"), 3},
        {"text with blanks and decimals", UnitArg(" 4.5 "), 4},
        {"std::string", UnitArg(std::string("1")), 1},
        {"True", UnitArg(true), -1},
        {"False", UnitArg(false), 0},
        {"null object", UnitArg(std::shared_ptr<UnitSetting>()), 0},
    };
    for (const ResolveCase& c : cases) EXPECT_EQ(c.unit.Resolve(DLengthObject), c.expected) << c.what;
    EXPECT_TRUE(UnitArg().IsMissing());
    EXPECT_FALSE(UnitArg(0).IsMissing());
}

TEST(UnitArg, OutOfRangeNumbersOverflowAndNonNumericTextsMismatch) {
    test::ExpectError(6, "Overflow", "40000", [] { UnitArg(40000); });
    test::ExpectError(6, "Overflow", "32767.5 rounds to 32768", [] { UnitArg(32767.5); });
    test::ExpectError(6, "Overflow", "-32769", [] { UnitArg(-32769); });
    test::ExpectError(6, "Overflow", "unsigned 70000", [] { UnitArg(70000u); });
    test::ExpectError(6, "Overflow", "text 1e9", [] { UnitArg("1e9"); });
    test::ExpectError(6, "Overflow", "Long 3e9", [] { ToInteger32(3e9); });
    test::ExpectError(13, "Type mismatch", "abc", [] { UnitArg("abc"); });
    test::ExpectError(13, "Type mismatch", "empty text", [] { UnitArg(""); });
    test::ExpectError(13, "Type mismatch", "text with a unit", [] { UnitArg("3 m"); });
    test::ExpectError(6, "Overflow", "Long 2147483647.5 rounds to 2^31", [] { ToInteger32(2147483647.5); });
    // The largest numbers that fit are taken.
    EXPECT_EQ(ToInteger32(-2147483648.0), INT32_MIN);
    EXPECT_EQ(ToInteger32(2147483647.0), INT32_MAX);
    EXPECT_EQ(ToInteger16(32767.4), INT16_MAX);
    EXPECT_EQ(ToInteger16(-32768.5), INT16_MIN);  // half to even
}

// Answers a fixed id per kind, like a foreign object with a UnitID member.
class FixedSource : public UnitIdSource {
  public:
    int16_t UnitID(DimensionObjectType kind) const override { return kind == DForceObject ? 6 : 3; }
};

TEST(UnitArg, AnObjectNamesItsUnitForTheAskingKind) {
    auto setting = std::make_shared<UnitSetting>();
    setting->UnitID(DLengthObject, cm_UnitID);
    setting->UnitID(DForceObject, N_unitID);
    DLength length;
    DForce force;
    length.Value(setting, 12);
    force.Value(setting, 12);
    EXPECT_EQ(length.Millimetres(), 120);
    EXPECT_EQ(force.KN(), 12 / 1000.0);

    auto foreign = std::make_shared<const FixedSource>();
    EXPECT_EQ(length.Value(foreign), 120 / 1000.0);
    EXPECT_EQ(force.Value(foreign), 12);
    EXPECT_EQ(length.Value(std::shared_ptr<const UnitIdSource>()), 120);
}

// Text 3 on a length reads metres, a missing unit is id 0, a bad one fails before the let.
TEST(UnitArg, OnAQuantity) {
    DLength length;
    length.Millimetres(2500);
    EXPECT_EQ(length.Value("3"), 2.5);
    EXPECT_EQ(length.Value(), 2500);
    length.Value({}, 7);
    EXPECT_EQ(length.Millimetres(), 7);
    test::ExpectError(13, "Type mismatch", [&] { length.Value("mm", 9); });
    test::ExpectError(6, "Overflow", [&] { length.Value(1e6, 9); });
    EXPECT_EQ(length.Millimetres(), 7);
}

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
