#include "Server.h"

#include <atomic>

namespace tgp::automation {
namespace {

HMODULE g_module = nullptr;
wchar_t g_path[MAX_PATH] = {};
std::atomic<long> g_objects{0};
std::atomic<long> g_locks{0};
ITypeLib* g_typeLibrary = nullptr;

}  // namespace

void Server::Attach(HMODULE module) {
    g_module = module;
    GetModuleFileNameW(module, g_path, MAX_PATH);
}

HMODULE Server::Module() {
    return g_module;
}
const wchar_t* Server::ModulePath() {
    return g_path;
}

void Server::ObjectCreated() {
    ++g_objects;
}
void Server::ObjectDestroyed() {
    --g_objects;
}
void Server::Lock(bool lock) {
    lock ? ++g_locks : --g_locks;
}
bool Server::CanUnload() {
    return g_objects == 0 && g_locks == 0;
}

ITypeLib* Server::TypeLibrary() {
    // Objects live on their caller's thread; the library is loaded on first use from the DLL itself,
    // so dispatch works before (and without) registration.
    // Two apartments may ask at once: the first library stored wins, the other copy is released.
    if (!g_typeLibrary) {
        ITypeLib* loaded = nullptr;
        if (FAILED(LoadTypeLibEx(g_path, REGKIND_NONE, &loaded))) return nullptr;
        if (InterlockedCompareExchangePointer(reinterpret_cast<void* volatile*>(&g_typeLibrary), loaded,
                                              nullptr))
            loaded->Release();
    }
    return g_typeLibrary;
}

HRESULT Server::TypeInfoOf(REFGUID guid, ITypeInfo** info) {
    ITypeLib* library = TypeLibrary();
    if (!library) return TYPE_E_CANTLOADLIBRARY;
    return library->GetTypeInfoOfGuid(guid, info);
}

}  // namespace tgp::automation
