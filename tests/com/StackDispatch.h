#pragma once
// What the client's sinks and stand-in objects share: an IDispatch that lives on the test's stack
// (its count of references is kept, never acted on) and answers one interface of its own too.
#include "Client.h"

namespace client {

class StackDispatch : public IDispatch {
  public:
    explicit StackDispatch(const IID& own = IID_IDispatch) : own_(own) {}
    virtual ~StackDispatch() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        *result = (iid == IID_IUnknown || iid == IID_IDispatch || iid == own_) ? static_cast<IDispatch*>(this)
                                                                               : nullptr;
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
        *n = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    ULONG references() const { return references_; }

  private:
    IID own_;
    ULONG references_ = 1;
};

}  // namespace client
