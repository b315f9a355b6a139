#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "ui/EditQuantityView.h"
#include "ui/UnitComboBox.h"
#include "units/Quantity.h"
#include "units/UnitArg.h"

namespace tgp::ui {

// The value being edited: a text, an Integer, a Double, a Boolean or a quantity object (held by
// reference: confirming writes into the caller's object), with the runtime type name it came with.
struct EditedValue {
    using Content =
        std::variant<std::monostate, std::string, int16_t, double, bool, std::shared_ptr<Quantity>>;
    std::string typeName;
    Content content;
};

// The rules of the value editor, over an abstract window: how each type is shown, the unit
// combo's conversions, OK and Enter, the refused space, and choosing from a list.
class frmEditQuantity {
  public:
    explicit frmEditQuantity(EditQuantityView& view);

    // Shows the value. A quantity's unit combo starts on `unit` resolved for its kind (a unit id or
    // a UnitSetting; missing: the kind's unit 0). Any other type than the supported ones raises 2411
    // "Invalid datatype" before anything is shown. Title and description replace the defaults
    // when not empty.
    void EditQuantity(EditedValue value, const UnitArg& unit = {}, const std::string& title = {},
                      const std::string& description = {});
    // Shows the pieces of the comma-separated list, the current value (or the first piece) chosen.
    void EditEnum(EditedValue value, const std::string& list, const std::string& title = {},
                  const std::string& description = {});

    // The user's actions.
    void OK();
    void Cancel();
    // A key typed in the text box (its character code): Enter confirms; returns false when the key
    // is refused (a space in anything but a text).
    bool KeyPress(int keyAscii);

    bool Confirmed() const { return confirmed_; }
    const EditedValue& Value() const { return value_; }
    // The unit chosen in the dialog (a quantity's), 0 otherwise.
    int16_t UnitID() const { return units_.UnitID(); }

  private:
    enum class Mode { Text, Quantity, List };

    Quantity& EditedQuantity() const;
    void ConvertShownNumber(int16_t oldUnitID, int16_t newUnitID);
    void ShowChoices(const std::string& list, const std::string& current);

    EditQuantityView& view_;
    EditedValue value_;
    Mode mode_ = Mode::Text;
    UnitComboBox units_;
    double originalAmount_ = 0;  // a quantity's amount in its unit 0, restored on Cancel
    bool confirmed_ = false;
};

// Raises 2411 "Invalid datatype" unless EditQuantity can edit the value (a String, Integer, Double,
// Boolean or quantity object): callers check before they make a window.
void RequireEditableQuantity(const EditedValue& value);

// "Length" for "DLength", "Moment of inertia" for "DMomentOfInertia": the caption's form of a
// quantity type name.
std::string DisplayTypeName(DimensionObjectType kind);

}  // namespace tgp::ui
