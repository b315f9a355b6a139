#include "ui/win32/UnitSettingDialog.h"

#include "core/Error.h"
#include "units/UnitSymbols.h"

namespace tgp::ui::win32 {

namespace {

constexpr UINT_PTR kWatchTimer = 1;
constexpr UINT kWatchMilliseconds = 250;
constexpr UINT kNonClientLeftButtonDown = 0xA1;
constexpr WPARAM kCaptionHitTest = 2;
constexpr int kFirstComboId = 200;
constexpr COLORREF kHeaderColour = RGB(0, 84, 147);

struct Row {
    const wchar_t* comboName;
    const char* name;
    const wchar_t* label;
};
// Two columns of rows, as a person scans them: geometry first, then forces.
constexpr Row kRows[] = {
    {L"cbAngle", "cbAngle", L"Angle"},
    {L"cbLength", "cbLength", L"Length"},
    {L"cbArea", "cbArea", L"Area"},
    {L"cbVolume", "cbVolume", L"Volume"},
    {L"cbMomentOfInertia", "cbMomentOfInertia", L"Moment of inertia"},
    {L"cbPressure", "cbPressure", L"Pressure"},
    {L"cbForce", "cbForce", L"Force"},
    {L"cbForceMoment", "cbForceMoment", L"Force moment"},
    {L"cbForcePerLine", "cbForcePerLine", L"Force per line"},
    {L"cbForcePerArea", "cbForcePerArea", L"Force per area"},
    {L"cbForceDensity", "cbForceDensity", L"Force density"},
    {L"cbUnitSettings", "cbUnitSettings", L"Preset"},
};
constexpr int kRowsPerColumn = 6;
constexpr int kHeaderHeight = 30, kRowHeight = 30, kLabelWidth = 110, kComboWidth = 96, kColumnGap = 16,
              kMargin = 12;
constexpr int kColumnWidth = kLabelWidth + kComboWidth;
constexpr int kClientWidth = 2 * kMargin + 2 * kColumnWidth + kColumnGap;
constexpr int kButtonsTop = kHeaderHeight + kMargin + kRowsPerColumn * kRowHeight + 6;
constexpr int kClientHeight = kButtonsTop + 28 + kMargin;

// The symbol table every quantity kind's units come from, one line per kind, as list_Units holds it.
std::wstring SymbolTable() {
    std::wstring table;
    for (int k = 0; k < kKindCount; ++k) {
        for (int16_t id = 0; id <= 13; ++id) {
            try {
                table += Wide(GetUnitString(static_cast<DimensionObjectType>(k), id));
            } catch (const Error&) {
            }
            table += L';';
        }
        table += L"\r\n";
    }
    return table;
}

// The shift state as a form's key events report it: 1 Shift, 2 Ctrl, 4 Alt.
int ShiftState() {
    return (GetKeyState(VK_SHIFT) < 0 ? 1 : 0) | (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
           (GetKeyState(VK_MENU) < 0 ? 4 : 0);
}

}  // namespace

UnitSettingDialog::UnitSettingDialog() {
    window_ = CreateDialogWindow(kWindowClass, L"Unit Setting", WS_POPUP | WS_BORDER,
                                 WS_EX_CONTROLPARENT | WS_EX_TOOLWINDOW, kClientWidth, kClientHeight, this,
                                 &WindowProc);
    headerBrush_ = CreateSolidBrush(kHeaderColour);

    header_ = CreateNamedControl(window_, L"STATIC", L"pbHeader", 0, SS_NOTIFY,
                                 {0, 0, kClientWidth, kHeaderHeight});
    label1_ = CreateNamedControl(window_, L"STATIC", L"Label1", 0, SS_NOTIFY | SS_CENTERIMAGE | SS_NOPREFIX,
                                 {kMargin, 0, kClientWidth - kMargin, kHeaderHeight}, L"Unit Setting");
    int index = 0;
    for (const Row& row : kRows) {
        const int column = index / kRowsPerColumn, line = index % kRowsPerColumn;
        const int left = kMargin + column * (kColumnWidth + kColumnGap);
        const int top = kHeaderHeight + kMargin + line * kRowHeight;
        CreateNamedControl(window_, L"STATIC", L"", 0, SS_LEFT | SS_CENTERIMAGE,
                           {left, top, left + kLabelWidth - 6, top + 22}, row.label);
        const int id = kFirstComboId + index;
        HWND combo = CreateNamedControl(window_, L"COMBOBOX", row.comboName, id,
                                        WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                                        {left + kLabelWidth, top, left + kColumnWidth, top + 240});
        auto control = std::make_shared<Win32Combo>(combo);
        combos_[row.name] = control;
        combosById_[id] = control;
        ++index;
    }
    const int right = kClientWidth - kMargin;
    CreateNamedControl(window_, L"BUTTON", L"cmdOK", IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON,
                       {right - 172, kButtonsTop, right - 92, kButtonsTop + 28}, L"OK");
    CreateNamedControl(window_, L"BUTTON", L"cmdCancel", IDCANCEL, WS_TABSTOP | BS_PUSHBUTTON,
                       {right - 80, kButtonsTop, right, kButtonsTop + 28}, L"Cancel");
    HWND symbols =
        CreateNamedControl(window_, L"EDIT", L"list_Units", 0, ES_MULTILINE | ES_READONLY, {0, 0, 1, 1});
    SetWindowTextW(symbols, SymbolTable().c_str());
    ShowWindow(symbols, SW_HIDE);
}

UnitSettingDialog::~UnitSettingDialog() {
    if (window_) {
        form_.Unload();
        DestroyWindow(window_);
    }
    if (headerBrush_) DeleteObject(headerBrush_);
}

void UnitSettingDialog::Show(HWND owner, bool centreOnScreen) {
    owner = OwnerWindow(owner);
    if (owner) SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
    Centre(window_, owner, centreOnScreen);
    form_.Load();
    ShowWindow(window_, SW_SHOW);
    SetFocus(combos_["cbAngle"]->Handle());
}

bool UnitSettingDialog::Run(HWND owner, bool centreOnScreen) {
    owner = OwnerWindow(owner);
    Show(owner, centreOnScreen);
    RunModal(
        window_, owner, [this] { return form_.Visible(); }, [this](MSG& msg) { return Filter(msg); });
    return form_.Confirmed();
}

bool UnitSettingDialog::Filter(MSG& msg) {
    const bool ours = msg.hwnd == window_ || IsChild(window_, msg.hwnd);
    if (!ours) return false;
    switch (msg.message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN: {
            const int shift = ShiftState();
            const bool enter = msg.wParam == VK_RETURN;
            Guarded([&] { form_.KeyDown(static_cast<int>(msg.wParam), shift); });
            return enter;  // Enter confirmed the form; nothing else should see it
        }
        case WM_KEYUP:
        case WM_SYSKEYUP: form_.KeyUp(); return false;
        case WM_CHAR:
        case WM_SYSCHAR: return !form_.KeyPress();
        case WM_LBUTTONDOWN:
            if (msg.hwnd == window_ || msg.hwnd == label1_ || msg.hwnd == header_) {
                // A press on the borderless form drags it as if on a caption.
                ReleaseCapture();
                SendMessageW(window_, kNonClientLeftButtonDown, kCaptionHitTest, 0);
                return true;
            }
            return false;
    }
    return false;
}

void UnitSettingDialog::Guarded(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& e) {
        MessageBoxW(window_, Wide(e.description()).c_str(), L"Unit Setting", MB_OK | MB_ICONEXCLAMATION);
    }
}

std::shared_ptr<ComboControl> UnitSettingDialog::Combo(const std::string& name) {
    const auto found = combos_.find(name);
    if (found == combos_.end()) throw Error::SubscriptOutOfRange();
    return found->second;
}

void UnitSettingDialog::StartTimer() {
    SetTimer(window_, kWatchTimer, kWatchMilliseconds, nullptr);
}

void UnitSettingDialog::StopTimer() {
    KillTimer(window_, kWatchTimer);
}

LRESULT CALLBACK UnitSettingDialog::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<UnitSettingDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self) return DefWindowProcW(window, message, wParam, lParam);
    return self->Handle(message, wParam, lParam);
}

LRESULT UnitSettingDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND: {
            const int id = LOWORD(wParam);
            if (id == IDOK)
                Guarded([&] { form_.OK(); });
            else if (id == IDCANCEL)
                form_.Cancel();
            else if (HIWORD(wParam) == CBN_SELCHANGE && combosById_.count(id))
                Guarded([&] { combosById_[id]->Selected(); });
            return 0;
        }
        case WM_TIMER:
            if (wParam == kWatchTimer) form_.TimerTick(GetActiveWindow() != window_);
            return 0;
        case WM_CTLCOLORSTATIC: {
            const HWND control = reinterpret_cast<HWND>(lParam);
            if (control == header_ || control == label1_) {
                HDC dc = reinterpret_cast<HDC>(wParam);
                SetTextColor(dc, RGB(255, 255, 255));
                SetBkColor(dc, kHeaderColour);
                return reinterpret_cast<LRESULT>(headerBrush_);
            }
            break;
        }
        case WM_CLOSE: form_.Cancel(); return 0;
    }
    return DefWindowProcW(window_, message, wParam, lParam);
}

}  // namespace tgp::ui::win32
