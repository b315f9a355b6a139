#pragma once

#include <memory>
#include <string>

#include "ui/ComboControl.h"

namespace tgp::ui {

// The unit-setting dialog's controls as its rules use them. The kind combos are named by their
// control names ("cbAngle", "cbLength", ..., "cbForceDensity"); the preset list is "cbUnitSettings".
class UnitSettingView {
  public:
    virtual ~UnitSettingView() = default;
    virtual std::shared_ptr<ComboControl> Combo(const std::string& name) = 0;
    virtual void StartTimer() = 0;
    virtual void StopTimer() = 0;
    virtual void Hide() = 0;
};

}  // namespace tgp::ui
