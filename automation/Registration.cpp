#include "Registration.h"

#include <string>

#include "ClassTable.h"
#include "Server.h"
#include "Tessary_Geometry_Pro.h"
#include "Version.h"

namespace tgp::automation {
namespace {

const std::wstring kLibraryName = L"Tessary_Geometry_Pro";
const wchar_t kClassesKey[] = L"Software\\Classes\\";

// The type library's version, major.minor of the project's.
std::wstring TypeLibraryVersion() {
    return std::to_wstring(TGP_VERSION_MAJOR) + L"." + std::to_wstring(TGP_VERSION_MINOR);
}

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

LONG SetValue(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& value) {
    HKEY key = nullptr;
    LONG status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status = RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                            static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    return status;
}

// The keys of one class: CLSID\{...} with its server, ProgID and type library, and the ProgID.
LONG WriteClass(HKEY root, const ClassEntry& entry) {
    const std::wstring classes = kClassesKey;
    const std::wstring progId = kLibraryName + L"." + entry.name;
    const std::wstring clsidKey = classes + L"CLSID\\" + GuidText(entry.clsid);
    const std::wstring values[][3] = {
        {clsidKey, L"", progId},
        {clsidKey + L"\\InprocServer32", L"", Server::ModulePath()},
        {clsidKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {clsidKey + L"\\ProgID", L"", progId},
        {clsidKey + L"\\TypeLib", L"", GuidText(LIBID_Tessary_Geometry_Pro)},
        {clsidKey + L"\\Version", L"", TypeLibraryVersion()},
        {classes + progId, L"", progId},
        {classes + progId + L"\\CLSID", L"", GuidText(entry.clsid)},
    };
    for (const auto& value : values) {
        LONG status = SetValue(root, value[0], value[1].empty() ? nullptr : value[1].c_str(), value[2]);
        if (status != ERROR_SUCCESS) return status;
    }
    return ERROR_SUCCESS;
}

void RemoveClasses(HKEY root) {
    const std::wstring classes = kClassesKey;
    for (const ClassEntry& entry : Classes()) {
        RegDeleteTreeW(root, (classes + L"CLSID\\" + GuidText(entry.clsid)).c_str());
        RegDeleteTreeW(root, (classes + kLibraryName + L"." + entry.name).c_str());
    }
}

SYSKIND OwnSysKind() {
    return sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
}

// Per-user entry points of oleaut32 that the mingw headers lack, looked up at run time.
template <class Function>
Function OleAutomationEntry(const char* name) {
    HMODULE module = GetModuleHandleW(L"oleaut32.dll");
    return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)))
                  : nullptr;
}

using RegisterForUserFunction = HRESULT(WINAPI*)(ITypeLib*, OLECHAR*, OLECHAR*);
using UnregisterFunction = HRESULT(WINAPI*)(REFGUID, WORD, WORD, LCID, SYSKIND);

void UnregisterTypeLibrary(const char* entry) {
    if (auto unregister = OleAutomationEntry<UnregisterFunction>(entry))
        unregister(LIBID_Tessary_Geometry_Pro, TGP_VERSION_MAJOR, TGP_VERSION_MINOR, LOCALE_NEUTRAL,
                   OwnSysKind());
}

HRESULT RegisterTypeLibrary(bool perMachine) {
    ITypeLib* library = Server::TypeLibrary();
    if (!library) return TYPE_E_CANTLOADLIBRARY;
    auto path = const_cast<LPOLESTR>(Server::ModulePath());
    if (perMachine) return RegisterTypeLib(library, path, nullptr);
    auto registerForUser = OleAutomationEntry<RegisterForUserFunction>("RegisterTypeLibForUser");
    return registerForUser ? registerForUser(library, path, nullptr) : E_NOTIMPL;
}

}  // namespace

HRESULT RegisterServer() {
    bool perMachine = true;
    for (const ClassEntry& entry : Classes()) {
        LONG status = WriteClass(perMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, entry);
        if (status == ERROR_ACCESS_DENIED && perMachine) {
            // No administrator rights: the whole registration goes to the user's own classes.
            RemoveClasses(HKEY_LOCAL_MACHINE);
            perMachine = false;
            status = WriteClass(HKEY_CURRENT_USER, entry);
        }
        if (status != ERROR_SUCCESS) {
            UnregisterServer();
            return SELFREG_E_CLASS;
        }
    }
    HRESULT hr = RegisterTypeLibrary(perMachine);
    if (FAILED(hr)) {
        UnregisterServer();
        return SELFREG_E_TYPELIB;
    }
    return S_OK;
}

HRESULT UnregisterServer() {
    RemoveClasses(HKEY_LOCAL_MACHINE);
    RemoveClasses(HKEY_CURRENT_USER);
    UnRegisterTypeLib(LIBID_Tessary_Geometry_Pro, TGP_VERSION_MAJOR, TGP_VERSION_MINOR, LOCALE_NEUTRAL,
                      OwnSysKind());
    UnregisterTypeLibrary("UnRegisterTypeLibForUser");
    // The library's own key, once no version of it is left (RegDeleteKey refuses a key with subkeys).
    const std::wstring libraryKey =
        std::wstring(kClassesKey) + L"TypeLib\\" + GuidText(LIBID_Tessary_Geometry_Pro);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, libraryKey.c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, libraryKey.c_str());
    return S_OK;
}

}  // namespace tgp::automation
