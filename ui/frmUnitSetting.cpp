#include "ui/frmUnitSetting.h"

namespace tgp::ui {

namespace {

constexpr int kEnterKey = 13;
constexpr int kCtrlOrAlt = 2;  // shift states from here up have Ctrl or Alt held

// The kind combos in the order they are bound.
struct BoundCombo {
    const char* name;
    DimensionObjectType kind;
};
constexpr BoundCombo kBindingOrder[] = {
    {"cbAngle", DAngleObject},
    {"cbLength", DLengthObject},
    {"cbArea", DAreaObject},
    {"cbVolume", DVolumeObject},
    {"cbMomentOfInertia", DMomentOfInertiaObject},
    {"cbForce", DForceObject},
    {"cbPressure", DPressureObject},
    {"cbForceMoment", DForceMomentObject},
    {"cbForcePerLine", DForcePerLineObject},
    {"cbForcePerArea", DForcePerareaObject},
    {"cbForceDensity", DForceDensityObject},
};

constexpr const char* kPresets[] = {"SI", "US", "KN-m", "KN-mm"};

}  // namespace

frmUnitSetting::frmUnitSetting(UnitSettingView& view) : view_(view) {}

void frmUnitSetting::UnitSetting(std::shared_ptr<tgp::UnitSetting> setting) {
    confirmed_ = false;
    callers_ = std::move(setting);
    working_ = callers_ ? callers_->Copy() : std::make_shared<tgp::UnitSetting>();
    for (const BoundCombo& c : kBindingOrder) binders_[c.kind].Init(view_.Combo(c.name), c.kind, working_);
}

std::shared_ptr<tgp::UnitSetting> frmUnitSetting::UnitSetting() {
    if (!working_) working_ = std::make_shared<tgp::UnitSetting>();
    return working_;
}

void frmUnitSetting::Load() {
    // The presets are offered and nothing reads them: choosing one changes nothing.
    const auto presets = view_.Combo("cbUnitSettings");
    presets->Clear();
    for (const char* preset : kPresets) presets->AddItem(preset);
    visible_ = true;
    view_.StartTimer();
}

void frmUnitSetting::OK() {
    suppressKeys_ = true;
    confirmed_ = true;
    if (callers_) UnitSetting()->CopyTo(*callers_);
    view_.StopTimer();
    visible_ = false;
    view_.Hide();
}

void frmUnitSetting::Cancel() {
    view_.StopTimer();
    visible_ = false;
    view_.Hide();
}

void frmUnitSetting::Unload() {
    view_.StopTimer();
    visible_ = false;
}

void frmUnitSetting::KeyDown(int keyCode, int shift) {
    if (shift >= kCtrlOrAlt) suppressKeys_ = true;
    if (keyCode == kEnterKey) OK();
}

void frmUnitSetting::KeyUp() {
    suppressKeys_ = false;
}

void frmUnitSetting::TimerTick(bool anotherWindowActive) {
    if (!anotherWindowActive) return;
    view_.StopTimer();
    Unload();
    view_.Hide();
}

}  // namespace tgp::ui
