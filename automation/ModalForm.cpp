#include "ModalForm.h"

#include "LateBound.h"
#include "Variants.h"
#include "core/Error.h"

namespace tgp::automation {
namespace {

// The owner's state before the form showed, put back when the form is done (also on failure).
class OwnerState {
  public:
    explicit OwnerState(HWND owner) : owner_(owner && IsWindow(owner) ? owner : nullptr) {
        if (!owner_) return;
        placement_.length = sizeof(placement_);
        GetWindowPlacement(owner_, &placement_);
        wasEnabled_ = IsWindowEnabled(owner_) != FALSE;
        EnableWindow(owner_, FALSE);
    }
    ~OwnerState() {
        if (!owner_ || !IsWindow(owner_)) return;
        EnableWindow(owner_, wasEnabled_ ? TRUE : FALSE);
        SetWindowPlacement(owner_, &placement_);
        SetForegroundWindow(owner_);
    }
    OwnerState(const OwnerState&) = delete;
    OwnerState& operator=(const OwnerState&) = delete;

  private:
    HWND owner_;
    WINDOWPLACEMENT placement_{};
    bool wasEnabled_ = true;
};

// Pumps messages until the window is gone or hidden. A WM_QUIT is put back for the caller's loop.
void PumpWhileShown(HWND window) {
    MSG message;
    while (IsWindow(window) && IsWindowVisible(window)) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (got == -1) return;
        if (!IsDialogMessageW(window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void ShowWindowModally(HWND owner, HWND window) {
    if (!IsWindow(window)) throw Error::InvalidProcedureCall();
    if (owner) SetWindowLongPtrW(window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
    OwnerState restore(owner);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    PumpWhileShown(window);
}

void ShowFormModally(HWND owner, IDispatch* form) {
    if (!HasMember(form, L"Show")) throw Error(438, "Object doesn't support this property or method");
    OwnerState restore(owner);
    VARIANT modal;
    VariantInit(&modal);
    V_VT(&modal) = VT_I2;
    V_I2(&modal) = 1;  // vbModal
    CallByName(form, L"Show", DISPATCH_METHOD, {modal}, nullptr);
    if (HWND window = WindowProperty(form, L"hWnd")) PumpWhileShown(window);
}

}  // namespace

void ShowModalOver(HWND owner, const VARIANT& form) {
    const VARIANT& value = Deref(form);
    if ((V_VT(&value) & ~VT_BYREF) == VT_DISPATCH) {
        IDispatch* object = ToObject(value);
        if (!object) throw Error::ObjectRequired();
        return ShowFormModally(owner, object);
    }
    ShowWindowModally(owner, reinterpret_cast<HWND>(static_cast<intptr_t>(ToDouble(form))));
}

}  // namespace tgp::automation
