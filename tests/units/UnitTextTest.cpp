// Unit symbols, the unit recogniser with its kept first-match results, quantities as text and
// numbers as text.

#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <memory>
#include <random>
#include <string>

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
#include "units/NumberText.h"
#include "units/UnitSetting.h"
#include "units/UnitSymbols.h"

namespace tgp {
namespace {

// Unit symbols, the unit recogniser with its kept first-match results, and the text form.
// The published symbol table: rows are unit ids 0..13, columns the kinds in DimensionObjectType order
// (Angle, Length, Area, Volume, MomentOfInertia, Force, Pressure, ForcePerArea, ForceMoment,
// ForcePerLine, ForceDensity). "" = no such unit.
const char* const kSymbols[14][11] = {
    {"rad", "mm", "mm\u00b2", "mm\u00b3", "mm4", "KN", "KN/mm\u00b2", "KN/mm\u00b2", "KNmm", "KN/mm",
     "KN/mm\u00b3"},
    {"\u00ba", "cm", "cm\u00b2", "cm\u00b3", "cm4", "daN", "daN/cm\u00b2", "daN/cm\u00b2", "", "", ""},
    {"", "dm", "dm\u00b2", "dm\u00b3", "dm4", "kG", "kG/m\u00b2", "kG/m\u00b2", "KGm", "KG/m", "KG/m\u00b3"},
    {"", "m", "m\u00b2", "m\u00b3", "m4", "ton", "ton/m\u00b2", "ton/m\u00b2", "ton.m", "ton/m",
     "ton/m\u00b3"},
    {"", "in", "in\u00b2", "in\u00b3", "in4", "lb", "psi", "psi", "lb.in", "lb/in", "pci"},
    {"", "ft", "ft\u00b2", "ft\u00b3", "ft4", "kip", "ksi", "ksi", "kip.in", "kip/in", "kci"},
    {"", "", "", "", "", "N", "N/mm\u00b2", "N/mm\u00b2", "", "", ""},
    {"", "", "", "", "", "", "KN/m\u00b2", "KN/m\u00b2", "KNm", "KN/m", "KN/m\u00b3"},
    {"", "", "", "", "", "", "KN/cm\u00b2", "KN/cm\u00b2", "", "", ""},
    {"", "", "", "", "", "", "kG/cm\u00b2", "kG/cm\u00b2", "", "", ""},
    {"", "", "", "", "", "", "atm", "atm", "", "", ""},
    {"", "", "", "", "", "", "Pa", "Pa", "", "", ""},
    {"", "", "", "", "", "", "kPa", "kPa", "", "", ""},
    {"", "", "", "", "", "", "Mpa", "Mpa", "", "", ""},
};

void ExpectNotFound(DimensionObjectType kind, const UnitArg& unit, const std::string& what) {
    test::ExpectError(2411, "GetUnitString no found", what, [&] { GetUnitString(kind, unit); });
}

TEST(UnitSymbols, EveryCellOfTheTableUnknownKindsAndASettingsUnit) {
    for (int id = 0; id < 14; ++id)
        for (int kind = 0; kind < 11; ++kind) {
            const std::string expected = kSymbols[id][kind];
            const std::string what = "kind " + std::to_string(kind) + " id " + std::to_string(id);
            if (expected.empty())
                ExpectNotFound(static_cast<DimensionObjectType>(kind), id, what);
            else
                EXPECT_EQ(GetUnitString(static_cast<DimensionObjectType>(kind), id), expected) << what;
        }
    EXPECT_EQ(GetUnitString(DAngleObject, 1), "\xC2\xBA");  // U+00BA, not the degree sign U+00B0
    ExpectNotFound(static_cast<DimensionObjectType>(11), 0, "kind 11");
    ExpectNotFound(static_cast<DimensionObjectType>(-1), 0, "kind -1");
    ExpectNotFound(DLengthObject, 14, "id 14");
    ExpectNotFound(DLengthObject, -1, "id -1");
    auto setting = std::make_shared<UnitSetting>();
    EXPECT_EQ(GetUnitString(DPressureObject, setting), "N/mm\u00b2");
    EXPECT_EQ(GetUnitString(DForceMomentObject, setting), "KNm");
    EXPECT_EQ(GetUnitString(DLengthObject, UnitArg()), "mm");
}

// The pattern drops brackets, squares and cubes but keeps the fourth; * matches any run.
TEST(UnitSymbols, PatternsAndWildcardMatching) {
    const std::pair<const char*, const char*> patterns[] = {
        {"KN/mm\u00b2", "*KN/MM*"}, {"(m\u00b3)", "*M*"}, {"mm4", "*MM4*"}, {"a2b3c", "*ABC*"}, {"", "**"}};
    for (const auto& [symbol, pattern] : patterns) EXPECT_EQ(UnitPattern(symbol), pattern) << symbol;
    struct Case {
        const char* text;
        const char* pattern;
        bool matches;
    };
    const Case cases[] = {
        {"5 KN", "*KN*", true}, {"5 KN", "*KG*", false}, {"", "**", true},         {"ABC", "A*C", true},
        {"ABC", "A*B", false},  {"AAB", "*AB", true},    {"ABABX", "*ABX*", true}, {"AB", "AB", true},
        {"ab", "*AB*", false},  {"ABC", "", false},      {"X", "*", true},         {"A*B", "A*B", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MatchesPattern(c.text, c.pattern), c.matches) << c.text << " ~ " << c.pattern;
}

TEST(UnitSymbols, RecogniserTakesTheFirstMatchInIdOrder) {
    struct Case {
        DimensionObjectType kind;
        const char* text;
        int16_t expected;
    };
    const Case cases[] = {
        {DPressureObject, "5 kPa", 11},
        {DPressureObject, "5 MPa", 11},
        {DForcePerareaObject, "1 kpa", 11},
        {DPressureObject, "5 KN/m2", 7},
        {DPressureObject, "5 kn/cm2", 8},
        {DForceObject, "NEWTONS", 3},
        {DForceObject, "5 kn", 0},
        {DAngleObject, "12 deg", -1},
        {DAngleObject, "12 \u00ba", 1},
        {DAngleObject, "1 RAD", 0},
        {DLengthObject, "2 m", 3},
        {DLengthObject, "3 in", 4},
        {DLengthObject, "7", -1},
        {DMomentOfInertiaObject, "5 m4", 3},
        {DForceMomentObject, "5 KNm", 7},
        {DForceMomentObject, "5 kip.in", 5},
        {DForceDensityObject, "5 pci", 4},
        {DAreaObject, "5 cm\u00b2", 1},
        {static_cast<DimensionObjectType>(11), "anything", 0},  // no symbols: the empty pattern "**" matches
    };
    for (const Case& c : cases)
        EXPECT_EQ(RecogniseUnit(c.text, c.kind), c.expected) << c.kind << " '" << c.text << "'";
}

TEST(QuantityText, WritesNumberAndSymbolWithOrWithoutBrackets) {
    DLength length;
    length.Millimetres(1234.5);
    EXPECT_EQ(length.ValueToString(0), "1234.5 (mm)");
    EXPECT_EQ(length.ValueToString(0, -2, true), "1234.5 mm");
    EXPECT_EQ(length.ValueToString(1, 3), "123.450 (cm)");
    DAngle angle;
    angle.Degrees(90);
    EXPECT_EQ(angle.ValueToString(1, 1, true), "90.0 \u00ba");
    auto setting = std::make_shared<UnitSetting>();
    DPressure pressure;
    pressure.N_mm2(2.5);
    EXPECT_EQ(pressure.ValueToString(setting), "2.5 (N/mm\u00b2)");
    DForceMoment moment;  // an invalid unit fails in Value first
    test::ExpectError(24111, "1 is an invalid UnitID for ForceMoment", [&] { moment.ValueToString(1); });
}

TEST(QuantityText, ReadingStoresTheNumberInTheRecognisedUnitOrInUnitZero) {
    DPressure pressure;
    pressure.ValueFromString("5 kPa");  // read as Pa, kept
    EXPECT_EQ(pressure.PA(), 5);
    pressure.ValueFromString("5 KN/m2");
    EXPECT_EQ(pressure.KN_m2(), 5);
    pressure.ValueFromString("5");  // unit id 0 is KN/mm², not the storage unit
    EXPECT_EQ(pressure.KN_m2(), 5 * 1000000.0);
    DAngle angle;
    angle.ValueFromString("12 deg");
    EXPECT_EQ(angle.Radians(), 12);
    DForce force;
    force.ValueFromString("2 NEWTONS");
    EXPECT_EQ(force.tons(), 2);
    DLength length;
    length.Millimetres(3);
    EXPECT_THROW(length.ValueFromString("mm"), Error);
    EXPECT_EQ(length.Millimetres(), 3);
}

// Written with NoBracket and read back, every unit returns its number, except kPa and MPa, which
// read as Pa.
template <class Q>
void ExpectRoundTrips(const std::vector<int>& ids, double amount) {
    for (int id : ids) {
        Q original, reread;
        original.Value(0, amount);
        for (bool noBracket : {false, true}) {
            const std::string text = original.ValueToString(id, -2, noBracket);
            reread.ValueFromString(text);
            const int readAs = (id == 12 || id == 13) ? 11 : id;
            EXPECT_EQ(reread.Value(readAs), original.Value(id)) << text;
        }
    }
}

TEST(QuantityText, EveryUnitRoundTripsThroughItsText) {
    const double amount = 0.123456789;
    ExpectRoundTrips<DAngle>({0, 1}, amount);
    ExpectRoundTrips<DLength>({0, 1, 2, 3, 4, 5}, amount);
    ExpectRoundTrips<DArea>({0, 1, 2, 3, 4, 5}, amount);
    ExpectRoundTrips<DMomentOfInertia>({0, 1, 2, 4, 5}, amount);
    ExpectRoundTrips<DForce>({0, 1, 2, 3, 4, 5, 6}, amount);
    ExpectRoundTrips<DPressure>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, amount);
    ExpectRoundTrips<DForcePerArea>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, amount);
    ExpectRoundTrips<DForceMoment>({0, 2, 3, 4, 5, 7}, amount);
    ExpectRoundTrips<DForcePerLine>({0, 2, 3, 4, 5, 7}, amount);
    ExpectRoundTrips<DForceDensity>({0, 2, 3, 4, 5, 7}, amount);
}

TEST(QuantityText, SecondMomentInMetresReadsBackThroughItsAsymmetricPair) {
    DMomentOfInertia original, reread;
    original.Millimetres(0.123456789);
    reread.ValueFromString(original.ValueToString(3));
    const double metres = original.Metres();
    EXPECT_EQ(reread.Metres(), (1e6 / 1e12) * (metres * 1e6));  // raw = v·10⁶ with factor 10⁶
}

// Arbitrary text either reads or fails with the number-text errors; it never corrupts the object.
TEST(QuantityText, ArbitraryTextReadsOrFailsCleanly) {
    std::mt19937 random(20240521);
    const std::string alphabet = "0123456789+-.eE ()*/²³ºkKmMnNpPaA\t\xC2\xB2\xFF";
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1), length(0, 12);
    DPressure pressure;
    for (int i = 0; i < 5000; ++i) {
        std::string text;
        for (std::size_t n = length(random); n > 0; --n) text += alphabet[pick(random)];
        pressure.KN_m2(1);
        try {
            pressure.ValueFromString(text);
        } catch (const Error& e) {
            EXPECT_TRUE(e.number() == 13 || e.number() == 6) << text;
            EXPECT_EQ(pressure.KN_m2(), 1) << text;
        }
    }
}

