#pragma once
// A counting sink for UnitSetting's Modified event and its connection, shared by the client's tests.
#include "Client.h"
#include "StackDispatch.h"
#include "Tessary_Geometry_Pro.h"

namespace client {

// A sink for UnitSetting's Modified event that counts the calls.
class ModifiedCounter final : public StackDispatch {
  public:
    ModifiedCounter() : StackDispatch(DIID___UnitSetting) {}
    int count = 0;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        if (id == 1 && params && params->cArgs == 0) ++count;
        return S_OK;
    }
};

// Connects a sink to an object's events (by default a counter to a UnitSetting's Modified) for the
// lifetime of the connection.
class Connection {
  public:
    Connection(IDispatch* source, IDispatch& sink, const IID& events = DIID___UnitSetting) {
        IConnectionPointContainer* container = nullptr;
        ok = SUCCEEDED(source->QueryInterface(IID_IConnectionPointContainer,
                                              reinterpret_cast<void**>(&container))) &&
             SUCCEEDED(container->FindConnectionPoint(events, &point_)) &&
             SUCCEEDED(point_->Advise(&sink, &cookie_));
        if (container) container->Release();
    }
    ~Connection() {
        if (point_) {
            point_->Unadvise(cookie_);
            point_->Release();
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    bool ok = false;

  private:
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};

}  // namespace client
