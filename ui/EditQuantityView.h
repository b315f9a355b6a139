#pragma once

#include <memory>
#include <string>

#include "ui/ComboControl.h"

namespace tgp::ui {

// What the value editor needs of its window: the caption, the description label `lbDesc`, the value
// text `Textbox`, the unit combo `cbUnitID`, the choice list `ComboBox`, and closing.
class EditQuantityView {
  public:
    virtual ~EditQuantityView() = default;
    virtual void Caption(const std::string& text) = 0;
    virtual void Description(const std::string& text) = 0;
    virtual std::string Text() const = 0;
    virtual void Text(const std::string& text) = 0;
    // Which of the text box (with the unit combo when `withUnits`) and the choice list is shown.
    virtual void ShowText(bool withUnits) = 0;
    virtual void ShowList() = 0;
    virtual std::shared_ptr<ComboControl> UnitCombo() = 0;
    virtual std::shared_ptr<ComboControl> ListCombo() = 0;
    virtual void Close() = 0;
};

}  // namespace tgp::ui
