#include "ErrorInfo.h"

#include <cstdio>

#include "Strings.h"

namespace tgp::automation {

HRESULT RaiseError(REFIID iid, int number, const std::string& description) {
    ICreateErrorInfo* create = nullptr;
    if (SUCCEEDED(CreateErrorInfo(&create))) {
        std::wstring text = ToWide(description);
        create->SetGUID(iid);
        create->SetDescription(const_cast<LPOLESTR>(text.c_str()));
        IErrorInfo* info = nullptr;
        if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
            SetErrorInfo(0, info);
            info->Release();
        }
        create->Release();
    }
    return ErrorResult(number);
}

void ThrowFromResult(HRESULT result, const EXCEPINFO* info) {
    if (info && info->pfnDeferredFillIn) info->pfnDeferredFillIn(const_cast<EXCEPINFO*>(info));
    HRESULT code = (info && result == DISP_E_EXCEPTION)
                       ? (info->scode ? info->scode : ErrorResult(info->wCode))
                       : result;
    std::string description;
    if (info && info->bstrDescription) description = ToUtf8(info->bstrDescription);
    if (HRESULT_FACILITY(code) == FACILITY_CONTROL) throw Error(HRESULT_CODE(code), description);
    if (code == DISP_E_TYPEMISMATCH) throw Error::TypeMismatch();
    if (code == DISP_E_OVERFLOW) throw Error::Overflow();
    if (code == DISP_E_MEMBERNOTFOUND || code == DISP_E_UNKNOWNNAME)
        throw Error(438, "Object doesn't support this property or method");
    if (code == DISP_E_BADPARAMCOUNT || code == DISP_E_PARAMNOTOPTIONAL)
        throw Error(450, "Wrong number of arguments or invalid property assignment");
    if (code == E_NOINTERFACE) throw Error::TypeMismatch();
    if (description.empty()) {
        char text[40];
        std::snprintf(text, sizeof text, "Automation error 0x%08lX", static_cast<unsigned long>(code));
        description = text;
    }
    throw Error(440, description);
}

}  // namespace tgp::automation
