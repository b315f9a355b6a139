// The server as a whole: what the type library says beyond its names and signatures (those are
// pinned by the reference pages the build checks), object lifetime, DllCanUnloadNow, registration,
// the rules of its IDispatch and of its errors, and the units' events and arrays.
#include <string>
#include <vector>

#include "Client.h"
#include "ModifiedCounter.h"
#include "Tessary_Geometry_Pro.h"

using namespace client;

namespace {

// A type of the library by name, or nullptr; the caller releases it.
ITypeInfo* FindType(ITypeLib* library, const wchar_t* name) {
    ITypeInfo* info = nullptr;
    MEMBERID id = 0;
    USHORT found = 1;
    std::wstring text = name;
    library->FindName(text.data(), 0, &info, &id, &found);
    return found ? info : nullptr;
}

// The vtable position of a property's let or get (INVOKE_PROPERTYPUT / GET), -1 when missing.
int AccessorPosition(ITypeInfo* info, const wchar_t* property, INVOKEKIND kind) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetTypeAttr(&attributes))) return -1;
    int position = -1;
    for (UINT i = 0; i < attributes->cFuncs && position < 0; ++i) {
        FUNCDESC* desc = nullptr;
        if (FAILED(info->GetFuncDesc(i, &desc))) continue;
        BSTR name = nullptr;
        info->GetDocumentation(desc->memid, &name, nullptr, nullptr, nullptr);
        if (name && std::wstring(name) == property && desc->invkind == kind) position = static_cast<int>(i);
        SysFreeString(name);
        info->ReleaseFuncDesc(desc);
    }
    info->ReleaseTypeAttr(attributes);
    return position;
}

}  // namespace

// Early-bound clients call by vtable position: UnitSetting and DAngle list a property's let before
// its get; Vector, Geometry and Geometry_EXE are application objects, the other classes are not.
CLIENT_TEST(VtableOrderAndApplicationObjects) {
    ITypeLib* library = nullptr;
    Check(SUCCEEDED(LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library)), "type library loads");
    if (!library) return;
    const std::pair<const wchar_t*, const wchar_t*> letFirst[] = {
        {L"_UnitSetting", L"UnitID"}, {L"_DAngle", L"Radians"}, {L"_DAngle", L"Degrees"}};
    for (const auto& [interfaceName, property] : letFirst) {
        ITypeInfo* info = FindType(library, interfaceName);
        const int let = info ? AccessorPosition(info, property, INVOKE_PROPERTYPUT) : -1;
        const int get = info ? AccessorPosition(info, property, INVOKE_PROPERTYGET) : -1;
        if (info) info->Release();
        Check(let >= 0 && get > let, Narrow(interfaceName) + "." + Narrow(property) + " lets before it gets");
    }
    const std::pair<const wchar_t*, bool> classes[] = {{L"Vector", true},
                                                       {L"Geometry", true},
                                                       {L"Geometry_EXE", true},
                                                       {L"DLength", false},
                                                       {L"Loop7", false}};
    for (const auto& [name, global] : classes) {
        ITypeInfo* info = FindType(library, name);
        TYPEATTR* attributes = nullptr;
        bool isGlobal = false;
        if (info && SUCCEEDED(info->GetTypeAttr(&attributes))) {
            isGlobal = (attributes->wTypeFlags & TYPEFLAG_FAPPOBJECT) != 0;
            info->ReleaseTypeAttr(attributes);
        }
        Check(info && isGlobal == global,
              Narrow(name) + (global ? " is" : " is not") + " an application object");
        if (info) info->Release();
    }
    library->Release();
}

