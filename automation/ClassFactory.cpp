#include "ClassFactory.h"

#include <memory>
#include <vector>

#include "Server.h"

namespace tgp::automation {

HRESULT ClassFactory::Get(const ClassEntry& entry, REFIID iid, void** result) {
    // One per class, made together on first use (a function-local static is made once, whichever
    // thread gets there first).
    static const std::vector<std::unique_ptr<ClassFactory>> factories = [] {
        std::vector<std::unique_ptr<ClassFactory>> all;
        for (const ClassEntry& e : Classes()) all.push_back(std::make_unique<ClassFactory>(e));
        return all;
    }();
    for (const auto& factory : factories) {
        if (&factory->entry_ == &entry) return factory->QueryInterface(iid, result);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT ClassFactory::QueryInterface(REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result = (iid == IID_IUnknown || iid == IID_IClassFactory) ? static_cast<IClassFactory*>(this) : nullptr;
    if (!*result) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

// Held by a caller, the class object counts as a live object; it is never deleted.
ULONG ClassFactory::AddRef() {
    const long now = ++references_;
    if (now == 1) Server::ObjectCreated();
    return static_cast<ULONG>(now);
}

ULONG ClassFactory::Release() {
    const long left = --references_;
    if (left == 0) Server::ObjectDestroyed();
    return static_cast<ULONG>(left);
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return entry_.create(iid, result);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
    Server::Lock(lock != FALSE);
    return S_OK;
}

}  // namespace tgp::automation
