#pragma once
// The C++ client of the automation suite: what scripts under Wine cannot do (events, arrays of
// Double, vtable calls and IErrorInfo, reference counts, the type library). It calls the registered
// server through the COM runtime, mostly late-bound like a script, and prints the same summary line
// as the scripts ("END-OF-SCRIPT passed=N failed=M").
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "OleBase.h"

namespace client {

// One registered check group.
struct TestCase {
    const char* name;
    void (*run)();
    bool last;  // changes the registration: runs after every other group
};
std::vector<TestCase>& Tests();
struct Registrar {
    Registrar(const char* name, void (*run)(), bool last = false) { Tests().push_back({name, run, last}); }
};
#define CLIENT_TEST(Name)                                   \
    static void Name();                                     \
    static client::Registrar Name##_registrar(#Name, Name); \
    static void Name()
#define CLIENT_TEST_LAST(Name)                                    \
    static void Name();                                           \
    static client::Registrar Name##_registrar(#Name, Name, true); \
    static void Name()

void Check(bool ok, const std::string& name, const std::string& detail = "");
void CheckNear(double actual, double expected, const std::string& name, double tolerance = 1e-12);
std::string Narrow(const std::wstring& text);

// A VARIANT that clears itself.
struct Var {
    VARIANT v;
    Var() { VariantInit(&v); }
    explicit Var(double d) : Var() {
        V_VT(&v) = VT_R8;
        V_R8(&v) = d;
    }
    explicit Var(int i) : Var() {
        V_VT(&v) = VT_I4;
        V_I4(&v) = i;
    }
    explicit Var(bool b) : Var() {
        V_VT(&v) = VT_BOOL;
        V_BOOL(&v) = b ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit Var(const wchar_t* s) : Var() {
        V_VT(&v) = VT_BSTR;
        V_BSTR(&v) = SysAllocString(s);
    }
    explicit Var(IDispatch* d) : Var() {
        V_VT(&v) = VT_DISPATCH;
        V_DISPATCH(&v) = d;
        if (d) d->AddRef();
    }
    Var(const Var& other) : Var() { VariantCopy(&v, const_cast<VARIANT*>(&other.v)); }
    Var& operator=(const Var& other) {
        if (this != &other) VariantCopy(&v, const_cast<VARIANT*>(&other.v));
        return *this;
    }
    ~Var() { VariantClear(&v); }
    double AsDouble() const;
    std::wstring AsText() const;
    IDispatch* AsObject() const { return V_VT(&v) == VT_DISPATCH ? V_DISPATCH(&v) : nullptr; }
};

// The outcome of a late-bound call: HRESULT, result and the error the callee reported.
struct Outcome {
    HRESULT hr = S_OK;
    Var result;
    int number = 0;  // Err.Number a script would see (0 on success)
    std::wstring description;
};

// Calls a member by name; args in published order (they are reversed for DISPPARAMS).
Outcome Call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Var> args = {});
Outcome Get(IDispatch* object, const wchar_t* name, std::vector<Var> args = {});
Outcome Put(IDispatch* object, const wchar_t* name, std::vector<Var> args);  // last arg is the value
Outcome Method(IDispatch* object, const wchar_t* name, std::vector<Var> args = {});

// A new instance by ProgID suffix ("DLength"); the caller releases it.
IDispatch* Create(const wchar_t* className);
// Owns one reference.
struct Object {
    IDispatch* p = nullptr;
    explicit Object(IDispatch* object) : p(object) {}
    explicit Object(const wchar_t* className) : p(Create(className)) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() {
        if (p) p->Release();
    }
    IDispatch* operator->() const { return p; }
    operator IDispatch*() const { return p; }
};

// The elements of a one-dimensional array of any numeric type, read from its lower bound; the
// element type and the lower bound are reported through the out parameters.
std::vector<double> Elements(const VARIANT& array, VARTYPE* elementType = nullptr,
                             LONG* lowerBound = nullptr);
// A VT_ARRAY|VT_R8 argument from the lower bound (a zero-based VT_ARRAY|VT_VARIANT one).
Var DoubleArray(const std::vector<double>& values, LONG lowerBound = 0);
Var VariantArray(const std::vector<double>& values);

// A VARIANT of the type holding these bits (VT_NULL, Nothing as VT_DISPATCH, a null VT_UNKNOWN or
// VT_BSTR, an error code, a Currency, integers), and an array of the element type: rows long, or
// rows x columns when columns is not 0, its elements zero.
Var Typed(VARTYPE type, LONGLONG bits = 0);
Var ArrayOf(VARTYPE element, ULONG rows, ULONG columns = 0);

// A by-reference argument pointing at the caller's variable, as VBA passes `x` of that type.
template <class T>
Var Ref(T* variable) {
    Var ref;
    if constexpr (std::is_same_v<T, VARIANT>) {
        V_VT(&ref.v) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&ref.v) = variable;
    } else if constexpr (std::is_same_v<T, double>) {
        V_VT(&ref.v) = VT_BYREF | VT_R8;
        V_R8REF(&ref.v) = variable;
    } else if constexpr (std::is_same_v<T, float>) {
        V_VT(&ref.v) = VT_BYREF | VT_R4;
        V_R4REF(&ref.v) = variable;
    } else if constexpr (std::is_same_v<T, short>) {
        V_VT(&ref.v) = VT_BYREF | VT_I2;
        V_I2REF(&ref.v) = variable;
    } else if constexpr (std::is_same_v<T, LONG>) {
        V_VT(&ref.v) = VT_BYREF | VT_I4;
        V_I4REF(&ref.v) = variable;
    } else if constexpr (std::is_same_v<T, VARIANT_BOOL>) {
        V_VT(&ref.v) = VT_BYREF | VT_BOOL;
        V_BOOLREF(&ref.v) = variable;
    } else {
        static_assert(std::is_same_v<T, IDispatch*>);
        V_VT(&ref.v) = VT_BYREF | VT_DISPATCH;
        V_DISPATCHREF(&ref.v) = variable;
    }
    return ref;
}

// The path of the registered DLL (from the registry).
std::wstring ServerPath();

}  // namespace client
