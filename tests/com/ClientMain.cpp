#include <cstdio>

#include "Client.h"

namespace client {
namespace {
int g_passed = 0;
int g_failed = 0;
const char* g_current = "";
}  // namespace

std::vector<TestCase>& Tests() {
    static std::vector<TestCase> tests;
    return tests;
}

void Check(bool ok, const std::string& name, const std::string& detail) {
    if (ok) {
        ++g_passed;
        return;
    }
    ++g_failed;
    std::printf("FAIL %s: %s%s%s\n", g_current, name.c_str(), detail.empty() ? "" : ": ", detail.c_str());
}

void CheckNear(double actual, double expected, const std::string& name, double tolerance) {
    bool ok = std::fabs(actual - expected) <= tolerance * (1 + std::fabs(expected));
    Check(ok, name, "expected " + std::to_string(expected) + ", got " + std::to_string(actual));
}

std::string Narrow(const std::wstring& text) {
    int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0,
                                    nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), result.data(), bytes,
                        nullptr, nullptr);
    return result;
}

double Var::AsDouble() const {
    VARIANT converted;
    VariantInit(&converted);
    if (FAILED(VariantChangeType(&converted, const_cast<VARIANT*>(&v), 0, VT_R8))) return std::nan("");
    return V_R8(&converted);
}

std::wstring Var::AsText() const {
    if (V_VT(&v) != VT_BSTR || !V_BSTR(&v)) return L"<not a string>";
    return std::wstring(V_BSTR(&v), SysStringLen(V_BSTR(&v)));
}

Outcome Call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Var> args) {
    Outcome outcome;
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    outcome.hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.hr)) {
        outcome.number = -1;
        return outcome;
    }
    std::vector<VARIANT> reversed;
    for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->v);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
    }
    EXCEPINFO info{};
    UINT argError = 0;
    outcome.hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &outcome.result.v, &info,
                                &argError);
    if (outcome.hr == DISP_E_EXCEPTION) {
        HRESULT code = info.scode;
        outcome.number =
            HRESULT_FACILITY(code) == FACILITY_CONTROL ? HRESULT_CODE(code) : static_cast<int>(code);
        if (info.bstrDescription) outcome.description = info.bstrDescription;
    } else if (FAILED(outcome.hr)) {
        outcome.number = static_cast<int>(outcome.hr);
    }
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    return outcome;
}

Outcome Get(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return Call(object, name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, std::move(args));
}
Outcome Put(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return Call(object, name, DISPATCH_PROPERTYPUT, std::move(args));
}
Outcome Method(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return Call(object, name, DISPATCH_METHOD, std::move(args));
}

IDispatch* Create(const wchar_t* className) {
    std::wstring progId = std::wstring(L"Tessary_Geometry_Pro.") + className;
    CLSID clsid{};
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(progId.c_str(), &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&object)))) {
        std::printf("FATAL cannot create %s\n", Narrow(progId).c_str());
        std::exit(1);
    }
    return object;
}

std::vector<double> Elements(const VARIANT& array, VARTYPE* elementType, LONG* lowerBound) {
    std::vector<double> values;
    if (!(V_VT(&array) & VT_ARRAY)) return values;
    SAFEARRAY* sa = V_ARRAY(&array);
    VARTYPE type = V_VT(&array) & VT_TYPEMASK;
    if (elementType) *elementType = type;
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(sa, 1, &lower);
    SafeArrayGetUBound(sa, 1, &upper);
    if (lowerBound) *lowerBound = lower;
    for (LONG i = lower; i <= upper; ++i) {
        Var element;
        if (type == VT_VARIANT) {
            SafeArrayGetElement(sa, &i, &element.v);
        } else {
            SafeArrayGetElement(sa, &i, &V_UI1(&element.v));
            V_VT(&element.v) = type;
        }
        values.push_back(element.AsDouble());
    }
    return values;
}

static Var MakeArray(const std::vector<double>& values, VARTYPE type, LONG lowerBound = 0) {
    Var result;
    SAFEARRAY* sa = SafeArrayCreateVector(type, lowerBound, static_cast<ULONG>(values.size()));
    for (LONG i = 0; i < static_cast<LONG>(values.size()); ++i) {
        Var element(values[static_cast<std::size_t>(i)]);
        LONG index = lowerBound + i;
        SafeArrayPutElement(
            sa, &index,
            type == VT_R8 ? static_cast<void*>(&V_R8(&element.v)) : static_cast<void*>(&element.v));
    }
    V_VT(&result.v) = VT_ARRAY | type;
    V_ARRAY(&result.v) = sa;
    return result;
}
Var DoubleArray(const std::vector<double>& values, LONG lowerBound) {
    return MakeArray(values, VT_R8, lowerBound);
}
Var VariantArray(const std::vector<double>& values) {
    return MakeArray(values, VT_VARIANT);
}

Var Typed(VARTYPE type, LONGLONG bits) {
    Var result;
    V_VT(&result.v) = type;
    result.v.llVal = bits;
    return result;
}

Var ArrayOf(VARTYPE element, ULONG rows, ULONG columns) {
    SAFEARRAYBOUND bounds[2] = {{rows, 0}, {columns, 0}};
    Var result;
    V_VT(&result.v) = VT_ARRAY | element;
    V_ARRAY(&result.v) = SafeArrayCreate(element, columns ? 2 : 1, bounds);
    return result;
}

std::wstring ServerPath() {
    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.DLength", &clsid);
    wchar_t guid[40] = {};
    StringFromGUID2(clsid, guid, 40);
    std::wstring key = std::wstring(L"CLSID\\") + guid + L"\\InprocServer32";
    wchar_t path[MAX_PATH] = {};
    LONG size = sizeof(path);
    RegQueryValueW(HKEY_CLASSES_ROOT, key.c_str(), path, &size);
    return path;
}

}  // namespace client

int main() {
    CoInitialize(nullptr);
    for (bool last : {false, true}) {
        for (const auto& test : client::Tests()) {
            if (test.last != last) continue;
            client::g_current = test.name;
            test.run();
        }
    }
    CoUninitialize();
    std::printf("END-OF-SCRIPT passed=%d failed=%d\n", client::g_passed, client::g_failed);
    return client::g_failed;
}
