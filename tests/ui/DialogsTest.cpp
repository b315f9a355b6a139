// The dialogs' forms and the unit combo box, driven through test views and combo boxes.

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "core/Error.h"
#include "support/Expectations.h"
#include "ui/ComboControl.h"
#include "ui/UnitComboBox.h"
#include "ui/frmEditQuantity.h"
#include "ui/frmUnitSetting.h"
#include "units/Geometry_EXE.h"
#include "units/NumberText.h"

namespace tgp::ui {
namespace {

// A combo box that behaves like a form's drop-down list: setting ListIndex, or a Text that is one of
// its items, selects that item and reports the selection, as the host's Click does.
class FakeCombo final : public ComboControl {
  public:
    void Clear() override {
        items.clear();
        index = -1;
        ++clears;
    }
    void AddItem(const std::string& item) override { items.push_back(item); }
    void ListIndex(int i) override {
        index = i >= 0 && i < static_cast<int>(items.size()) ? i : -1;
        Report();
    }
    std::string Text() const override {
        return index >= 0 ? items[static_cast<std::size_t>(index)] : std::string();
    }
    void Text(const std::string& text) override {
        index = -1;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (items[i] == text) index = static_cast<int>(i);
        }
        Report();
    }
    void OnSelection(SelectionHandler h) override { handler = std::move(h); }

    // The user picks an entry.
    void Pick(const std::string& text) { Text(text); }

    std::vector<std::string> items;
    int index = -1;
    int clears = 0;
    SelectionHandler handler;

  private:
    void Report() {
        if (handler) handler();
    }
};

class FakeEditView final : public EditQuantityView {
  public:
    void Caption(const std::string& t) override { caption = t; }
    void Description(const std::string& t) override { description = t; }
    std::string Text() const override { return text; }
    void Text(const std::string& t) override { text = t; }
    void ShowText(bool withUnits) override {
        listShown = false;
        unitsShown = withUnits;
    }
    void ShowList() override {
        listShown = true;
        unitsShown = false;
    }
    std::shared_ptr<ComboControl> UnitCombo() override { return units; }
    std::shared_ptr<ComboControl> ListCombo() override { return list; }
    void Close() override { ++closes; }