struct FormatCase {
    double value;
    int16_t digits;
    std::string expected;
};

TEST(NumberText, FormatsFixedDecimalsOrTheShortestExactText) {
    const FormatCase cases[] = {
        {1234.5, -2, "1234.5"},
        {0.1, -2, "0.1"},
        {1.0 / 3, -2, "0.3333333333333333"},
        {-1.5, -1, "-1.5"},
        {1e20, -2, "1e+20"},
        {304.8 * 304.8 * 304.8, -2, "28316846.592000004"},
        {2.5, 2, "2.50"},
        {2.345, 0, "2"},
        {-0.0, -2, "0"},
        {-0.0, 3, "0.000"},
        {-0.001, 2, "0.00"},
        {-0.006, 2, "-0.01"},
        {1e22, 1, "1" + std::string(22, '0') + ".0"},
    };
    for (const FormatCase& c : cases)
        EXPECT_EQ(FormatNumber(c.value, c.digits), c.expected) << c.value << " " << c.digits;
}

struct ReadCase {
    const char* text;
    double expected;
};

TEST(NumberText, ReadsTheNumberAtTheStartAndIgnoresTheRest) {
    const ReadCase cases[] = {
        {"12.5 mm", 12.5}, {"  -3e2kN", -300}, {"\t+.5", 0.5}, {"7", 7},  {"1,5", 1.5},
        {"5e (x)", 5},     {"0x10", 0},        {"1e-999", 0},  {"2.", 2}, {"-0.25(cm)", -0.25},
        {"-2,5e1 m", -25}, {",5", 0.5},        {"2, 3", 2},    {"2,", 2}, {"1,5e-999", 0},
    };
    for (const ReadCase& c : cases) EXPECT_EQ(ReadNumber(c.text), c.expected) << c.text;
}

