#pragma once

#include <atomic>
#include <memory>
#include <typeinfo>

#include "DispatchTable.h"
#include "ErrorInfo.h"
#include "Identity.h"
#include "NativeObject.h"
#include "Server.h"

namespace tgp::automation {

// The one base of every automation class: reference counting, IDispatch served from the type
// library, ISupportErrorInfo, IProvideClassInfo and the private access to the wrapped core object.
// Itf is the class's dual interface as widl declares it; CoClass its coclass (for __uuidof).
template <class Itf, class CoClass, class Native>
class DispatchObject : public Itf, public ISupportErrorInfo, public IProvideClassInfo, public INativeObject {
  public:
    explicit DispatchObject(std::shared_ptr<Native> native) : native_(std::move(native)) {
        Server::ObjectCreated();
        Identity::Add(native_.get(), typeid(Native), static_cast<Itf*>(this));
    }
    virtual ~DispatchObject() {
        Identity::Remove(native_.get(), typeid(Native));
        Server::ObjectDestroyed();
    }
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;

    // The automation object of a core object: the live one if there is one, else a new one. The
    // requested interface is handed out (a failed query frees a new object).
    template <class Derived>
    static HRESULT CreateInstance(std::shared_ptr<Native> native, REFIID iid, void** result) {
        if (IUnknown* existing = Identity::Find(native.get(), typeid(Native))) {
            HRESULT hr = existing->QueryInterface(iid, result);
            existing->Release();
            return hr;
        }
        Derived* object = nullptr;
        try {
            object = new Derived(std::move(native));
        } catch (...) {
            return E_OUTOFMEMORY;
        }
        object->AddRef();
        HRESULT hr = object->QueryInterface(iid, result);
        object->Release();
        return hr;
    }

    // The automation object of a core object as the class's own interface; a null core object
    // gives Nothing.
    template <class Derived>
    static HRESULT WrapOrNothing(std::shared_ptr<Native> native, Itf** result) noexcept {
        if (!result) return E_POINTER;
        *result = nullptr;
        if (!native) return S_OK;
        return CreateInstance<Derived>(std::move(native), __uuidof(Itf), reinterpret_cast<void**>(result));
    }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        if (!result) return E_POINTER;
        *result = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Itf))
            *result = static_cast<Itf*>(this);
        else if (iid == IID_ISupportErrorInfo)
            *result = static_cast<ISupportErrorInfo*>(this);
        else if (iid == IID_IProvideClassInfo)
            *result = static_cast<IProvideClassInfo*>(this);
        else if (iid == __uuidof(INativeObject))
            *result = static_cast<INativeObject*>(this);
        else
            *result = QueryExtra(iid);
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override {
        long left = --references_;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }

    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return Server::TypeInfoOf(__uuidof(Itf), info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        const DispatchTable& table = Interface();
        return table.info() ? table.GetIDsOfNames(names, count, ids) : TYPE_E_CANTLOADLIBRARY;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argError) override {
        const DispatchTable& table = Interface();
        if (!table.info()) return TYPE_E_CANTLOADLIBRARY;
        return table.Invoke(static_cast<Itf*>(this), member, flags, params, result, exception, argError);
    }

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(Itf) ? S_OK : S_FALSE;
    }

    // IProvideClassInfo
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
        if (!info) return E_POINTER;
        return Server::TypeInfoOf(__uuidof(CoClass), info);
    }

    // INativeObject
    std::shared_ptr<void> NativeShared() override { return native_; }
    const std::type_info& NativeType() override { return typeid(Native); }

  protected:
    Native& native() { return *native_; }
    const std::shared_ptr<Native>& shared() { return native_; }

    // Runs a member body with the library's error translation.
    template <class Body>
    HRESULT Run(Body&& body) noexcept {
        return Guarded(__uuidof(Itf), std::forward<Body>(body));
    }

    // Interfaces beyond the common ones (the connection points of a class with events).
    virtual void* QueryExtra(REFIID) { return nullptr; }

  private:
    // The interface's dispatch table, made once per class from its type information.
    static const DispatchTable& Interface() {
        static const DispatchTable table([] {
            ITypeInfo* loaded = nullptr;
            Server::TypeInfoOf(__uuidof(Itf), &loaded);
            return loaded;
        }());
        return table;
    }

    std::atomic<long> references_{0};
    std::shared_ptr<Native> native_;
};

}  // namespace tgp::automation
