#pragma once

#include <array>
#include <memory>

#include "ui/UnitComboBox.h"
#include "ui/UnitSettingView.h"
#include "units/UnitSetting.h"

namespace tgp::ui {

// The rules of the unit-setting dialog over an abstract window: it edits a working copy of the
// caller's setting through eleven bound combos and writes it back, with one Modified, only on OK.
class frmUnitSetting {
  public:
    explicit frmUnitSetting(UnitSettingView& view);

    // The caller's setting (may be null): the confirmed flag clears, the working setting becomes its
    // copy (a new default one for null) and the eleven combos are bound to it.
    void UnitSetting(std::shared_ptr<tgp::UnitSetting> setting);
    // The working setting (a new default one when there is none yet).
    std::shared_ptr<tgp::UnitSetting> UnitSetting();

    // Form events.
    void Load();  // fills the preset list and starts watching the active window
    void OK();
    void Cancel();
    void Unload();
    void KeyDown(int keyCode, int shift);
    void KeyUp();
    // A typed character: false when it is discarded (while Ctrl or Alt is held).
    bool KeyPress() const { return !suppressKeys_; }
    // The timer's tick, told whether another window than the form is active.
    void TimerTick(bool anotherWindowActive);

    bool Confirmed() const { return confirmed_; }
    bool Visible() const { return visible_; }
    const UnitComboBox& Binder(DimensionObjectType kind) const { return binders_[kind]; }

  private:
    UnitSettingView& view_;
    std::shared_ptr<tgp::UnitSetting> callers_;
    std::shared_ptr<tgp::UnitSetting> working_;
    std::array<UnitComboBox, kKindCount> binders_;  // by kind
    bool confirmed_ = false;
    bool suppressKeys_ = false;
    bool visible_ = false;
};

}  // namespace tgp::ui
