// The hostile calls a script cannot make: every member of every class, found in the type library,
// called late-bound with NaN, infinities, null strings and objects, odd Variant types and malformed
// arrays in each argument position. Every call must come back with a clean error or a result that
// holds no infinity or NaN; then the process's memory across 10,000 objects and the largest matrix.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "Client.h"

#include <psapi.h>  // after the Windows headers Client.h brings

namespace client {
namespace {

struct Member {
    DISPID id;
    WORD flags;
    UINT arguments;
    std::wstring name;
};

// The members of an object's interface, with the kind of call each takes.
std::vector<Member> MembersOf(IDispatch* object) {
    std::vector<Member> members;
    ITypeInfo* info = nullptr;
    if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) || !info) return members;
    TYPEATTR* attributes = nullptr;
    if (SUCCEEDED(info->GetTypeAttr(&attributes))) {
        for (UINT i = 0; i < attributes->cFuncs; ++i) {
            FUNCDESC* desc = nullptr;
            if (FAILED(info->GetFuncDesc(i, &desc))) continue;
            BSTR name = nullptr;
            info->GetDocumentation(desc->memid, &name, nullptr, nullptr, nullptr);
            UINT arguments = 0;
            for (SHORT p = 0; p < desc->cParams; ++p)
                if (!(desc->lprgelemdescParam[p].paramdesc.wParamFlags &
                      (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)))
                    ++arguments;
            WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
            if (desc->invkind == INVOKE_PROPERTYPUT) flags = DISPATCH_PROPERTYPUT;
            if (desc->invkind == INVOKE_PROPERTYPUTREF) flags = DISPATCH_PROPERTYPUTREF;
            if (desc->memid < 0x60000000 && name)  // IDispatch's own members are not the library's
                members.push_back({desc->memid, flags, arguments, name});
            SysFreeString(name);
            info->ReleaseFuncDesc(desc);
        }
        info->ReleaseTypeAttr(attributes);
    }
    info->Release();
    return members;
}

// The hostile values, each with a name; nested ones (by reference) point into `cells`.
struct Hostile {
    std::vector<Var> values;
    std::vector<std::string> names;
    std::vector<Var> cells = std::vector<Var>(4);
    double byRefDouble = std::numeric_limits<double>::infinity();
    IDispatch* wrongObject;

    explicit Hostile(IDispatch* wrong) : wrongObject(wrong) {
        const double nan = std::numeric_limits<double>::quiet_NaN(),
                     inf = std::numeric_limits<double>::infinity();
        Add("NaN", Var(nan));
        Add("+infinity", Var(inf));
        Add("-infinity", Var(-inf));
        Add("-0", Var(-0.0));
        Add("a denormal", Var(4.9e-324));
        Add("1.7E+308", Var(1.7e308));
        Add("Empty", Var());
        Add("Null", Typed(VT_NULL));
        Add("a missing argument", Typed(VT_ERROR, static_cast<ULONG>(DISP_E_PARAMNOTFOUND)));
        Add("an error value", Typed(VT_ERROR, 5));
        Add("Nothing", Var(static_cast<IDispatch*>(nullptr)));
        Add("an object of another class", Var(wrong));
        Add("a null IUnknown", Typed(VT_UNKNOWN));
        Add("a null string", Typed(VT_BSTR));
        Add("100,000 characters", Var(std::wstring(100000, L'7').c_str()));
        Add("empty text", Var(L""));
        Add("True", Var(true));
        Add("32768", Var(32768));
        Add("text \"NaN\"", Var(L"NaN"));
        Add("text \"1e999\"", Var(L"1e999"));
        Add("the largest Currency", Typed(VT_CY, std::numeric_limits<LONGLONG>::max()));
        Var date;
        V_VT(&date.v) = VT_DATE;
        V_DATE(&date.v) = 2958465.99;
        Add("a Date", date);
        Add("the largest Long", Typed(VT_I4, std::numeric_limits<LONG>::max()));
        Add("-32768", Typed(VT_I2, 0x8000));
        Add("an array holding NaN", DoubleArray({1, nan, 3}));
        Add("an array of 1E+308", DoubleArray({1e308, -1e308, 1e308}));
        Add("an array from -5", DoubleArray({1, 2, 3}, -5));
        Add("an empty array", ArrayOf(VT_VARIANT, 0));
        Add("an array of empty strings", ArrayOf(VT_BSTR, 3));
        Add("a 3 x 3 array", ArrayOf(VT_R8, 3, 3));
        Var cube;
        SAFEARRAYBOUND bounds[3] = {{3, 0}, {3, 0}, {2, 0}};
        V_VT(&cube.v) = VT_ARRAY | VT_VARIANT;
        V_ARRAY(&cube.v) = SafeArrayCreate(VT_VARIANT, 3, bounds);
        Add("a 3 x 3 x 2 array", cube);
        Var nested = VariantArray({1, 2});  // Array(Array(1, 2), 2) as a script makes it
        LONG first = 0;
        Var inner = VariantArray({1, 2});
        SafeArrayPutElement(V_ARRAY(&nested.v), &first, &inner.v);
        Add("nested arrays", nested);
        cells[0] = Var(nan);
        Add("a variable holding NaN", Ref(&cells[0].v));
        Add("a Double variable holding infinity", Ref(&byRefDouble));
    }

