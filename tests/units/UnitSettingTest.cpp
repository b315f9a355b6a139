#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/Expectations.h"
#include "units/UnitSetting.h"

namespace tgp {
namespace {

class UnitSettingEvents : public ::testing::Test {
  protected:
    void SetUp() override {
        setting = std::make_shared<UnitSetting>();
        setting->onModified([this] { ++events; });
    }
    std::shared_ptr<UnitSetting> setting;
    int events = 0;
};

TEST(UnitSetting, Defaults) {
    const int expected[11] = {0, 0, 0, 0, 0, 0, 6, 7, 7, 7, 7};  // by DimensionObjectType
    UnitSetting setting;
    for (int kind = 0; kind < 11; ++kind)
        EXPECT_EQ(setting.UnitID(static_cast<DimensionObjectType>(kind)), expected[kind]) << kind;
    EXPECT_EQ(setting.UnitString(DPressureObject), "N/mm\u00b2");
    EXPECT_FALSE(setting.EventsFrozen());
}

TEST(UnitSetting, UnitIDsUseTheStorageOrder) {
    UnitSetting setting;
    for (int kind = 0; kind < 11; ++kind)
        setting.UnitID(static_cast<DimensionObjectType>(kind), static_cast<int16_t>(100 + kind));
    // Angle, Length, Area, Volume, MomentOfInertia, Force, Pressure, ForceMoment, ForcePerLine, ForcePerArea,
    // ForceDensity
    const std::vector<int16_t> expected = {100, 101, 102, 103, 104, 105, 106, 108, 109, 107, 110};
    EXPECT_EQ(setting.UnitIDs(), expected);

    const std::vector<int32_t> given = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    setting.UnitIDs(given);
    EXPECT_EQ(setting.UnitID(DForcePerareaObject), 10);
    EXPECT_EQ(setting.UnitID(DForceMomentObject), 8);
    EXPECT_EQ(setting.UnitID(DForceDensityObject), 11);
}

TEST(UnitSetting, ShortArraysLargeIdsUnknownKindsAndMissingSymbols) {
    UnitSetting setting;
    test::ExpectError(9, "Subscript out of range", [&] { setting.UnitIDs(std::vector<int32_t>{1, 2}); });
    EXPECT_EQ(setting.UnitID(DLengthObject), 2);  // what was there is stored
    EXPECT_EQ(setting.UnitID(DAreaObject), 0);
    setting.UnitIDs(std::vector<int32_t>{0, 40000, 0, 0, 0, 0, 0, 0, 0, 0, 0});  // overflows on reading
    test::ExpectError(6, "Overflow", [&] { setting.UnitID(DLengthObject); });
    test::ExpectError(6, "Overflow", [&] { setting.UnitIDs(); });
    setting.UnitID(static_cast<DimensionObjectType>(11), 5);  // an unknown kind is ignored and reads 0
    EXPECT_EQ(setting.UnitID(static_cast<DimensionObjectType>(11)), 0);
    EXPECT_EQ(setting.UnitID(static_cast<DimensionObjectType>(-1)), 0);
    setting.UnitID(DForceMomentObject, 1);  // an id without a symbol
    test::ExpectError(2411, "GetUnitString no found", [&] { setting.UnitString(DForceMomentObject); });
}

TEST_F(UnitSettingEvents, OneEventPerChangedLetNoneForTheSameValueOrAnUnknownKind) {
    setting->UnitID(DLengthObject, 3);
    setting->UnitID(DLengthObject, 3);
    setting->UnitID(DPressureObject, 6);  // its default
    setting->UnitID(static_cast<DimensionObjectType>(12), 1);
    EXPECT_EQ(events, 1);
    setting->UnitID(DForceObject, 2);
    EXPECT_EQ(events, 2);
}

TEST_F(UnitSettingEvents, NoneWhileFrozenAndOneOnEveryUnfreeze) {
    setting->FreezeEvents(true);
    setting->UnitID(DLengthObject, 3);
    setting->UnitID(DAreaObject, 3);
    EXPECT_EQ(events, 0);
    EXPECT_EQ(setting->UnitID(DAreaObject), 3);
    setting->FreezeEvents(false);
    EXPECT_EQ(events, 1);
    setting->FreezeEvents(false);  // never frozen since: still one event
    EXPECT_EQ(events, 2);
    setting->FreezeEvents(true);
    setting->FreezeEvents(true);
    EXPECT_EQ(events, 2);
    setting->FreezeEvents(false);
    setting->UnitIDs(std::vector<int32_t>(11, 1));  // the array let raises nothing
    EXPECT_EQ(events, 3);
}

TEST_F(UnitSettingEvents, CopyToRaisesExactlyOneOnTheTarget) {
    UnitSetting source;
    source.UnitID(DLengthObject, 5);
    source.UnitID(DForceObject, 6);
    int sourceEvents = 0;
    source.onModified([&] { ++sourceEvents; });
    source.CopyTo(*setting);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(sourceEvents, 0);
    EXPECT_EQ(setting->UnitIDs(), source.UnitIDs());
    EXPECT_FALSE(setting->EventsFrozen());
    source.CopyTo(*setting);  // nothing changed: the unfreeze still raises
    EXPECT_EQ(events, 2);
}

TEST_F(UnitSettingEvents, CopyIsIndependentAndSilent) {
    setting->UnitID(DAngleObject, 1);
    const int before = events;
    auto copy = setting->Copy();
    EXPECT_EQ(events, before);
    EXPECT_EQ(copy->UnitIDs(), setting->UnitIDs());
    copy->UnitID(DAngleObject, 0);
    EXPECT_EQ(setting->UnitID(DAngleObject), 1);
    EXPECT_EQ(events, before);
}

TEST_F(UnitSettingEvents, HandlersCanBeDisconnectedEvenFromInsideTheEvent) {
    UnitSetting::ConnectionId self = 0;
    int once = 0;
    self = setting->onModified([&] {
        ++once;
        setting->disconnectModified(self);
    });
    setting->FreezeEvents(false);
    setting->FreezeEvents(false);
    EXPECT_EQ(once, 1);
    EXPECT_EQ(events, 2);
}

}  // namespace
}  // namespace tgp
