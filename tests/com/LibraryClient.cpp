// The server as a whole: what the type library says beyond its names and signatures (those are
// pinned by the reference pages the build checks), object lifetime, DllCanUnloadNow, registration.
#include "Client.h"
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
