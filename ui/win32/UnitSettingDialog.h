#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>

#include "ui/frmUnitSetting.h"
#include "ui/win32/Win32Controls.h"

namespace tgp::ui::win32 {

// The borderless unit-setting window: a header (`pbHeader` with `Label1`, both drag the window),
// one labelled combo per quantity kind, the preset list `cbUnitSettings`, `cmdOK`, `cmdCancel`, the
// hidden symbol table `list_Units` and a timer that closes the window when another one is activated.
class UnitSettingDialog final : public UnitSettingView {
  public:
    UnitSettingDialog();
    ~UnitSettingDialog() override;
    UnitSettingDialog(const UnitSettingDialog&) = delete;
    UnitSettingDialog& operator=(const UnitSettingDialog&) = delete;

    frmUnitSetting& Form() { return form_; }
    // Shows the dialog (modal: the owner is disabled meanwhile) and returns when it is hidden;
    // true when the user confirmed.
    bool Run(HWND owner, bool centreOnScreen);
    // Shows the dialog without waiting: the host's message loop serves it until it is hidden.
    void Show(HWND owner, bool centreOnScreen);

    // The view.
    std::shared_ptr<ComboControl> Combo(const std::string& name) override;
    void StartTimer() override;
    void StopTimer() override;
    void Hide() override { ShowWindow(window_, SW_HIDE); }

    static constexpr wchar_t kWindowClass[] = L"TgpUnitSetting";

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    bool Filter(MSG& msg);
    void Guarded(const std::function<void()>& action);

    HWND window_ = nullptr;
    HWND header_ = nullptr, label1_ = nullptr;
    HBRUSH headerBrush_ = nullptr;
    std::map<std::string, std::shared_ptr<Win32Combo>> combos_;
    std::map<int, std::shared_ptr<Win32Combo>> combosById_;
    frmUnitSetting form_{*this};
};

}  // namespace tgp::ui::win32
