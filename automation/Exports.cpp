// The four entry points of the in-process server, and the module's start-up.
#include "ClassFactory.h"
#include "MessageBoxHandler.h"
#include "Registration.h"
#include "Server.h"

using namespace tgp::automation;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(instance);
        Server::Attach(instance);
        InstallMessageBoxHandler();
    }
    return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    const ClassEntry* entry = FindClass(clsid);
    if (!entry) return CLASS_E_CLASSNOTAVAILABLE;
    return ClassFactory::Get(*entry, iid, result);
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    return Server::CanUnload() ? S_OK : S_FALSE;
}

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() {
    return RegisterServer();
}

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return UnregisterServer();
}
