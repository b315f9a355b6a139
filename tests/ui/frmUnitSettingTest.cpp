#include "ui/frmUnitSetting.h"

#include <gtest/gtest.h>

#include <map>

#include "FakeCombo.h"

namespace tgp::ui {
namespace {

using test::FakeCombo;

class FakeSettingView final : public UnitSettingView {
  public:
    std::shared_ptr<ComboControl> Combo(const std::string& name) override {
        order.push_back(name);
        auto& combo = combos[name];
        if (!combo) combo = std::make_shared<FakeCombo>();
        return combo;
    }
    void StartTimer() override { timerRunning = true; }
    void StopTimer() override { timerRunning = false; }
    void Hide() override { ++hides; }

    std::map<std::string, std::shared_ptr<FakeCombo>> combos;
    std::vector<std::string> order;
    bool timerRunning = false;
    int hides = 0;
};

struct Opened {
    FakeSettingView view;
    frmUnitSetting form{view};
    std::shared_ptr<UnitSetting> callers = std::make_shared<UnitSetting>();
    int modified = 0;
    Opened() {
        callers->onModified([this] { ++modified; });
        form.UnitSetting(callers);
        form.Load();
    }
};

TEST(frmUnitSetting, BindsTheElevenCombosInThePublishedOrder) {
    Opened o;
    const std::vector<std::string> expected = {"cbAngle",        "cbLength",          "cbArea",
                                               "cbVolume",       "cbMomentOfInertia", "cbForce",
                                               "cbPressure",     "cbForceMoment",     "cbForcePerLine",
                                               "cbForcePerArea", "cbForceDensity",    "cbUnitSettings"};
    EXPECT_EQ(o.view.order, expected);
    EXPECT_EQ(o.view.combos["cbUnitSettings"]->items,
              (std::vector<std::string>{"SI", "US", "KN-m", "KN-mm"}));
    EXPECT_TRUE(o.view.timerRunning);
}

TEST(frmUnitSetting, OKAfterThreeChangesRaisesOneModified) {
    Opened o;
    o.view.combos["cbLength"]->Pick("m");
    o.view.combos["cbForce"]->Pick("N");
    o.view.combos["cbAngle"]->Pick("º");
    EXPECT_EQ(o.modified, 0) << "the combos change the working copy only";
    EXPECT_EQ(o.callers->UnitID(DLengthObject), 0);
    o.form.OK();
    EXPECT_EQ(o.modified, 1);
    EXPECT_TRUE(o.form.Confirmed());
    EXPECT_EQ(o.callers->UnitID(DLengthObject), 3);
    EXPECT_EQ(o.callers->UnitString(DForceObject), "N");
    EXPECT_EQ(o.callers->UnitID(DAngleObject), 1);
    EXPECT_FALSE(o.view.timerRunning);
    EXPECT_EQ(o.view.hides, 1);
}

TEST(frmUnitSetting, CancelLeavesTheCallersSettingAndRaisesNothing) {
    Opened o;
    o.view.combos["cbLength"]->Pick("ft");
    o.view.combos["cbPressure"]->Pick("KN/m²");
    o.form.Cancel();
    EXPECT_FALSE(o.form.Confirmed());
    EXPECT_EQ(o.modified, 0);
    EXPECT_EQ(o.callers->UnitID(DLengthObject), 0);
    EXPECT_FALSE(o.view.timerRunning);
}

TEST(frmUnitSetting, ThePresetListChangesNothing) {
    Opened o;
    o.view.combos["cbUnitSettings"]->Pick("US");
    o.form.OK();
    EXPECT_EQ(o.callers->UnitIDs(), UnitSetting().UnitIDs());
}

TEST(frmUnitSetting, NoSettingShowsTheDefaultsOfANewOne) {
    FakeSettingView view;
    frmUnitSetting form(view);
    form.UnitSetting(nullptr);
    EXPECT_EQ(view.combos["cbPressure"]->Text(), "N/mm²");
    EXPECT_EQ(view.combos["cbForceMoment"]->Text(), "KNm");
    for (DimensionObjectType kind :
         {DAngleObject, DLengthObject, DAreaObject, DVolumeObject, DMomentOfInertiaObject, DForceObject})
        EXPECT_EQ(form.Binder(kind).UnitID(), 0) << kind;
    form.OK();  // nothing to write back to
    EXPECT_TRUE(form.Confirmed());
    EXPECT_NE(form.UnitSetting(), nullptr);
}

TEST(frmUnitSetting, EnterConfirmsEvenWithCtrlHeldAndCtrlSuppressesTyping) {
    struct Case {
        int shift;
        bool typingAllowed;
    };
    for (const Case& c : {Case{0, true}, Case{1, true}, Case{2, false}, Case{4, false}}) {
        Opened o;
        o.form.KeyDown('A', c.shift);
        EXPECT_EQ(o.form.KeyPress(), c.typingAllowed) << c.shift;
        o.form.KeyUp();
        EXPECT_TRUE(o.form.KeyPress());
        o.view.combos["cbLength"]->Pick("cm");
        o.form.KeyDown(13, c.shift);
        EXPECT_TRUE(o.form.Confirmed()) << c.shift;
        EXPECT_EQ(o.modified, 1);
        EXPECT_FALSE(o.form.KeyPress()) << "OK suppresses the Enter's character";
    }
}

TEST(frmUnitSetting, TheTimerClosesTheFormWhenAnotherWindowIsActive) {
    Opened o;
    o.form.TimerTick(false);
    EXPECT_TRUE(o.form.Visible());
    EXPECT_TRUE(o.view.timerRunning);
    o.form.TimerTick(true);
    EXPECT_FALSE(o.form.Visible());
    EXPECT_FALSE(o.view.timerRunning);
    EXPECT_FALSE(o.form.Confirmed());
    EXPECT_EQ(o.modified, 0);
}

TEST(frmUnitSetting, ReopeningClearsTheConfirmedFlagAndCopiesAgain) {
    Opened o;
    o.form.OK();
    o.callers->UnitID(DLengthObject, 5);
    o.form.UnitSetting(o.callers);
    EXPECT_FALSE(o.form.Confirmed());
    EXPECT_EQ(o.view.combos["cbLength"]->Text(), "ft");
    EXPECT_NE(o.form.UnitSetting(), o.callers) << "the form edits a copy";
}

}  // namespace
}  // namespace tgp::ui
