#include "ui/win32/EditQuantityDialog.h"

#include <vector>

#include "core/Error.h"

namespace tgp::ui::win32 {

namespace {

enum ControlId { kDescription = 100, kTextbox, kUnitCombo, kListCombo };

constexpr int kClientWidth = 336, kClientHeight = 118;

}  // namespace

EditQuantityDialog::EditQuantityDialog() {
    window_ = CreateDialogWindow(kWindowClass, L"Edit Value", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                                 WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, kClientWidth, kClientHeight, this,
                                 &WindowProc);

    description_ = CreateNamedControl(window_, L"STATIC", L"lbDesc", kDescription, SS_LEFT | SS_NOPREFIX,
                                      {12, 12, 324, 30});
    textbox_ = CreateNamedControl(window_, L"EDIT", L"Textbox", kTextbox,
                                  WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, {12, 36, 224, 60});
    HWND units = CreateNamedControl(window_, L"COMBOBOX", L"cbUnitID", kUnitCombo,
                                    WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, {232 + 8, 36, 324, 260});
    HWND list = CreateNamedControl(window_, L"COMBOBOX", L"ComboBox", kListCombo,
                                   WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, {12, 36, 324, 260});
    ok_ = CreateNamedControl(window_, L"BUTTON", L"cmdOK", IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON,
                             {148, 78, 232, 106}, L"OK");
    cancel_ = CreateNamedControl(window_, L"BUTTON", L"cmdCancel", IDCANCEL, WS_TABSTOP | BS_PUSHBUTTON,
                                 {240, 78, 324, 106}, L"Cancel");
    unitCombo_ = std::make_shared<Win32Combo>(units);
    listCombo_ = std::make_shared<Win32Combo>(list);
    ShowText(false);
}

EditQuantityDialog::~EditQuantityDialog() {
    if (window_) DestroyWindow(window_);
}

bool EditQuantityDialog::Run(HWND owner, bool centreOnScreen) {
    owner = OwnerWindow(owner);
    if (owner) SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
    Centre(window_, owner, centreOnScreen);
    open_ = true;
    HWND first = IsWindowVisible(textbox_) ? textbox_ : listCombo_->Handle();
    ShowWindow(window_, SW_SHOW);
    SetFocus(first);
    if (first == textbox_) SendMessageW(textbox_, EM_SETSEL, 0, -1);
    RunModal(
        window_, owner, [this] { return open_; }, [this](MSG& msg) { return Filter(msg); });
    return form_.Confirmed();
}

bool EditQuantityDialog::Filter(MSG& msg) {
    // Typed characters in the text box go through the form's rules (Enter confirms, a space may be
    // refused) before the edit control sees them.
    if (msg.hwnd == textbox_ && msg.message == WM_CHAR) {
        bool accepted = true;
        Guarded([&] { accepted = form_.KeyPress(static_cast<int>(msg.wParam)); });
        return !accepted;
    }
    if (msg.hwnd == textbox_ && msg.message == WM_KEYDOWN && msg.wParam == VK_RETURN) {
        Guarded([&] { form_.KeyPress(13); });
        return true;
    }
    return false;
}

template <class Action>
void EditQuantityDialog::Guarded(Action&& action) {
    try {
        action();
    } catch (const Error& e) {
        MessageBoxW(window_, Wide(e.description()).c_str(), L"Edit Value", MB_OK | MB_ICONEXCLAMATION);
    } catch (const std::exception&) {
        MessageBoxW(window_, L"The value cannot be taken.", L"Edit Value", MB_OK | MB_ICONEXCLAMATION);
    }
}

LRESULT CALLBACK EditQuantityDialog::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<EditQuantityDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self) return DefWindowProcW(window, message, wParam, lParam);
    return self->Handle(message, wParam, lParam);
}

LRESULT EditQuantityDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            switch (LOWORD(wParam)) {
                case IDOK: Guarded([&] { form_.OK(); }); return 0;
                case IDCANCEL: Guarded([&] { form_.Cancel(); }); return 0;
                case kUnitCombo:
                    if (HIWORD(wParam) == CBN_SELCHANGE) Guarded([&] { unitCombo_->Selected(); });
                    return 0;
                case kListCombo:
                    if (HIWORD(wParam) == CBN_SELCHANGE) listCombo_->Selected();
                    return 0;
            }
            break;
        case WM_CLOSE: Guarded([&] { form_.Cancel(); }); return 0;
    }
    return DefWindowProcW(window_, message, wParam, lParam);
}

void EditQuantityDialog::Caption(const std::string& text) {
    SetWindowTextW(window_, Wide(text).c_str());
}

void EditQuantityDialog::Description(const std::string& text) {
    SetWindowTextW(description_, Wide(text.empty() ? "Enter the new value:" : text).c_str());
}

std::string EditQuantityDialog::Text() const {
    const int length = GetWindowTextLengthW(textbox_);
    std::vector<wchar_t> buffer(static_cast<std::size_t>(length) + 1);
    GetWindowTextW(textbox_, buffer.data(), length + 1);
    return Utf8(buffer.data());
}

void EditQuantityDialog::Text(const std::string& text) {
    SetWindowTextW(textbox_, Wide(text).c_str());
}

void EditQuantityDialog::ShowText(bool withUnits) {
    SetWindowPos(textbox_, nullptr, 12, 36, withUnits ? 220 : 312, 24, SWP_NOZORDER);
    ShowWindow(textbox_, SW_SHOW);
    ShowWindow(unitCombo_->Handle(), withUnits ? SW_SHOW : SW_HIDE);
    ShowWindow(listCombo_->Handle(), SW_HIDE);
}

void EditQuantityDialog::ShowList() {
    ShowWindow(textbox_, SW_HIDE);
    ShowWindow(unitCombo_->Handle(), SW_HIDE);
    ShowWindow(listCombo_->Handle(), SW_SHOW);
}

}  // namespace tgp::ui::win32