CLIENT_TEST(LifetimeAndUnloading) {
    HMODULE server = LoadLibraryW(ServerPath().c_str());
    Check(server != nullptr, "server DLL loads");
    if (!server) return;
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    auto canUnload =
        reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")));
    auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
    Check(canUnload && getClassObject, "entry points exported");
    if (!canUnload || !getClassObject) return;
    CoFreeUnusedLibraries();

    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.DLength", &clsid);
    Check(canUnload() == S_OK, "nothing alive: can unload");
    IClassFactory* factory = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    Check(factory != nullptr, "class factory");
    if (!factory) return;
    IClassFactory* again = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&again));
    Check(again == factory, "one class object per class, handed out again rather than made anew");
    if (again) again->Release();
    Check(canUnload() == S_FALSE, "a live class factory keeps the DLL");
    factory->LockServer(TRUE);
    IDispatch* object = nullptr;
    factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
    IUnknown* outer = reinterpret_cast<IUnknown*>(object);
    IUnknown* aggregated = nullptr;
    Check(factory->CreateInstance(outer, IID_IUnknown, reinterpret_cast<void**>(&aggregated)) ==
              CLASS_E_NOAGGREGATION,
          "aggregation refused");
    factory->Release();
    Check(canUnload() == S_FALSE, "a lock keeps the DLL");
    factory = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->LockServer(FALSE);
    factory->Release();
    Check(object && canUnload() == S_FALSE, "a live object keeps the DLL");
    Check(object->AddRef() == 2, "AddRef counts");
    Check(object->Release() == 1, "Release counts");
    IUnknown* unknown = nullptr;
    object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&unknown));
    Check(unknown == reinterpret_cast<IUnknown*>(object), "IUnknown identity");
    unknown->Release();
    IDispatch* copy = nullptr;
    Outcome copied = Method(object, L"Copy");
    copy = copied.result.AsObject();
    Check(copy != nullptr, "Copy returns an object");
    object->Release();
    Check(canUnload() == S_FALSE, "a copy keeps the DLL");
    copied = Outcome{};
    Check(canUnload() == S_OK, "everything released: can unload");
    Check(getClassObject(IID_IDispatch, IID_IClassFactory, reinterpret_cast<void**>(&factory)) ==
              CLASS_E_CLASSNOTAVAILABLE,
          "unknown class refused");
    FreeLibrary(server);
}

// The event through a connection point: raised once per change (the rules themselves are the native
// suite's), FreezeEvents taken by reference, none after Unadvise, and the sink released.
CLIENT_TEST(ModifiedEvent) {
    Object setting(L"UnitSetting");
    ModifiedCounter sink;
    {
        Connection connection(setting, sink);
        Check(connection.ok, "connect a sink to Modified");
        Put(setting, L"UnitID", {Var(1), Var(3)});
        Check(sink.count == 1, "a changed UnitID raises Modified", std::to_string(sink.count));
        VARIANT_BOOL flag = VARIANT_TRUE;
        Method(setting, L"FreezeEvents", {Ref(&flag)});
        Put(setting, L"UnitID", {Var(2), Var(1)});
        Check(sink.count == 1, "none while frozen by a Boolean variable", std::to_string(sink.count));
        Method(setting, L"FreezeEvents", {Var(false)});
        Check(sink.count == 2, "one when unfrozen", std::to_string(sink.count));
        Object target(L"UnitSetting");
        ModifiedCounter targetSink;
        Connection targetConnection(target, targetSink);
        Method(setting, L"CopyTo", {Var(target.p)});
        Check(targetSink.count == 1, "CopyTo raises Modified on the target",
              std::to_string(targetSink.count));
    }
    Put(setting, L"UnitID", {Var(1), Var(4)});
    Check(sink.count == 2, "no event after Unadvise");
    Check(sink.references() == 1, "the server released the sink", std::to_string(sink.references()));
}

CLIENT_TEST(UnitIdsArray) {
    Object setting(L"UnitSetting");
    VARTYPE type = VT_EMPTY;
    LONG lower = -1;
    const std::vector<double> values = Elements(Get(setting, L"UnitIDs").result.v, &type, &lower);
    Check(type == VT_I2 && lower == 0 && values.size() == 11, "UnitIDs is a zero-based array of 11 Integers");
    Put(setting, L"UnitIDs", {DoubleArray({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})});  // taken from Doubles
    Check(Get(setting, L"UnitID", {Var(7)}).result.AsDouble() == 9, "UnitIDs let in storage order");
}

CLIENT_TEST(ErrorInfoAfterVtableCall) {
    Object object(L"DLength");
    _DLength* length = nullptr;
    Check(SUCCEEDED(object->QueryInterface(IID__DLength, reinterpret_cast<void**>(&length))),
          "QueryInterface _DLength");
    if (!length) return;
    ISupportErrorInfo* support = nullptr;
    object->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&support));
    Check(support && support->InterfaceSupportsErrorInfo(IID__DLength) == S_OK,
          "ISupportErrorInfo for _DLength");
    if (support) support->Release();

    Var unit(7);
    double value = 0;
    HRESULT hr = length->get_Value(unit.v, &value);
    Check(hr == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 24111), "HRESULT carries 24111");
    IErrorInfo* error = nullptr;
    Check(GetErrorInfo(0, &error) == S_OK && error, "error object published");
    if (error) {
        BSTR description = nullptr;
        BSTR source = nullptr;
        error->GetDescription(&description);
        error->GetSource(&source);
        Check(description && std::wstring(description) == L"7 is an invalid UnitID for Length",
              "description");
        Check(!source || SysStringLen(source) == 0, "no source");
        SysFreeString(description);
        SysFreeString(source);
        error->Release();
    }
    Check(length->put_Millimetres(std::nan("")) == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 6),
          "NaN refused with 6");
    Check(length->put_Millimetres(HUGE_VAL) == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 6),
          "infinity refused with 6");
    Check(length->get_Millimetres(nullptr) != S_OK, "null out pointer refused");
    length->Release();
}

