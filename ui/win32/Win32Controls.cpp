#include "ui/win32/Win32Controls.h"

#include <vector>

#include "core/Error.h"

namespace tgp::ui::win32 {

namespace {
constexpr wchar_t kNameProperty[] = L"ControlName";
}

std::wstring Wide(const std::string& utf8) {
    if (utf8.empty()) return {};
    const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), n);
    return wide;
}

std::string Utf8(const std::wstring& wide) {
    if (wide.empty()) return {};
    const int n = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0,
                                      nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), utf8.data(), n, nullptr,
                        nullptr);
    return utf8;
}

HFONT DialogFont() {
    static HFONT font = [] {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0))
            return CreateFontIndirectW(&metrics.lfMessageFont);
        return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    }();
    return font;
}

HWND CreateNamedControl(HWND parent, const wchar_t* windowClass, const wchar_t* name, int id, DWORD style,
                        const RECT& bounds, const wchar_t* text) {
    HWND control = CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, bounds.left,
                                   bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, parent,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                   GetModuleHandleW(nullptr), nullptr);
    if (!control) return nullptr;
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(DialogFont()), FALSE);
    SetPropW(control, kNameProperty, const_cast<wchar_t*>(name));  // names are static strings
    return control;
}

namespace {

struct NameSearch {
    const wchar_t* name;
    HWND found;
};

// A stdcall callback for EnumChildWindows (a lambda would not convert on 32-bit Windows).
BOOL CALLBACK MatchName(HWND child, LPARAM p) {
    auto* search = reinterpret_cast<NameSearch*>(p);
    const auto* own = static_cast<const wchar_t*>(GetPropW(child, kNameProperty));
    if (own && wcscmp(own, search->name) == 0) {
        search->found = child;
        return FALSE;
    }
    return TRUE;
}

}  // namespace

HWND FindNamedControl(HWND parent, const wchar_t* name) {
    NameSearch search{name, nullptr};
    EnumChildWindows(parent, &MatchName, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

namespace {

void RegisterDialogClass(const wchar_t* name) {
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    wc.lpfnWndProc = DefWindowProcW;  // each dialog puts its own procedure on its window
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = name;
    RegisterClassExW(&wc);  // a second registration of the name fails harmlessly
}

}  // namespace

HWND CreateDialogWindow(const wchar_t* windowClass, const wchar_t* title, DWORD style, DWORD exStyle,
                        int clientWidth, int clientHeight, void* self, WNDPROC procedure) {
    RegisterDialogClass(windowClass);
    RECT frame{0, 0, clientWidth, clientHeight};
    AdjustWindowRectEx(&frame, style, FALSE, exStyle);
    HWND window = CreateWindowExW(exStyle, windowClass, title, style, CW_USEDEFAULT, CW_USEDEFAULT,
                                  frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    if (!window) throw Error::OutOfMemory();
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return window;
}

void Win32Combo::Clear() {
    SendMessageW(combo_, CB_RESETCONTENT, 0, 0);
}

void Win32Combo::AddItem(const std::string& item) {
    const std::wstring wide = Wide(item);
    SendMessageW(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide.c_str()));
}

void Win32Combo::ListIndex(int index) {
    SendMessageW(combo_, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

std::string Win32Combo::Text() const {
    const LRESULT index = SendMessageW(combo_, CB_GETCURSEL, 0, 0);
    if (index == CB_ERR) return {};
    const LRESULT length = SendMessageW(combo_, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length == CB_ERR) return {};
    std::vector<wchar_t> buffer(static_cast<std::size_t>(length) + 1);
    SendMessageW(combo_, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(buffer.data()));
    return Utf8(buffer.data());
}

void Win32Combo::Text(const std::string& text) {
    const std::wstring wide = Wide(text);
    const LRESULT index = SendMessageW(combo_, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(wide.c_str()));
    SendMessageW(combo_, CB_SETCURSEL, index == CB_ERR ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(index),
                 0);
}

void RunModal(HWND dialog, HWND owner, const std::function<bool()>& visible,
              const std::function<bool(MSG&)>& filter) {
    const bool ownerWasEnabled = owner && IsWindowEnabled(owner);
    if (ownerWasEnabled) EnableWindow(owner, FALSE);
    ShowWindow(dialog, SW_SHOW);
    SetForegroundWindow(dialog);
    MSG msg;
    while (visible() && IsWindow(dialog)) {
        const BOOL got = GetMessageW(&msg, nullptr, 0, 0);
        if (got == 0) {  // WM_QUIT: give it back to the host's own loop
            PostQuitMessage(static_cast<int>(msg.wParam));
            break;
        }
        if (got < 0) break;
        if (filter(msg)) continue;
        if (IsDialogMessageW(dialog, &msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    // The owner is enabled before the dialog goes, so that Windows activates the owner, not another
    // application's window.
    if (ownerWasEnabled) EnableWindow(owner, TRUE);
    ShowWindow(dialog, SW_HIDE);
    if (owner) SetActiveWindow(owner);
}

HWND OwnerWindow(HWND given) {
    if (given && IsWindow(given)) return given;
    return GetActiveWindow();
}

void Centre(HWND dialog, HWND owner, bool onScreen) {
    RECT area{}, box{};
    GetWindowRect(dialog, &box);
    if (onScreen || !owner || !GetWindowRect(owner, &area))
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const int width = box.right - box.left, height = box.bottom - box.top;
    const int x = area.left + (area.right - area.left - width) / 2;
    const int y = area.top + (area.bottom - area.top - height) / 2;
    SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace tgp::ui::win32
