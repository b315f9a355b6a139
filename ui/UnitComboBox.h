#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/ComboControl.h"
#include "units/UnitIds.h"
#include "units/UnitSetting.h"

namespace tgp::ui {

// Binds a combo box to one quantity kind: fills it with the kind's unit symbols, keeps the chosen
// unit id, writes a pick into an optional UnitSetting and raises Change(oldUnitID, newUnitID) with
// both ids by reference, so that a handler may rewrite the new one.
class UnitComboBox {
  public:
    using ChangeHandler = std::function<void(int16_t& oldUnitID, int16_t& newUnitID)>;
    using ConnectionId = std::size_t;

    UnitComboBox() = default;
    UnitComboBox(const UnitComboBox&) = delete;
    UnitComboBox& operator=(const UnitComboBox&) = delete;
    ~UnitComboBox();

    // Binds the box (releasing any earlier one), fills it and selects the setting's unit (or the
    // first entry without a setting). The box's selection reports are ignored while it fills.
    void Init(std::shared_ptr<ComboControl> Combo, DimensionObjectType DType,
              std::shared_ptr<tgp::UnitSetting> UnitS = nullptr);

    const std::shared_ptr<ComboControl>& Combo() const { return combo_; }
    DimensionObjectType DimensionType() const { return kind_; }
    const std::shared_ptr<tgp::UnitSetting>& UnitSetting() const { return setting_; }
    // Shows the new setting's unit in the box (the first entry for none); the stored id follows only
    // when the box reports the selection.
    void UnitSetting(std::shared_ptr<tgp::UnitSetting> UnitS);
    std::string UnitString() const;
    int16_t UnitID() const { return unitID_; }

    // The box's selection event: the new id from the box's text, Change, then the id (as the
    // handlers left it) is stored and written into the bound setting.
    void SelectionChanged();

    ConnectionId onChange(ChangeHandler handler);
    void disconnectChange(ConnectionId id);

  private:
    void Release();
    int16_t UnitIdFromBox() const;

    std::shared_ptr<ComboControl> combo_;
    DimensionObjectType kind_ = DAngleObject;
    std::shared_ptr<tgp::UnitSetting> setting_;
    int16_t unitID_ = 0;
    bool filling_ = false;
    std::vector<std::pair<ConnectionId, ChangeHandler>> handlers_;
    ConnectionId nextConnection_ = 1;
};

}  // namespace tgp::ui
