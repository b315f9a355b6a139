#include "LateBound.h"

#include <vector>

#include "ErrorInfo.h"

namespace tgp::automation {

void CallByName(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<VARIANT> args,
                VARIANT* result) {
    if (!object) throw Error::ObjectRequired();
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) ThrowFromResult(hr);
    std::vector<VARIANT> reversed(args.begin(), args.end());  // automation passes arguments last first
    std::vector<VARIANT>(reversed.rbegin(), reversed.rend()).swap(reversed);
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXCEPINFO info{};
    UINT argError = 0;
    hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &info, &argError);
    if (FAILED(hr)) {
        struct Cleanup {
            EXCEPINFO& info;
            ~Cleanup() {
                SysFreeString(info.bstrSource);
                SysFreeString(info.bstrDescription);
                SysFreeString(info.bstrHelpFile);
            }
        } cleanup{info};
        ThrowFromResult(hr, &info);
    }
}

}  // namespace tgp::automation