TEST(NumberText, TextWithoutANumberIsATypeMismatchAndAHugeOneOverflows) {
    for (const char* text : {"", "   ", "mm 12", "-", "+-1", ".", ".e5", "inf", "nan", "(5)", ",", "1,000.5",
                             "1.000,5 mm", "1.2.3", "1,2,3", "2.5,5"}) {
        test::ExpectError(13, "Type mismatch", text, [&] { ReadNumber(text); });
    }
    test::ExpectError(6, "Overflow", [] { ReadNumber("1e999 mm"); });
    // Beyond the range the exponent counts from the first significant digit, however far behind
    // the point it stands: 1E-410 is read as zero, 1E310 overflows.
    const std::string tiny = "0." + std::string(399, '0') + "1";
    EXPECT_EQ(ReadNumber(tiny + "e-10"), 0);
    test::ExpectError(6, "Overflow", [&] { ReadNumber(tiny + "e710"); });
    EXPECT_EQ(ReadWholeNumber(" 3 "), 3);
    EXPECT_THROW(ReadWholeNumber("3 m"), Error);
}

TEST(NumberText, ShortestTextReadsBackToTheSameDouble) {
    for (double v : {0.1, 1.0 / 3, 123456789.123, 5e-324, 1.7976931348623157e308, -2.2250738585072014e-308})
        EXPECT_EQ(ReadNumber(FormatNumber(v)), v) << FormatNumber(v);
}

// A host that switched the process to a decimal comma must not change the text.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class DecimalCommaLocale : public ::testing::Test {
  protected:
    void SetUp() override {
        previous_ = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
        // Switch the C library too where the machine has such a locale.
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8"})
            if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
    void TearDown() override {
        std::locale::global(previous_);
        std::setlocale(LC_ALL, "C");
    }
    std::locale previous_;
};

TEST_F(DecimalCommaLocale, NumbersStillUseAPoint) {
    if (std::setlocale(LC_NUMERIC, nullptr) != std::string("C")) {
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");  // the C library really uses a comma
    }
    EXPECT_EQ(FormatNumber(1234.5), "1234.5");
    EXPECT_EQ(FormatNumber(1234.5, 2), "1234.50");
    EXPECT_EQ(ReadNumber("2.5 cm"), 2.5);
    DLength length;
    length.ValueFromString("2.5 cm");
    EXPECT_EQ(length.Millimetres(), 25);
    EXPECT_EQ(length.ValueToString(1), "2.5 (cm)");
    length.ValueFromString("2,5 m");  // as the host's CStr writes it: read, never cut to 2
    EXPECT_EQ(length.Millimetres(), 2500);
}

}  // namespace
}  // namespace tgp