CLIENT_TEST(DefaultMembersAndText) {
    Object length(L"DLength");
    DISPID put = DISPID_PROPERTYPUT;
    Var twelve(12.0);
    DISPPARAMS params{&twelve.v, &put, 1, 1};
    HRESULT hr =
        length->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
    Check(hr == S_OK, "default member let");
    Check(Get(length, L"Millimetres").result.AsDouble() == 12, "default member let sets Millimetres");
    Var result;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    length->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result.v, nullptr, nullptr);
    Check(result.AsDouble() == 12, "default member get");

    Object angle(L"DAngle");
    Put(angle, L"Degrees", {Var(90.0)});
    Outcome text = Method(angle, L"ValueToString", {Var(1), Var(0), Var(true)});
    Check(text.result.AsText() == L"90 \u00BA", "degree symbol is U+00BA", Narrow(text.result.AsText()));
    Object area(L"DArea");
    Put(area, L"Centimetres", {Var(2.0)});
    Check(Method(area, L"ValueToString", {Var(1)}).result.AsText() == L"2 (cm\u00B2)",
          "area symbol cm\u00B2");
}

CLIENT_TEST(HostileArguments) {
    Object length(L"DLength");
    struct Case {
        const char* name;
        Var unit;
        int number;
    };
    const Case cases[] = {
        {"Nothing as unit", Typed(VT_DISPATCH), 0},
        {"null IUnknown as unit", Typed(VT_UNKNOWN), 0},
        {"NaN as unit", Var(std::nan("")), 6},
        {"infinity as unit", Var(HUGE_VAL), 6},
        {"two-dimensional array as unit", ArrayOf(VT_R8, 2, 2), 13},
        {"Null as unit", Typed(VT_NULL), 13},
        {"empty text as unit", Var(L""), 13},
    };
    for (const Case& c : cases) {
        Outcome outcome = Get(length, L"Value", {c.unit});
        Check(outcome.number == c.number, c.name, "got " + std::to_string(outcome.number));
    }
    Outcome wrongType = Method(Object(L"UnitSetting"), L"CopyTo", {Var(length.p)});
    Check(wrongType.number != 0, "a DLength where a UnitSetting is typed is refused");
}

// The rules of the library's own IDispatch beyond what a script shows: names and named arguments
// in any case (VBA's x:=), the counts of arguments, malformed DISPPARAMS, and unknown members or kinds
// of call.
namespace {

struct Lookup {
    HRESULT hr;
    std::vector<DISPID> ids;
};

Lookup IdsOf(IDispatch* object, std::vector<const wchar_t*> names) {
    Lookup found{S_OK, std::vector<DISPID>(names.size(), 12345)};
    std::vector<LPOLESTR> list;
    for (const wchar_t* n : names) list.push_back(const_cast<LPOLESTR>(n));
    found.hr = object->GetIDsOfNames(IID_NULL, list.data(), static_cast<UINT>(list.size()),
                                     LOCALE_USER_DEFAULT, found.ids.data());
    return found;
}

// Invoke with the arguments as given (rgvarg order: named first, then positional last-first).
HRESULT RawInvoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> rgvarg,
                  std::vector<DISPID> named, VARIANT* result) {
    DISPPARAMS params{rgvarg.empty() ? nullptr : rgvarg.data(), named.empty() ? nullptr : named.data(),
                      static_cast<UINT>(rgvarg.size()), static_cast<UINT>(named.size())};
    EXCEPINFO info{};
    const HRESULT hr =
        object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &info, nullptr);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    return hr;
}

}  // namespace

