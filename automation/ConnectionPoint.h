#pragma once

#include <utility>
#include <vector>

#include "OleBase.h"

namespace tgp::automation {

// The one outgoing interface of an object with events: sinks connect through Advise and receive
// each event as a late-bound call of its dispatch id. The point lives inside its owner and shares
// the owner's reference count.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(IUnknown& owner, IConnectionPointContainer& container, const IID& events);
    ~ConnectionPoint();
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

    const IID& Events() const { return events_; }
    // Calls the event on every sink connected now (a sink may disconnect while it runs).
    void Fire(DISPID event);

private:
    IUnknown& owner_;
    IConnectionPointContainer& container_;
    IID events_;
    std::vector<std::pair<DWORD, IDispatch*>> sinks_;
    DWORD nextCookie_ = 1;
};

}  // namespace tgp::automation