    void Add(const char* name, const Var& value) {
        names.push_back(name);
        values.push_back(value);
    }
};

// Calls by dispatch id; arguments in published order. `touched` tells whether the callee changed
// an argument passed by value: those belong to the caller (a callee that writes an in/out result
// into one frees the caller's array under its feet).
HRESULT Invoke(IDispatch* object, const Member& member, std::vector<VARIANT> args, VARIANT* result,
               EXCEPINFO& info, bool& touched) {
    std::vector<VARIANT> reversed(args.rbegin(), args.rend());
    const std::vector<VARIANT> before = reversed;
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = member.flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    DISPPARAMS params{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()),
                      isPut ? 1u : 0u};
    UINT argError = 0;
    const HRESULT hr = object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, member.flags, &params, result,
                                      &info, &argError);
    touched = false;
    for (std::size_t a = 0; a < before.size(); ++a)
        touched = touched || std::memcmp(&before[a], &reversed[a], sizeof(VARIANT)) != 0;
    return hr;
}

bool AllFinite(const VARIANT& value) {
    if (V_VT(&value) == VT_R8) return std::isfinite(V_R8(&value));
    if ((V_VT(&value) & VT_ARRAY) && (V_VT(&value) & VT_TYPEMASK) == VT_R8) {
        for (double d : Elements(value))
            if (!std::isfinite(d)) return false;
    }
    return true;
}

// A clean outcome: success with finite numbers, or an error a script reads with a known number and
// a description.
std::string Unclean(HRESULT hr, const EXCEPINFO& info, const VARIANT& result) {
    if (SUCCEEDED(hr)) return AllFinite(result) ? "" : "a result that is not finite";
    static const std::set<HRESULT> runtimeErrors = {DISP_E_TYPEMISMATCH,     DISP_E_BADPARAMCOUNT,
                                                    DISP_E_PARAMNOTOPTIONAL, DISP_E_OVERFLOW,
                                                    DISP_E_MEMBERNOTFOUND,   DISP_E_PARAMNOTFOUND};
    if (runtimeErrors.count(hr)) return "";
    if (hr != DISP_E_EXCEPTION) return "HRESULT " + std::to_string(static_cast<unsigned long>(hr));
    static const std::set<int> numbers = {5, 6, 7, 9, 11, 13, 91, 94, 424, 438, 450, 713, 2411, 24111};
    const int number = HRESULT_FACILITY(info.scode) == FACILITY_CONTROL ? HRESULT_CODE(info.scode) : -1;
    const std::wstring text = info.bstrDescription ? info.bstrDescription : L"";
    if (!numbers.count(number)) return "error " + std::to_string(number) + " " + Narrow(text);
    if (text.empty() || text.rfind(L"Automation error", 0) == 0) return "an unreadable description";
    return "";
}

