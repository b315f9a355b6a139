// The dialogs of Geometry_EXE, driven for real: a driver thread finds each modal window, types,
// picks combo entries, presses buttons and keys, and saves a screenshot (under a virtual display),
// while the main thread waits in the automation call as a macro would.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Client.h"
#include "ModifiedCounter.h"
#include "StackDispatch.h"

using namespace client;

namespace {

constexpr wchar_t kEditClass[] = L"TgpEditQuantity";
constexpr wchar_t kUnitSettingClass[] = L"TgpUnitSetting";

HWND Control(HWND dialog, const wchar_t* name) {
    struct Search {
        const wchar_t* name;
        HWND found;
    } search{name, nullptr};
    EnumChildWindows(
        dialog,
        [](HWND child, LPARAM p) -> BOOL {
            auto* s = reinterpret_cast<Search*>(p);
            const auto* own = static_cast<const wchar_t*>(GetPropW(child, L"ControlName"));
            if (own && wcscmp(own, s->name) == 0) {
                s->found = child;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::wstring TextOf(HWND control) {
    wchar_t buffer[256] = {};
    SendMessageW(control, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(buffer));
    return buffer;
}

std::wstring ComboText(HWND combo) {
    const LRESULT index = SendMessageW(combo, CB_GETCURSEL, 0, 0);
    if (index == CB_ERR) return L"";
    wchar_t buffer[256] = {};
    SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(buffer));
    return buffer;
}

void Type(HWND dialog, const wchar_t* name, const wchar_t* text) {
    SendMessageW(Control(dialog, name), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

// A user's pick: the entry selected, then the notification the box sends its form.
void Pick(HWND dialog, const wchar_t* name, const wchar_t* entry) {
    HWND combo = Control(dialog, name);
    const LRESULT index =
        SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(entry));
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
}

void Press(HWND dialog, const wchar_t* name) {
    HWND button = Control(dialog, name);
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
}

void PressKey(HWND target, WPARAM key) {
    PostMessageW(target, WM_KEYDOWN, key, 1);
    PostMessageW(target, WM_KEYUP, key, 1 | (1u << 30) | (1u << 31));
}

// Keys as the keyboard sends them (the key state follows), for Ctrl held.
void KeyboardInput(std::initializer_list<std::pair<WORD, bool>> keys) {
    for (const auto& [key, down] : keys) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        SendInput(1, &input, sizeof input);
        Sleep(30);
    }
}

// The window's pixels as a 24-bit BMP in the screenshot folder (scripts/test-com makes PNGs of them).
void Screenshot(HWND window, const char* name) {
    const char* folder = std::getenv("TGP_SCREENSHOTS");
    if (!folder) return;
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    Sleep(300);
    RECT r;
    GetWindowRect(window, &r);
    const int width = r.right - r.left, height = r.bottom - r.top;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, r.left, r.top, SRCCOPY);
    const DWORD stride = ((static_cast<DWORD>(width) * 3 + 3) / 4) * 4,
                size = stride * static_cast<DWORD>(height);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info.bmiHeader;
    file.bfSize = file.bfOffBits + size;
    const std::string path = std::string(folder) + "\\" + name + ".bmp";
    if (FILE* out = std::fopen(path.c_str(), "wb")) {
        std::fwrite(&file, sizeof file, 1, out);
        std::fwrite(&info.bmiHeader, sizeof info.bmiHeader, 1, out);
        std::fwrite(bits, 1, size, out);
        std::fclose(out);
    }
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

// Runs `actions` on the first visible window of the class from another thread, within a time limit:
// a dialog still open 10 s after the actions is closed (as Cancel) so that nothing can hang.
class Driver {
  public:
    Driver(const wchar_t* windowClass, std::function<void(HWND)> actions)
        : windowClass_(windowClass), actions_(std::move(actions)) {
        thread_ = CreateThread(nullptr, 0, &Driver::Main, this, 0, nullptr);
    }
    ~Driver() {
        WaitForSingleObject(thread_, INFINITE);
        CloseHandle(thread_);
    }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    std::atomic<bool> found{false}, timedOut{false};

  private:
    static DWORD WINAPI Main(void* self) {
        static_cast<Driver*>(self)->Drive();
        return 0;
    }
    void Drive() {
        HWND dialog = nullptr;
        for (int i = 0; i < 200 && !dialog; ++i) {
            HWND w = FindWindowW(windowClass_, nullptr);
            if (w && IsWindowVisible(w))
                dialog = w;
            else
                Sleep(50);
        }
        if (!dialog) return;
        found = true;
        Sleep(150);
        actions_(dialog);
        for (int i = 0; i < 200 && IsWindow(dialog) && IsWindowVisible(dialog); ++i) Sleep(50);
        if (IsWindow(dialog) && IsWindowVisible(dialog)) {
            timedOut = true;
            PostMessageW(dialog, WM_CLOSE, 0, 0);
        }
    }
    const wchar_t* windowClass_;
    std::function<void(HWND)> actions_;
    HANDLE thread_ = nullptr;
};

void CheckDriven(const Driver& driver, const std::string& name) {
    Check(driver.found, name + ": the dialog appeared");
    Check(!driver.timedOut, name + ": the dialog closed when told");
}

}  // namespace

CLIENT_TEST(EditQuantityOfALength) {
    Object exe(L"Geometry_EXE");
    Object length(L"DLength");
    Put(length, L"Value", {Var(0), Var(1000.0)});
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_DISPATCH;
    V_DISPATCH(&value) = length;
    length->AddRef();
    short returnUnit = -1;

    std::wstring shownInMetres, shownInMm, caption;
    Outcome outcome;
    {
        Driver driver(kEditClass, [&](HWND dialog) {
            shownInMetres = TextOf(Control(dialog, L"Textbox"));
            wchar_t title[128] = {};
            GetWindowTextW(dialog, title, 128);
            caption = title;
            Screenshot(dialog, "edit-quantity-length");
            Pick(dialog, L"cbUnitID", L"mm");
            shownInMm = TextOf(Control(dialog, L"Textbox"));
            Type(dialog, L"Textbox", L"2500");
            Press(dialog, L"cmdOK");
        });
        outcome = Method(exe, L"EditQuantity", {Ref(&value), Var(3), Var(L""), Var(L""), Ref(&returnUnit)});
        CheckDriven(driver, "EditQuantity");
    }
    Check(outcome.number == 0 && V_BOOL(&outcome.result.v) == VARIANT_TRUE, "OK returns True",
          Narrow(outcome.description));
    Check(caption == L"Edit Value as Length", "the caption names the kind",
          Narrow(caption) + " result " + std::to_string(outcome.number) + " " + Narrow(outcome.description) +
              " vt " + std::to_string(V_VT(&outcome.result.v)));
    Check(shownInMetres == L"1", "1000 mm shown in metres reads 1", Narrow(shownInMetres));
    Check(shownInMm == L"1000", "switching to mm shows 1000", Narrow(shownInMm));
    CheckNear(Get(length, L"Value", {Var(0)}).result.AsDouble(), 2500,
              "the object holds the confirmed 2500 mm");
    Check(returnUnit == 0, "ReturnUnitID is the unit chosen in the dialog", std::to_string(returnUnit));
    VariantClear(&value);
}

CLIENT_TEST(EditQuantityOfNumbersWithEnterAndCancel) {
    Object exe(L"Geometry_EXE");
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_R8;
    V_R8(&value) = 2.5;
    Outcome outcome;
    {
        Driver driver(kEditClass, [&](HWND dialog) {
            HWND box = Control(dialog, L"Textbox");
            Type(dialog, L"Textbox", L"7,25");  // as a person types it where the comma is decimal
            PressKey(box, VK_RETURN);
        });
        outcome = Method(exe, L"EditQuantity", {Ref(&value)});
        CheckDriven(driver, "EditQuantity with Enter");
    }
    Check(V_BOOL(&outcome.result.v) == VARIANT_TRUE, "Enter in the text box confirms",
          Narrow(outcome.description) + " " + std::to_string(outcome.number));
    Check(V_VT(&value) == VT_R8 && V_R8(&value) == 7.25, "a Double receives the typed number, comma and all");

    V_VT(&value) = VT_I2;
    V_I2(&value) = 4;
    {
        Driver driver(kEditClass, [&](HWND dialog) {
            Type(dialog, L"Textbox", L"9");
            Press(dialog, L"cmdCancel");
        });
        outcome = Method(exe, L"EditQuantity", {Ref(&value)});
        CheckDriven(driver, "EditQuantity with Cancel");
    }
    Check(outcome.number == 0 && V_BOOL(&outcome.result.v) == VARIANT_FALSE, "Cancel returns False");
    Check(V_VT(&value) == VT_I2 && V_I2(&value) == 4, "Cancel leaves the Integer");
}

CLIENT_TEST(EditEnumPicksFromTheList) {
    Object exe(L"Geometry_EXE");
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = SysAllocString(L"Steel");
    std::wstring selected, description;
    Outcome outcome;
    {
        Driver driver(kEditClass, [&](HWND dialog) {
            selected = ComboText(Control(dialog, L"ComboBox"));
            description = TextOf(Control(dialog, L"lbDesc"));
            Screenshot(dialog, "edit-enum");
            Pick(dialog, L"ComboBox", L"Timber");
            Press(dialog, L"cmdOK");
        });
        outcome = Method(exe, L"EditEnum", {Ref(&value), Var(L"Concrete,Steel,Timber"), Var(L"Material")});
        CheckDriven(driver, "EditEnum");
    }
    Check(selected == L"Steel", "the current value is chosen", Narrow(selected));
    Check(description == L"Select Value from the List", "the description asks for a pick",
          Narrow(description));
    Check(V_BOOL(&outcome.result.v) == VARIANT_TRUE, "EditEnum confirms");
    Check(V_VT(&value) == VT_BSTR && std::wstring(V_BSTR(&value)) == L"Timber", "the pick comes back");
    VariantClear(&value);
}

CLIENT_TEST(EditUnitSettingOKAndCancel) {
    Object exe(L"Geometry_EXE");
    Object setting(L"UnitSetting");
    ModifiedCounter sink;
    Connection connection(setting, sink);
    IDispatch* us = setting;

    std::wstring pressure;
    Outcome outcome;
    {
        Driver driver(kUnitSettingClass, [&](HWND dialog) {
            pressure = ComboText(Control(dialog, L"cbPressure"));
            Pick(dialog, L"cbLength", L"m");
            Pick(dialog, L"cbForce", L"N");
            Pick(dialog, L"cbUnitSettings", L"US");
            Screenshot(dialog, "unit-setting");
            Press(dialog, L"cmdOK");
        });
        outcome = Method(exe, L"EditUnitSetting", {Ref(&us), Var(true), Var(true)});
        CheckDriven(driver, "EditUnitSetting with OK");
    }
    Check(pressure == L"N/mm²", "a new setting shows N/mm² for pressure", Narrow(pressure));
    Check(V_BOOL(&outcome.result.v) == VARIANT_TRUE, "OK returns True", Narrow(outcome.description));
    Check(sink.count == 1, "OK raises one Modified", std::to_string(sink.count));
    Check(Get(setting, L"UnitID", {Var(1)}).result.AsDouble() == 3, "length in metres");
    Check(Get(setting, L"UnitString", {Var(5)}).result.AsText() == L"N", "force in newtons");

    {
        Driver driver(kUnitSettingClass, [&](HWND dialog) {
            Pick(dialog, L"cbLength", L"ft");
            Press(dialog, L"cmdCancel");
        });
        outcome = Method(exe, L"EditUnitSetting", {Ref(&us), Var(true)});
        CheckDriven(driver, "EditUnitSetting with Cancel");
    }
    Check(V_BOOL(&outcome.result.v) == VARIANT_FALSE, "Cancel returns False");
    Check(sink.count == 1, "Cancel raises no Modified");
    Check(Get(setting, L"UnitID", {Var(1)}).result.AsDouble() == 3, "Cancel leaves the setting");

    {
        Driver driver(kUnitSettingClass, [&](HWND dialog) {
            Pick(dialog, L"cbLength", L"cm");
            SetForegroundWindow(dialog);
            SetFocus(Control(dialog, L"cbLength"));
            KeyboardInput({{VK_CONTROL, true}, {VK_RETURN, true}, {VK_RETURN, false}, {VK_CONTROL, false}});
        });
        outcome = Method(exe, L"EditUnitSetting", {Ref(&us), Var(true)});
        CheckDriven(driver, "EditUnitSetting with Ctrl+Enter");
    }
    Check(V_BOOL(&outcome.result.v) == VARIANT_TRUE, "Enter with Ctrl held confirms");
    Check(Get(setting, L"UnitID", {Var(1)}).result.AsDouble() == 1, "length in centimetres");
}

CLIENT_TEST(EditUnitSettingOfNothingGivesANewSetting) {
    Object exe(L"Geometry_EXE");
    IDispatch* us = nullptr;
    Outcome outcome;
    {
        Driver driver(kUnitSettingClass, [&](HWND dialog) {
            Pick(dialog, L"cbAngle", L"º");
            Press(dialog, L"cmdOK");
        });
        outcome = Method(exe, L"EditUnitSetting", {Ref(&us), Var(true)});
        CheckDriven(driver, "EditUnitSetting of Nothing");
    }
    Check(V_BOOL(&outcome.result.v) == VARIANT_TRUE && us != nullptr,
          "the caller's variable receives the setting");
    if (us) {
        Check(Get(us, L"UnitID", {Var(0)}).result.AsDouble() == 1, "with the angle in degrees");
        us->Release();
    }
}

namespace {

// A left-button drag by the real mouse, from the centre of `from` by (dx, dy), in small steps.
void Drag(HWND from, int dx, int dy) {
    RECT r;
    GetWindowRect(from, &r);
    const int x = (r.left + r.right) / 2, y = (r.top + r.bottom) / 2;
    SetCursorPos(x, y);
    auto send = [](DWORD flag) {  // one mouse event (a button or a move), then time to handle it
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flag;
        SendInput(1, &input, sizeof input);
        Sleep(60);
    };
    send(MOUSEEVENTF_LEFTDOWN);
    for (int step = 1; step <= 4; ++step) {
        SetCursorPos(x + dx * step / 4, y + dy * step / 4);
        send(MOUSEEVENTF_MOVE);
    }
    send(MOUSEEVENTF_LEFTUP);
    Sleep(200);
}

}  // namespace

// The borderless unit-setting dialog: centred on the screen when asked, dragged by its header
// label like a captioned window, and closed (as Cancel) by its timer when another window becomes
// active.
CLIENT_TEST(UnitSettingDialogCentresDragsAndClosesWhenLeft) {
    Object exe(L"Geometry_EXE");
    Object setting(L"UnitSetting");
    IDispatch* us = setting;
    RECT before{}, after{}, area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    bool closedByTimer = false;
    Outcome outcome;
    {
        Driver driver(kUnitSettingClass, [&](HWND dialog) {
            GetWindowRect(dialog, &before);
            Pick(dialog, L"cbLength", L"ft");
            Drag(Control(dialog, L"Label1"), 60, 40);
            GetWindowRect(dialog, &after);
            // Another window of the user's becomes active.
            HWND other = CreateWindowExW(0, L"STATIC", L"another window", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                         10, 10, 200, 100, nullptr, nullptr, nullptr, nullptr);
            SetForegroundWindow(other);
            SetActiveWindow(other);
            for (int i = 0; i < 40 && IsWindowVisible(dialog); ++i) Sleep(50);
            closedByTimer = !IsWindowVisible(dialog);
            DestroyWindow(other);
        });
        outcome = Method(exe, L"EditUnitSetting", {Ref(&us), Var(true), Var(true)});
        CheckDriven(driver, "EditUnitSetting left for another window");
    }
    const int centreX = (before.left + before.right) / 2, centreY = (before.top + before.bottom) / 2;
    Check(std::abs(centreX - (area.left + area.right) / 2) <= 1 &&
              std::abs(centreY - (area.top + area.bottom) / 2) <= 1,
          "ShowCenterScreen centres the dialog on the screen",
          std::to_string(centreX) + "," + std::to_string(centreY));
    Check(after.left - before.left == 60 && after.top - before.top == 40, "a drag on Label1 moves the dialog",
          "moved by " + std::to_string(after.left - before.left) + "," +
              std::to_string(after.top - before.top));
    Check(closedByTimer, "the dialog closes when another window is active");
    Check(outcome.number == 0 && V_BOOL(&outcome.result.v) == VARIANT_FALSE, "and the call returns False");
    Check(Get(setting, L"UnitID", {Var(1)}).result.AsDouble() == 0, "leaving the caller's setting as it was");
}

namespace {

// A form of the caller's, as VB6 forms offer it: an object whose hWnd is its window.
class FormWithWindow final : public StackDispatch {
  public:
    explicit FormWithWindow(HWND window) : window_(window) {}
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        if (_wcsicmp(names[0], L"hWnd") != 0) return DISP_E_UNKNOWNNAME;
        ids[0] = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        if (id != 1 || !result) return DISP_E_MEMBERNOTFOUND;
        V_VT(result) = VT_I4;
        V_I4(result) = static_cast<LONG>(reinterpret_cast<INT_PTR>(window_));
        return S_OK;
    }

  private:
    HWND window_;
};

}  // namespace

// OwnerForm's window owns the value editor and is disabled while it shows; Esc cancels.
CLIENT_TEST(EditQuantityOwnedByTheCallersFormAndCancelledByEsc) {
    Object exe(L"Geometry_EXE");
    HWND owner = CreateWindowExW(0, L"STATIC", L"the caller's form", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100,
                                 100, 400, 300, nullptr, nullptr, nullptr, nullptr);
    FormWithWindow form(owner);
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_R8;
    V_R8(&value) = 1.5;
    HWND seenOwner = nullptr;
    bool ownerDisabled = false;
    Outcome outcome;
    {
        Driver driver(kEditClass, [&](HWND dialog) {
            seenOwner = GetWindow(dialog, GW_OWNER);
            ownerDisabled = !IsWindowEnabled(owner);
            Type(dialog, L"Textbox", L"99");
            PressKey(Control(dialog, L"Textbox"), VK_ESCAPE);
        });
        outcome = Method(
            exe, L"EditQuantity",
            {Ref(&value), Var(), Var(L"Factor"), Var(L""), Var(), Var(static_cast<IDispatch*>(&form))});
        CheckDriven(driver, "EditQuantity with an owner form");
    }
    Check(seenOwner == owner, "the caller's form owns the dialog");
    Check(ownerDisabled, "and is disabled while the dialog shows");
    Check(IsWindowEnabled(owner), "and enabled again afterwards");
    Check(outcome.number == 0 && V_BOOL(&outcome.result.v) == VARIANT_FALSE, "Esc cancels",
          Narrow(outcome.description));
    Check(V_VT(&value) == VT_R8 && V_R8(&value) == 1.5, "leaving the value");
    DestroyWindow(owner);
}
