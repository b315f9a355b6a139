#include "LateBound.h"

#include <dispex.h>

#include <new>
#include <string>
#include <vector>

#include "ErrorInfo.h"
#include "Variants.h"

namespace tgp::automation {

namespace {

// IDispatchEx's interface id, which the import libraries do not carry.
constexpr IID kIIDDispatchEx = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

// Releases the strings an Invoke left in its exception record, whatever happens next.
struct ExcepInfoGuard {
    EXCEPINFO info{};
    ~ExcepInfoGuard() {
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
    }
};

struct ScopedBstr {
    BSTR text;
    explicit ScopedBstr(const wchar_t* s) : text(SysAllocString(s)) {}
    ~ScopedBstr() { SysFreeString(text); }
    ScopedBstr(const ScopedBstr&) = delete;
    ScopedBstr& operator=(const ScopedBstr&) = delete;
};

// Script engines' own objects (a VBScript class instance under some engines) answer only
// IDispatchEx and report GetIDsOfNames as not implemented: the member is then looked up and called
// through IDispatchEx, case-insensitively as scripts name members.
class Callee {
  public:
    Callee(IDispatch* object, const wchar_t* name) : object_(object) {
        LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
        HRESULT hr = object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id_);
        if (SUCCEEDED(hr)) return;
        if (FAILED(object_->QueryInterface(kIIDDispatchEx, reinterpret_cast<void**>(&ex_))) || !ex_) {
            ThrowFromResult(hr);
        }
        ScopedBstr member(name);
        hr = ex_->GetDispID(member.text, fdexNameCaseInsensitive, &id_);
        if (FAILED(hr)) ThrowFromResult(hr);
    }
    ~Callee() {
        if (ex_) ex_->Release();
    }
    Callee(const Callee&) = delete;
    Callee& operator=(const Callee&) = delete;

    HRESULT Invoke(WORD flags, DISPPARAMS& params, VARIANT* result, EXCEPINFO& info) {
        if (ex_) return ex_->InvokeEx(id_, LOCALE_USER_DEFAULT, flags, &params, result, &info, nullptr);
        UINT argError = 0;
        return object_->Invoke(id_, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &info, &argError);
    }

  private:
    IDispatch* object_;
    IDispatchEx* ex_ = nullptr;
    DISPID id_ = 0;
};

}  // namespace

void CallByName(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<VARIANT> args,
                VARIANT* result) {
    if (!object) throw Error::ObjectRequired();
    Callee callee(object, name);
    std::vector<VARIANT> reversed(args.begin(), args.end());  // automation passes arguments last first
    std::vector<VARIANT>(reversed.rbegin(), reversed.rend()).swap(reversed);
    DISPID putId = DISPID_PROPERTYPUT;  // a property let names its value argument
    const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS params{reversed.data(), put ? &putId : nullptr, static_cast<UINT>(reversed.size()),
                      put ? 1u : 0u};
    ExcepInfoGuard guard;
    const HRESULT hr = callee.Invoke(flags, params, result, guard.info);
    if (FAILED(hr)) ThrowFromResult(hr, &guard.info);
}

bool HasMember(IDispatch* object, const wchar_t* name) noexcept {
    if (!object) return false;
    try {
        Callee callee(object, name);
        return true;
    } catch (...) {
        return false;
    }
}

bool CopyScriptArray(IDispatch* object, VARIANT* into) {
    IDispatchEx* script = nullptr;
    if (!object || FAILED(object->QueryInterface(kIIDDispatchEx, reinterpret_cast<void**>(&script))) ||
        !script)
        return false;
    script->Release();
    if (!HasMember(object, L"length")) return false;
    ScopedVariant length;
    CallByName(object, L"length", DISPATCH_PROPERTYGET, {}, &length);
    const double count = ToDouble(length.get());
    if (!(count >= 0 && count <= 0x7fffffff) || count != static_cast<LONG>(count)) return false;
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(count));
    if (!array) throw std::bad_alloc();
    VariantInit(into);
    V_VT(into) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(into) = array;  // the caller's from here: cleared with it if an element fails
    for (LONG i = 0; i < static_cast<LONG>(count); ++i) {
        const std::wstring index = std::to_wstring(i);
        if (!HasMember(object, index.c_str())) continue;  // a hole in the array: Empty
        ScopedVariant element;
        CallByName(object, index.c_str(), DISPATCH_PROPERTYGET, {}, &element);
        if (FAILED(SafeArrayPutElement(array, &i, &element.get()))) throw std::bad_alloc();
    }
    return true;
}

HWND WindowProperty(IDispatch* object, const wchar_t* name) noexcept {
    if (!HasMember(object, name)) return nullptr;
    try {
        ScopedVariant handle;
        CallByName(object, name, DISPATCH_PROPERTYGET, {}, &handle);
        const HWND window = reinterpret_cast<HWND>(static_cast<intptr_t>(ToDouble(handle.get())));
        return IsWindow(window) ? window : nullptr;
    } catch (...) {
        return nullptr;
    }
}

}  // namespace tgp::automation
