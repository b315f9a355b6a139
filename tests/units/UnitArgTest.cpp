// The four ways of giving a unit: missing, a number, a numeric text, an object naming the unit.
#include <gtest/gtest.h>

#include "support/Expectations.h"

#include <cstdint>
#include <memory>
#include <string>

#include "core/Error.h"
#include "units/DForce.h"
#include "units/DLength.h"
#include "units/RuntimeInteger.h"
#include "units/UnitArg.h"
#include "units/UnitSetting.h"

namespace tgp {
namespace {

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

}  // namespace
}  // namespace tgp