const wchar_t* kClasses[] = {L"DLength",       L"DArea",         L"DVolume",       L"DMomentOfInertia",
                             L"DForce",        L"DForceMoment",  L"DPressure",     L"DAngle",
                             L"DForceDensity", L"DForcePerLine", L"DForcePerArea", L"UnitSetting",
                             L"Geometry_EXE",  L"Vector",        L"Geometry",      L"Matrix",
                             L"UCS",           L"Loop7",         L"InertiaBlock"};

// Dialogs would wait for a person, and the placeholders only show their message: not swept here.
bool Swept(const std::wstring& name) {
    return name.rfind(L"Edit", 0) != 0 && name != L"InverseWithExcelMethod" &&
           name != L"DisplayOnExcelWorksheet" && name != L"PrintToTextFile";
}

}  // namespace

CLIENT_TEST(HostileSweepOfEveryMember) {
    Object wrong(L"Matrix");
    Hostile hostile(wrong);
    int calls = 0, unclean = 0;
    const DWORD started = GetTickCount();
    for (const wchar_t* className : kClasses) {
        Object object(className);
        if (!object.p) {
            Check(false, "create " + Narrow(className));
            continue;
        }
        for (const Member& member : MembersOf(object)) {
            if (!Swept(member.name) || member.arguments == 0) continue;
            for (std::size_t v = 0; v < 2 * hostile.values.size(); ++v) {
                // The hostile value in each position in turn (the others a plain 1), then in all; by
                // value, then in a variable passed by reference as scripts pass their variables.
                const bool byReference = v >= hostile.values.size();
                const Var& value = hostile.values[v % hostile.values.size()];
                for (UINT position = 0; position <= member.arguments; ++position) {
                    std::vector<VARIANT> args;
                    std::vector<Var> variables(member.arguments, value);
                    Var one(1.0);
                    for (UINT a = 0; a < member.arguments; ++a) {
                        const Var reference = Ref(&variables[a].v);
                        args.push_back(a != position && position != member.arguments ? one.v
                                       : byReference                                 ? reference.v
                                                                                     : value.v);
                    }
                    Var result;
                    EXCEPINFO info{};
                    if (std::getenv("TGP_TRACE"))
                        std::fprintf(stderr, "%ls.%ls %s %u\n", className, member.name.c_str(),
                                     hostile.names[v % hostile.values.size()].c_str(), position);
                    bool touched = false;
                    const HRESULT hr = Invoke(object, member, args, &result.v, info, touched);
                    const std::string fault =
                        touched ? "an argument passed by value was changed" : Unclean(hr, info, result.v);
                    ++calls;
                    if (!fault.empty() && ++unclean <= 40) {
                        Check(false,
                              Narrow(className) + "." + Narrow(member.name) + " given " +
                                  hostile.names[v % hostile.values.size()] +
                                  (byReference ? " by reference" : "") +
                                  (position == member.arguments ? " everywhere"
                                                                : " at " + std::to_string(position)),
                              fault);
                    }
                    SysFreeString(info.bstrSource);
                    SysFreeString(info.bstrDescription);
                    SysFreeString(info.bstrHelpFile);
                }
            }
        }
    }
    std::printf("hostile sweep: %d calls, %d unclean, %lu ms\n", calls, unclean, GetTickCount() - started);
    Check(calls > 5000, "the sweep made " + std::to_string(calls) + " calls");
    Check(unclean == 0,
          std::to_string(unclean) + " unclean outcomes of " + std::to_string(calls) + " hostile calls");
}

namespace {

SIZE_T PrivateBytes() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    K32GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                            sizeof counters);
    // The commit charge: Windows reports it in both fields, Wine only in PagefileUsage.
    return counters.PrivateUsage ? counters.PrivateUsage : counters.PagefileUsage;
}

// A new object from the class object itself: CoCreateInstance would ask the registry each time,
// which under Wine costs more than everything measured here.
IDispatch* Make(IClassFactory* factory) {
    IDispatch* object = nullptr;
    if (factory) factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
    return object;
}

