#pragma once
// A CAD host made on the test side for HostBridge: an application object with a main window and an
// active drawing, drawings, and an event source on each (its class information names it, as a
// host's objects do). Tests raise the host's events with Fire.
#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "Client.h"
#include "FakeComboBox.h"
#include "FakeControls.h"
#include "SinkList.h"

namespace client {

// An object of the host: its dual interface answered from the type library, one event source.
template <class Itf>
class FakeHostObject : public Itf,
                       public IProvideClassInfo,
                       public IConnectionPointContainer,
                       public IConnectionPoint {
  public:
    FakeHostObject(const IID& own, const CLSID& coclass, const IID& events)
        : own_(own), coclass_(coclass), events_(events) {}
    virtual ~FakeHostObject() = default;

    // Raises an event with the given arguments (in published order) at every connected sink.
    void Fire(DISPID member, std::vector<Var> args = {}) {
        std::vector<VARIANT> reversed;
        for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->v);
        DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr,
                          static_cast<UINT>(reversed.size()), 0};
        sinks_.Fire(member, params);
    }
    std::size_t Sinks() const { return sinks_.Count(); }
    ULONG References() const { return references_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        *result = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == own_)
            *result = static_cast<Itf*>(this);
        else if (iid == IID_IProvideClassInfo)
            *result = static_cast<IProvideClassInfo*>(this);
        else if (iid == IID_IConnectionPointContainer)
            *result = static_cast<IConnectionPointContainer*>(this);
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }  // lives in the test
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        return TypeInfoOf(own_, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        ITypeInfo* info = nullptr;
        if (FAILED(TypeInfoOf(own_, &info))) return DISP_E_UNKNOWNNAME;
        const HRESULT hr = DispGetIDsOfNames(info, names, count, ids);
        info->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argError) override {
        ITypeInfo* info = nullptr;
        if (FAILED(TypeInfoOf(own_, &info))) return DISP_E_MEMBERNOTFOUND;
        const HRESULT hr =
            DispInvoke(static_cast<Itf*>(this), info, member, flags, params, result, exception, argError);
        info->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override { return TypeInfoOf(coclass_, info); }
    // What the library does not ask of a host's objects is not implemented.
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        *point = nullptr;
        if (iid != events_) return CONNECT_E_NOCONNECTION;
        *point = static_cast<IConnectionPoint*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
        *iid = events_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        return sinks_.Advise(sink, IID_IDispatch, cookie);
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override { return sinks_.Unadvise(cookie); }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  private:
    IID own_, coclass_, events_;
    std::atomic<ULONG> references_{1};
    SinkList sinks_;
};

class TestDrawing final : public FakeHostObject<IFakeDocument> {
  public:
    enum Event : DISPID { kActivate = 1, kDeactivate = 2, kBeginClose = 3, kObjectModified = 4 };
    explicit TestDrawing(std::wstring name)
        : FakeHostObject(IID_IFakeDocument, CLSID_FakeDocument, DIID_FakeDocumentEvents),
          name_(std::move(name)) {}
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override {
        *result = SysAllocString(name_.c_str());
        return S_OK;
    }

  private:
    std::wstring name_;
};

class TestHost final : public FakeHostObject<IFakeHostApplication> {
  public:
    enum Event : DISPID {
        kBeginModal = 1,
        kEndModal = 2,
        kWindowChanged = 3,
        kBeginQuit = 4,
        kEndOpen = 5,
        kSysVarChanged = 6
    };
    TestHost()
        : FakeHostObject(IID_IFakeHostApplication, CLSID_FakeHostApplication,
                         DIID_FakeHostApplicationEvents) {}
    HWND window = nullptr;
    TestDrawing* active = nullptr;
    HRESULT STDMETHODCALLTYPE get_HWND(LONG* result) override {
        *result = static_cast<LONG>(reinterpret_cast<intptr_t>(window));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ActiveDocument(IDispatch** result) override {
        *result = active;
        if (active) active->AddRef();
        return S_OK;
    }
};

}  // namespace client
