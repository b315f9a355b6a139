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
    // Calls the event on every sink connected now (a sink may disconnect while it runs), with the
    // given arguments (by-reference ones come back as the sinks left them).
    void Fire(DISPID event);
    void Fire(DISPID event, DISPPARAMS& arguments);

  private:
    IUnknown& owner_;
    IConnectionPointContainer& container_;
    IID events_;
    std::vector<std::pair<DWORD, IDispatch*>> sinks_;
    DWORD nextCookie_ = 1;
};

// The connection-point container of an object with one outgoing interface. The object that derives
// from it answers IConnectionPointContainer in its QueryInterface and implements IUnknown for both.
class EventContainer : public IConnectionPointContainer {
  public:
    EventContainer(IUnknown& owner, const IID& events) : point_(owner, *this, events) {}

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  protected:
    ConnectionPoint& EventPoint() { return point_; }
    // This container when asked for IConnectionPointContainer (for the owner's QueryInterface).
    void* ContainerFor(REFIID iid) {
        return iid == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(this) : nullptr;
    }

  private:
    ConnectionPoint point_;
};

}  // namespace tgp::automation