IClassFactory* FactoryOf(const wchar_t* className) {
    CLSID clsid{};
    CLSIDFromProgID((std::wstring(L"Tessary_Geometry_Pro.") + className).c_str(), &clsid);
    IClassFactory* factory = nullptr;
    CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                     reinterpret_cast<void**>(&factory));
    return factory;
}

void MakeAndDrop(int count) {
    IClassFactory* loops = FactoryOf(L"Loop7");
    IClassFactory* lengths = FactoryOf(L"DLength");
    for (int i = 0; i < count; ++i) {
        Object loop(Make(loops));
        Method(loop, L"InitFromCoordinates",
               {VariantArray({0, 0, 10, 0, 10, 10}), VariantArray({0, 0.5, 0})});
        Outcome got = Method(loop, L"InertiaBlock");
        IDispatch* held = got.result.AsObject();
        if (held) held->AddRef();  // a reference of our own, released by Object
        Object block(held);
        Object length(Make(lengths));
        Put(length, L"Feet", {Var(static_cast<double>(i))});
    }
    if (loops) loops->Release();
    if (lengths) lengths->Release();
}

}  // namespace

CLIENT_TEST(TenThousandObjectsLeaveNoMemoryBehind) {
    const DWORD started = GetTickCount();
    MakeAndDrop(500);  // warm up the runtime's caches and the heap
    const SIZE_T before = PrivateBytes();
    MakeAndDrop(10000);
    const SIZE_T after = PrivateBytes();
    const long long growth = static_cast<long long>(after) - static_cast<long long>(before);
    std::printf("10,000 objects: private memory %+lld bytes, %lu ms\n", growth, GetTickCount() - started);
    Check(growth < 1024 * 1024, "10,000 loops, blocks and lengths made and released",
          "private memory grew by " + std::to_string(growth) + " bytes");

    // The largest matrix: promised (at no cost until written) or refused with 7; shrinking it gives
    // the memory back.
    Object matrix(L"Matrix");
    const SIZE_T small = PrivateBytes();
    Outcome huge = Method(matrix, L"Reset", {Var(32767), Var(32767)});
    Check(huge.number == 0 || (huge.number == 7 && huge.description == L"Out of memory"),
          "Reset(32767, 32767) succeeds or raises 7", Narrow(huge.description));
    std::printf("Reset(32767, 32767): error %d, commit %+lld bytes\n", huge.number,
                static_cast<long long>(PrivateBytes()) - static_cast<long long>(small));
    Method(matrix, L"Reset", {Var(1), Var(1)});
    const long long kept = static_cast<long long>(PrivateBytes()) - static_cast<long long>(small);
    Check(kept < 16 * 1024 * 1024, "Reset(1, 1) gives the 8 GB back",
          "kept " + std::to_string(kept) + " bytes");
}

// Hosts that ask for the class object on every CreateObject and never release it: one cached
// object per class, so nothing grows. Runs last, since it holds references until its end.
CLIENT_TEST_LAST(ClassObjectsAreCachedNotLeaked) {
    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.DLength", &clsid);
    std::vector<IClassFactory*> held;
    IClassFactory* first = nullptr;
    CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                     reinterpret_cast<void**>(&first));
    const SIZE_T before = PrivateBytes();
    for (int i = 0; i < 10000; ++i) {
        IClassFactory* factory = nullptr;
        CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                         reinterpret_cast<void**>(&factory));
        held.push_back(factory);
    }
    const long long growth = static_cast<long long>(PrivateBytes()) - static_cast<long long>(before);
    bool same = first != nullptr;
    for (IClassFactory* f : held) same = same && f == first;
    Check(same, "every request gets the one class object of DLength");
    Check(growth < 256 * 1024, "10,000 unreleased class objects cost nothing",
          "grew " + std::to_string(growth) + " bytes");
    for (IClassFactory* f : held)
        if (f) f->Release();
    if (first) first->Release();
}

}  // namespace client
