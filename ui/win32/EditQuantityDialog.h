#pragma once

#include <windows.h>

#include <memory>

#include "ui/frmEditQuantity.h"
#include "ui/win32/Win32Controls.h"

namespace tgp::ui::win32 {

// The value editor's window: `lbDesc`, `Textbox` with the unit combo `cbUnitID` beside it, or the
// choice list `ComboBox`, and `cmdOK` (default) and `cmdCancel`. Created hidden; give the value to
// Form() (which may refuse it before anything shows), then Run() shows it modally.
class EditQuantityDialog final : public EditQuantityView {
  public:
    EditQuantityDialog();
    ~EditQuantityDialog() override;
    EditQuantityDialog(const EditQuantityDialog&) = delete;
    EditQuantityDialog& operator=(const EditQuantityDialog&) = delete;

    frmEditQuantity& Form() { return form_; }
    // Shows the dialog owned by `owner` (the active window when null) until OK or Cancel; true when
    // the user confirmed.
    bool Run(HWND owner, bool centreOnScreen = false);

    // The view.
    void Caption(const std::string& text) override;
    void Description(const std::string& text) override;
    std::string Text() const override;
    void Text(const std::string& text) override;
    void ShowText(bool withUnits) override;
    void ShowList() override;
    std::shared_ptr<ComboControl> UnitCombo() override { return unitCombo_; }
    std::shared_ptr<ComboControl> ListCombo() override { return listCombo_; }
    void Close() override { open_ = false; }

    static constexpr wchar_t kWindowClass[] = L"TgpEditQuantity";

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    bool Filter(MSG& msg);
    // Runs a user action; an error (a number that cannot be read) is shown and the dialog stays.
    template <class Action>
    void Guarded(Action&& action);

    HWND window_ = nullptr;
    HWND description_ = nullptr, textbox_ = nullptr, ok_ = nullptr, cancel_ = nullptr;
    std::shared_ptr<Win32Combo> unitCombo_, listCombo_;
    frmEditQuantity form_{*this};
    bool open_ = false;
};

}  // namespace tgp::ui::win32
