#include "ui/UnitComboBox.h"

#include <gtest/gtest.h>

#include "FakeCombo.h"
#include "core/Error.h"

namespace tgp::ui {
namespace {

using test::FakeCombo;

struct Recorded {
    int16_t oldID, newID;
};

TEST(UnitComboBox, FillsTheKindsSymbolsInIdOrderAndSkipsEmptyCells) {
    struct Case {
        DimensionObjectType kind;
        std::vector<std::string> symbols;
    };
    const std::vector<Case> cases = {
        {DForceMomentObject, {"KNmm", "KGm", "ton.m", "lb.in", "kip.in", "KNm"}},
        {DLengthObject, {"mm", "cm", "dm", "m", "in", "ft"}},
    };
    for (const Case& c : cases) {
        auto combo = std::make_shared<FakeCombo>();
        combo->items = {"left over"};
        UnitComboBox binder;
        binder.Init(combo, c.kind);
        EXPECT_EQ(combo->items, c.symbols) << c.kind;
        EXPECT_EQ(combo->clears, 1);
    }
}

TEST(UnitComboBox, InitSelectsTheSettingsUnitOrTheFirstAndRaisesNoChange) {
    auto combo = std::make_shared<FakeCombo>();
    UnitComboBox binder;
    int changes = 0;
    binder.onChange([&](int16_t&, int16_t&) { ++changes; });

    binder.Init(combo, DPressureObject);
    EXPECT_EQ(binder.UnitID(), 0);
    EXPECT_EQ(combo->index, 0);

    auto setting = std::make_shared<UnitSetting>();  // pressure defaults to N/mm², id 6
    int modified = 0;
    setting->onModified([&] { ++modified; });
    binder.Init(combo, DPressureObject, setting);
    EXPECT_EQ(binder.UnitString(), "N/mm²");
    EXPECT_EQ(binder.UnitID(), 6);
    EXPECT_EQ(changes, 0) << "the box reported its filling, which must be ignored";
    EXPECT_EQ(modified, 0);
    EXPECT_EQ(binder.Combo(), combo);
    EXPECT_EQ(binder.DimensionType(), DPressureObject);
}

TEST(UnitComboBox, APickRaisesChangeAndWritesTheSetting) {
    auto combo = std::make_shared<FakeCombo>();
    auto setting = std::make_shared<UnitSetting>();
    int modified = 0;
    setting->onModified([&] { ++modified; });
    UnitComboBox binder;
    std::vector<Recorded> changes;
    binder.onChange([&](int16_t& o, int16_t& n) { changes.push_back({o, n}); });
    binder.Init(combo, DLengthObject, setting);

    combo->Pick("m");
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].oldID, 0);
    EXPECT_EQ(changes[0].newID, 3);
    EXPECT_EQ(binder.UnitID(), 3);
    EXPECT_EQ(setting->UnitID(DLengthObject), 3);
    EXPECT_EQ(modified, 1);

    combo->Pick("m");  // the same unit again: Change, but the setting does not change
    EXPECT_EQ(changes.size(), 2u);
    EXPECT_EQ(modified, 1);
}

TEST(UnitComboBox, AHandlerThatRewritesTheNewIdWins) {
    auto combo = std::make_shared<FakeCombo>();
    auto setting = std::make_shared<UnitSetting>();
    UnitComboBox binder;
    binder.onChange([](int16_t&, int16_t& n) { n = 5; });  // always feet
    int16_t seenByLater = -1;
    binder.onChange([&](int16_t&, int16_t& n) { seenByLater = n; });
    binder.Init(combo, DLengthObject, setting);
    combo->Pick("cm");
    EXPECT_EQ(seenByLater, 5) << "later handlers see the rewritten id";
    EXPECT_EQ(binder.UnitID(), 5);
    EXPECT_EQ(setting->UnitID(DLengthObject), 5);
    EXPECT_EQ(combo->Text(), "cm") << "the box keeps the user's pick";
}

TEST(UnitComboBox, SettingAnotherSettingShowsItsUnit) {
    auto combo = std::make_shared<FakeCombo>();
    UnitComboBox binder;
    binder.Init(combo, DLengthObject);
    auto metres = std::make_shared<UnitSetting>();
    metres->UnitID(DLengthObject, 3);
    binder.UnitSetting(metres);
    EXPECT_EQ(combo->Text(), "m");
    EXPECT_EQ(binder.UnitSetting(), metres);
    binder.UnitSetting(nullptr);
    EXPECT_EQ(combo->index, 0);
}

TEST(UnitComboBox, ReleasesTheEarlierBoxAndRefusesNone) {
    auto first = std::make_shared<FakeCombo>();
    auto second = std::make_shared<FakeCombo>();
    {
        UnitComboBox binder;
        binder.Init(first, DLengthObject);
        binder.Init(second, DAngleObject);
        EXPECT_FALSE(first->handler) << "the first box no longer reports to the binder";
        EXPECT_TRUE(second->handler);
        EXPECT_THROW(binder.Init(nullptr, DAngleObject), Error);
    }
    EXPECT_FALSE(second->handler) << "a destroyed binder leaves no handler behind";
}

TEST(UnitComboBox, AnUnknownTextIsUnitZero) {
    auto combo = std::make_shared<FakeCombo>();
    auto setting = std::make_shared<UnitSetting>();
    setting->UnitID(DLengthObject, 99);  // no symbol: the lookup fails
    UnitComboBox binder;
    EXPECT_THROW(binder.Init(combo, DLengthObject, setting), Error);
    binder.Init(combo, DLengthObject);
    combo->Text("furlong");
    EXPECT_EQ(binder.UnitID(), 0);
    EXPECT_EQ(binder.UnitString(), "");
}

}  // namespace
}  // namespace tgp::ui