    std::string caption, description, text;
    bool listShown = false, unitsShown = false;
    int closes = 0;
    std::shared_ptr<FakeCombo> units = std::make_shared<FakeCombo>();
    std::shared_ptr<FakeCombo> list = std::make_shared<FakeCombo>();
};

EditedValue QuantityValue(const std::string& typeName, std::shared_ptr<Quantity> q) {
    return {typeName, q};
}

// Every quantity kind: shown in a chosen unit, switched to another, confirmed in it.
TEST(frmEditQuantity, EveryQuantityKindConvertsTheShownNumberAndNeverTheAmount) {
    struct Case {
        std::string typeName;
        std::function<std::shared_ptr<Quantity>()> make;  // an amount of 1000 in unit 0
        int16_t shownUnit;
        std::string otherUnit;
        std::string caption;
    };
    const std::vector<Case> cases = {
        {"DAngle", [] { return Geometry_EXE::GetDAngle(1000); }, 1, "rad", "Edit Value as Angle"},
        {"DLength", [] { return Geometry_EXE::GetDLength(1000); }, 3, "mm", "Edit Value as Length"},
        {"DArea", [] { return Geometry_EXE::GetDArea(1000); }, 1, "mm²", "Edit Value as Area"},
        {"DVolume", [] { return Geometry_EXE::GetDVolume(1000); }, 1, "mm³", "Edit Value as Volume"},
        {"DMomentOfInertia", [] { return Geometry_EXE::GetDMomentOfInertia(1000); }, 1, "mm4",
         "Edit Value as Moment of inertia"},
        {"DForce", [] { return Geometry_EXE::GetDForce(1000); }, 1, "KN", "Edit Value as Force"},
        {"DPressure", [] { return Geometry_EXE::GetDPressure(1000); }, 6, "KN/mm²", "Edit Value as Pressure"},
        {"DForcePerArea", [] { return Geometry_EXE::GetDForcePerArea(1000); }, 7, "KN/mm²",
         "Edit Value as Force per area"},
        {"DForceMoment", [] { return Geometry_EXE::GetDForceMoment(1000); }, 5, "KNmm",
         "Edit Value as Force moment"},
        {"DForcePerLine", [] { return Geometry_EXE::GetDForcePerLine(1000); }, 7, "KN/mm",
         "Edit Value as Force per line"},
        {"DForceDensity", [] { return Geometry_EXE::GetDForceDensity(1000); }, 7, "KN/mm³",
         "Edit Value as Force density"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typeName);
        FakeEditView view;
        frmEditQuantity form(view);
        const auto q = c.make();
        form.EditQuantity(QuantityValue(c.typeName, q), c.shownUnit);
        EXPECT_EQ(view.caption, c.caption);
        EXPECT_TRUE(view.unitsShown);
        EXPECT_EQ(form.UnitID(), c.shownUnit);
        const double shown = ReadNumber(view.text);
        EXPECT_DOUBLE_EQ(shown, q->Value(c.shownUnit));

        view.units->Pick(c.otherUnit);  // back to unit 0
        EXPECT_EQ(form.UnitID(), 0);
        EXPECT_DOUBLE_EQ(ReadNumber(view.text), 1000);
        EXPECT_DOUBLE_EQ(q->Value(0), 1000) << "a unit change keeps the amount";

        view.text = "250";
        form.OK();
        EXPECT_TRUE(form.Confirmed());
        EXPECT_EQ(view.closes, 1);
        EXPECT_DOUBLE_EQ(q->Value(0), 250) << "confirmed in the unit chosen in the dialog";
    }
}

TEST(frmEditQuantity, ALengthOf1000mmShownInMetresReads1) {
    FakeEditView view;
    frmEditQuantity form(view);
    const auto length = Geometry_EXE::GetDLength(1000);
    auto metres = std::make_shared<UnitSetting>();
    metres->UnitID(DLengthObject, 3);
    form.EditQuantity(QuantityValue("DLength", length), metres);
    EXPECT_EQ(view.text, "1");
    EXPECT_EQ(view.units->Text(), "m");
    view.units->Pick("mm");
    EXPECT_EQ(view.text, "1000");
    EXPECT_EQ(metres->UnitID(DLengthObject), 3) << "the caller's setting only chose the first unit";
}

TEST(frmEditQuantity, CancelLeavesTheQuantityAsItWasAfterUnitChanges) {
    FakeEditView view;
    frmEditQuantity form(view);
    const auto length = Geometry_EXE::GetDLength(1000);
    form.EditQuantity(QuantityValue("DLength", length), 3);
    view.text = "7";
    view.units->Pick("cm");  // writes 7 m into the object to show 700 cm
    EXPECT_EQ(view.text, "700");
    form.Cancel();
    EXPECT_FALSE(form.Confirmed());
    EXPECT_DOUBLE_EQ(length->Value(0), 1000);
}

TEST(frmEditQuantity, PlainValuesAreShownAndStoredInTheirTypeAndSpacesOnlyInTexts) {
    struct Case {
        EditedValue value;
        std::string shown, typed;
        EditedValue::Content stored;
    };
    const std::vector<Case> cases = {
        {{"String", std::string("a b")}, "a b", "c d", std::string("c d")},
        {{"Double", 2.5}, "2.5", "-1.25e2", -125.0},
        {{"Integer", int16_t{7}}, "7", "12", int16_t{12}},
        {{"Integer", int16_t{7}}, "7", "2.5", int16_t{2}},  // rounded half to even, as the runtime does
    };
    for (const Case& c : cases) {
        FakeEditView view;
        frmEditQuantity form(view);
        form.EditQuantity(c.value);
        EXPECT_EQ(view.caption, "Edit Value as " + c.value.typeName);
        EXPECT_EQ(view.text, c.shown);
        EXPECT_FALSE(view.unitsShown);
        view.text = c.typed;
        EXPECT_FALSE(form.KeyPress(13));  // Enter confirms
        EXPECT_TRUE(form.Confirmed());
        EXPECT_EQ(form.Value().content, c.stored) << c.typed;
    }
    FakeEditView view;  // a space is refused unless the value is a text
    frmEditQuantity form(view);
    form.EditQuantity({"Double", 1.0});
    EXPECT_FALSE(form.KeyPress(32));
    EXPECT_TRUE(form.KeyPress('5'));
    form.EditQuantity({"String", std::string("x")});
    EXPECT_TRUE(form.KeyPress(32));
}

TEST(frmEditQuantity, UnreadableNumbersAndUnsupportedTypesFail) {
    FakeEditView view;
    frmEditQuantity form(view);
    form.EditQuantity({"Double", 1.0});
    view.text = "abc";
    EXPECT_THROW(form.OK(), Error);
    EXPECT_FALSE(form.Confirmed());
    form.EditQuantity({"Integer", int16_t{1}});
    view.text = "40000";
    EXPECT_THROW(form.OK(), Error);
    for (const EditedValue& value : std::vector<EditedValue>{{"Long", 5.0}, {"Empty", {}}, {"DLength", {}}}) {
        FakeEditView other;  // refused before anything shows
        frmEditQuantity refusing(other);
        tgp::test::ExpectError(2411, "Invalid datatype", value.typeName,
                               [&] { refusing.EditQuantity(value); });
        EXPECT_EQ(other.caption, "") << value.typeName;
    }
}

TEST(frmEditQuantity, ABooleanIsChosenFromTrueAndFalse) {
    for (bool initial : {true, false}) {
        FakeEditView view;
        frmEditQuantity form(view);
        form.EditQuantity({"Boolean", initial});
        EXPECT_TRUE(view.listShown);
        EXPECT_EQ(view.list->items, (std::vector<std::string>{"True", "False"}));
        EXPECT_EQ(view.list->Text(), initial ? "True" : "False");
        view.list->Pick(initial ? "False" : "True");
        form.OK();
        EXPECT_EQ(form.Value().content, EditedValue::Content(!initial));
    }
}

TEST(frmEditQuantity, EnumerationsChooseTheCurrentPieceOrTheFirst) {
    struct Case {
        EditedValue value;
        std::string list;
        int chosen;
    };
    const std::vector<Case> cases = {
        {{"String", std::string("B")}, "A,B,C", 1}, {{"String", std::string("Z")}, "A,B,C", 0},
        {{"Double", 2.5}, "1,2.5,2.5", 1},          {{"String", std::string("")}, "A,,C", 1},
        {{"String", std::string("A")}, "A", 0},
    };
    for (const Case& c : cases) {
        FakeEditView view;
        frmEditQuantity form(view);
        form.EditEnum(c.value, c.list, "Pick", "");
        EXPECT_EQ(view.list->index, c.chosen) << c.list;
        EXPECT_EQ(view.description, "Select Value from the List");
        EXPECT_EQ(view.caption, "Pick");
        view.list->ListIndex(static_cast<int>(view.list->items.size()) - 1);
        form.OK();
        EXPECT_EQ(form.Value().content, EditedValue::Content(view.list->items.back()));
    }
}

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
