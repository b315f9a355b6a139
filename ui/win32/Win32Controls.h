#pragma once
// What the Win32 dialogs share: UTF-8 and wide text, the system dialog font, named child
// controls, a combo box behind the ComboControl interface, and the modal loop.
#include <windows.h>

#include <functional>
#include <string>

#include "ui/ComboControl.h"

namespace tgp::ui::win32 {

std::wstring Wide(const std::string& utf8);
std::string Utf8(const std::wstring& wide);

// The font Windows uses for message boxes and dialogs (created once, never freed).
HFONT DialogFont();

// A child control with the dialog font; `name` is its control name, kept as the window property
// "ControlName" so that a test (or an accessibility tool) finds it by name.
HWND CreateNamedControl(HWND parent, const wchar_t* windowClass, const wchar_t* name, int id, DWORD style,
                        const RECT& bounds, const wchar_t* text = L"");
// The child control of the given name, or null.
HWND FindNamedControl(HWND parent, const wchar_t* name);

// A hidden top-level dialog window of the given client size, its class registered on first use
// (button-face background, arrow cursor), whose messages go to `procedure` with `self` kept as the
// window's user data. Raises 7 "Out of memory" when Windows cannot make it.
HWND CreateDialogWindow(const wchar_t* windowClass, const wchar_t* title, DWORD style, DWORD exStyle,
                        int clientWidth, int clientHeight, void* self, WNDPROC procedure);

// A drop-down list combo box. Its parent calls Selected() on CBN_SELCHANGE.
class Win32Combo final : public ComboControl {
  public:
    explicit Win32Combo(HWND combo) : combo_(combo) {}
    void Clear() override;
    void AddItem(const std::string& item) override;
    void ListIndex(int index) override;
    std::string Text() const override;
    void Text(const std::string& text) override;
    void OnSelection(SelectionHandler handler) override { handler_ = std::move(handler); }
    void Selected() {
        if (handler_) handler_();
    }
    HWND Handle() const { return combo_; }

  private:
    HWND combo_;
    SelectionHandler handler_;
};

// Runs a modal loop for `dialog` until `visible()` turns false: the owner is disabled meanwhile and
// enabled again before the owner is activated. `filter` sees every message first and returns true
// for one it handled; dialog navigation (Tab, Enter for the default button, Esc) comes next.
void RunModal(HWND dialog, HWND owner, const std::function<bool()>& visible,
              const std::function<bool(MSG&)>& filter);

// The window to own a dialog: the given one, else the thread's active window.
HWND OwnerWindow(HWND given);

// Places the dialog at the centre of the screen's work area, or of its owner.
void Centre(HWND dialog, HWND owner, bool onScreen);

}  // namespace tgp::ui::win32