CLIENT_TEST(DispatchNamesAndNamedArguments) {
    Object vector(L"Vector");
    // vRotate(v, r): the member and its parameters by name, in any case.
    const Lookup ids = IdsOf(vector, {L"VROTATE", L"R", L"v"});
    Check(ids.hr == S_OK && ids.ids[1] == 1 && ids.ids[2] == 0,
          "member and parameter names in any case give their ids");
    const Lookup unknown = IdsOf(vector, {L"vRotate", L"angle"});
    Check(
        unknown.hr == DISP_E_UNKNOWNNAME && unknown.ids[0] == ids.ids[0] && unknown.ids[1] == DISPID_UNKNOWN,
        "an unknown parameter name is DISPID_UNKNOWN, the member's id still given");
    const Lookup missing = IdsOf(vector, {L"NoSuchMember"});
    Check(missing.hr == DISP_E_UNKNOWNNAME && missing.ids[0] == DISPID_UNKNOWN, "an unknown member name");

    // Named in reverse order: r := pi/2, v := (1, 0, 0) turns v a quarter to (0, 1, 0).
    double quarter = 1.5707963267948966;
    Var point = VariantArray({1, 0, 0});
    Var angle = Ref(&quarter);
    Var result;
    const HRESULT hr = RawInvoke(vector, ids.ids[0], DISPATCH_METHOD, {angle.v, point.v}, {1, 0}, &result.v);
    const std::vector<double> turned = SUCCEEDED(hr) ? Elements(result.v) : std::vector<double>{};
    Check(turned.size() >= 2 && std::fabs(turned[0]) < 1e-15 && std::fabs(turned[1] - 1) < 1e-15,
          "named arguments reach their parameters whatever their order");
}

CLIENT_TEST(DispatchArgumentCountsAndMalformedCalls) {
    Object geometry(L"Geometry");
    const DISPID degToRad = IdsOf(geometry, {L"DegToRad"}).ids[0];
    Var one(1.0), two(2.0), result;
    struct Case {
        const char* name;
        DISPID id;
        WORD flags;
        std::vector<VARIANT> args;
        HRESULT expected;
    };
    const Case cases[] = {
        {"no argument for a required parameter", degToRad, DISPATCH_METHOD, {}, DISP_E_PARAMNOTOPTIONAL},
        {"one argument too many", degToRad, DISPATCH_METHOD, {one.v, two.v}, DISP_E_BADPARAMCOUNT},
        {"an id no member has", 4242, DISPATCH_METHOD, {one.v}, DISP_E_MEMBERNOTFOUND},
        {"a method called as a property put", degToRad, DISPATCH_PROPERTYPUT, {one.v}, DISP_E_MEMBERNOTFOUND},
    };
    for (const Case& c : cases) {
        std::vector<DISPID> named;
        if (c.flags == DISPATCH_PROPERTYPUT) named.push_back(DISPID_PROPERTYPUT);
        const HRESULT hr = RawInvoke(geometry, c.id, c.flags, c.args, named, &result.v);
        Check(hr == c.expected, c.name, "HRESULT " + std::to_string(static_cast<unsigned long>(hr)));
    }
    DISPPARAMS broken{nullptr, nullptr, 1, 0};
    Check(geometry->Invoke(degToRad, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &broken, &result.v,
                           nullptr, nullptr) == E_INVALIDARG,
          "an argument count without arguments is refused");
}

namespace {

bool KeyExists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

}  // namespace

CLIENT_TEST_LAST(UnregisterAndRegisterAgain) {
    std::wstring path = ServerPath();
    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.Loop7", &clsid);
    wchar_t guid[40] = {};
    StringFromGUID2(clsid, guid, 40);
    wchar_t library[40] = {};
    StringFromGUID2(LIBID_Tessary_Geometry_Pro, library, 40);
    wchar_t loopInterface[40] = {};
    StringFromGUID2(IID__Loop7, loopInterface, 40);
    const std::wstring keys[] = {
        L"Software\\Classes\\Tessary_Geometry_Pro.Loop7",
        std::wstring(L"Software\\Classes\\CLSID\\") + guid,
        std::wstring(L"Software\\Classes\\TypeLib\\") + library,
        std::wstring(L"Software\\Classes\\Interface\\") + loopInterface,
    };
    HMODULE server = LoadLibraryW(path.c_str());
    using Entry = HRESULT(STDAPICALLTYPE*)();
    auto unregister =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(server, "DllUnregisterServer")));
    auto reregister =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(server, "DllRegisterServer")));
    Check(unregister && reregister, "registration entry points");
    if (!unregister || !reregister) return;
    for (const auto& key : keys) Check(KeyExists(HKEY_LOCAL_MACHINE, key), "registered: " + Narrow(key));
    Check(unregister() == S_OK, "DllUnregisterServer");
    for (const auto& key : keys) {
        Check(!KeyExists(HKEY_LOCAL_MACHINE, key) && !KeyExists(HKEY_CURRENT_USER, key),
              "removed: " + Narrow(key));
    }
    Check(reregister() == S_OK, "DllRegisterServer");
    for (const auto& key : keys)
        Check(KeyExists(HKEY_LOCAL_MACHINE, key), "registered again: " + Narrow(key));
    FreeLibrary(server);
}
