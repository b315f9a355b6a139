#include "ClassFactory.h"

#include "Server.h"

namespace tgp::automation {

// A live class object keeps the DLL loaded like any other object.
ClassFactory::ClassFactory(const ClassEntry& entry) : entry_(entry) { Server::ObjectCreated(); }
ClassFactory::~ClassFactory() { Server::ObjectDestroyed(); }

HRESULT ClassFactory::QueryInterface(REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result = (iid == IID_IUnknown || iid == IID_IClassFactory) ? static_cast<IClassFactory*>(this) : nullptr;
    if (!*result) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ClassFactory::AddRef() { return static_cast<ULONG>(++references_); }

ULONG ClassFactory::Release() {
    long left = --references_;
    if (left == 0) delete this;
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
