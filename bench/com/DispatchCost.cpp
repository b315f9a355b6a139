// In-process cost of one late-bound call, the way a script engine makes it (names looked up, then
// Invoke), for the library's objects and for Scripting.Dictionary as the reference.
// Run under Wine: scripts/wine-run build/win64/automation/tgp_dispatch_bench.exe [calls]
#include <windows.h>
#include <oleauto.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

IDispatch* Create(const wchar_t* progId) {
    CLSID clsid;
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(progId, &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&object))))
        std::printf("cannot create %ls\n", progId);
    return object;
}

// Calls name(argument) `calls` times, looking the name up each time as script engines do; returns
// calls per second of the lookup and the call together, and of the call alone.
void Measure(const char* label, IDispatch* object, const wchar_t* name, VARIANT argument, WORD flags,
             long calls) {
    using Clock = std::chrono::steady_clock;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    DISPID id = 0;
    DISPPARAMS params{&argument, nullptr, 1, 0};
    VARIANT result;
    VariantInit(&result);
    auto timed = [&](bool lookUp) {
        const auto start = Clock::now();
        for (long i = 0; i < calls; ++i) {
            if (lookUp || i == 0) object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
            object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &result, nullptr, nullptr);
            VariantClear(&result);
        }
        return calls / std::chrono::duration<double>(Clock::now() - start).count();
    };
    const double both = timed(true), invokeOnly = timed(false);
    std::printf("%-28s %12.0f calls/s with the name lookup, %12.0f calls/s Invoke alone\n", label, both,
                invokeOnly);
}

}  // namespace

int main(int argc, char** argv) {
    const long calls = argc > 1 ? std::atol(argv[1]) : 200000;
    CoInitialize(nullptr);
    IDispatch* dictionary = Create(L"Scripting.Dictionary");
    IDispatch* length = Create(L"Tessary_Geometry_Pro.DLength");
    IDispatch* vector = Create(L"Tessary_Geometry_Pro.Vector");
    if (!dictionary || !length || !vector) return 1;
    VARIANT key, unit, point;
    V_VT(&key) = VT_BSTR;
    V_BSTR(&key) = SysAllocString(L"key");
    VARIANT one;
    V_VT(&one) = VT_I4;
    V_I4(&one) = 1;
    VARIANT args[2] = {one, key};
    DISPPARAMS add{args, nullptr, 2, 0};
    DISPID addId;
    LPOLESTR addName[] = {const_cast<LPOLESTR>(L"Add")};
    dictionary->GetIDsOfNames(IID_NULL, addName, 1, LOCALE_USER_DEFAULT, &addId);
    dictionary->Invoke(addId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &add, nullptr, nullptr,
                       nullptr);
    V_VT(&unit) = VT_I2;
    V_I2(&unit) = 3;
    SAFEARRAYBOUND bound{3, 0};
    V_VT(&point) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&point) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    for (LONG i = 0; i < 3; ++i) {
        VARIANT v;
        V_VT(&v) = VT_R8;
        V_R8(&v) = 3.0 + 4 * i;
        SafeArrayPutElement(V_ARRAY(&point), &i, &v);
    }
    const WORD get = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    Measure("Scripting.Dictionary.Item", dictionary, L"Item", key, get, calls);
    Measure("DLength.Value(3)", length, L"Value", unit, get, calls);
    Measure("Vector.vLength(point)", vector, L"vLength", point, get, calls);
    VariantClear(&key);
    VariantClear(&point);
    dictionary->Release();
    length->Release();
    vector->Release();
    CoUninitialize();
    return 0;
}
