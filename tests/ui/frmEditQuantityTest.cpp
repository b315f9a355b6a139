#include "ui/frmEditQuantity.h"

#include <gtest/gtest.h>

#include <functional>

#include "FakeCombo.h"
#include "support/Expectations.h"
#include "units/Geometry_EXE.h"
#include "units/NumberText.h"

namespace tgp::ui {
namespace {

using test::FakeCombo;

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

}  // namespace
}  // namespace tgp::ui
