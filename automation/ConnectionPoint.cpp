#include "ConnectionPoint.h"

namespace tgp::automation {

ConnectionPoint::ConnectionPoint(IUnknown& owner, IConnectionPointContainer& container, const IID& events)
    : owner_(owner), container_(container), events_(events) {}

ConnectionPoint::~ConnectionPoint() {
    for (auto& sink : sinks_) sink.second->Release();
}

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result =
        (iid == IID_IUnknown || iid == IID_IConnectionPoint) ? static_cast<IConnectionPoint*>(this) : nullptr;
    if (!*result) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ConnectionPoint::AddRef() {
    return owner_.AddRef();
}
ULONG ConnectionPoint::Release() {
    return owner_.Release();
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid) return E_POINTER;
    *iid = events_;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container) return E_POINTER;
    *container = &container_;
    container_.AddRef();
    return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (!sink || !cookie) return E_POINTER;
    *cookie = 0;
    IDispatch* dispatch = nullptr;
    // A sink implements the event interface itself, or at least IDispatch (script hosts).
    if (FAILED(sink->QueryInterface(events_, reinterpret_cast<void**>(&dispatch))) &&
        FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch))))
        return CONNECT_E_CANNOTCONNECT;
    *cookie = nextCookie_++;
    sinks_.emplace_back(*cookie, dispatch);
    return S_OK;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
        if (it->first == cookie) {
            IDispatch* sink = it->second;
            sinks_.erase(it);
            sink->Release();
            return S_OK;
        }
    }
    return CONNECT_E_NOCONNECTION;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (connections) *connections = nullptr;
    return E_NOTIMPL;
}

void ConnectionPoint::Fire(DISPID event) {
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    Fire(event, none);
}

void ConnectionPoint::Fire(DISPID event, DISPPARAMS& arguments) {
    auto sinks = sinks_;  // a sink may unadvise from inside the call
    for (auto& sink : sinks) sink.second->AddRef();
    for (auto& sink : sinks) {
        EXCEPINFO ignored{};  // a failing handler is the sink's own affair
        UINT argError = 0;
        sink.second->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, nullptr,
                            &ignored, &argError);
        SysFreeString(ignored.bstrSource);
        SysFreeString(ignored.bstrDescription);
        SysFreeString(ignored.bstrHelpFile);
        sink.second->Release();
    }
}

HRESULT EventContainer::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (points) *points = nullptr;
    return E_NOTIMPL;
}

HRESULT EventContainer::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point) return E_POINTER;
    *point = nullptr;
    if (iid != point_.Events()) return CONNECT_E_NOCONNECTION;
    *point = &point_;
    point_.AddRef();
    return S_OK;
}

}  // namespace tgp::automation
