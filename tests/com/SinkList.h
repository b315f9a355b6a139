#pragma once
// The sinks connected to a test-side event source: Advise, Unadvise and raising an event at each.
#include <utility>
#include <vector>

#include "Client.h"

namespace client {

class SinkList {
  public:
    SinkList() = default;
    ~SinkList() {
        for (auto& sink : sinks_) sink.second->Release();
    }
    SinkList(const SinkList&) = delete;
    SinkList& operator=(const SinkList&) = delete;

    // A sink must answer the events' interface (or IDispatch, which every sink answers).
    HRESULT Advise(IUnknown* sink, const IID& events, DWORD* cookie) {
        IDispatch* dispatch = nullptr;
        if (!sink || FAILED(sink->QueryInterface(events, reinterpret_cast<void**>(&dispatch))))
            return CONNECT_E_CANNOTCONNECT;
        *cookie = nextCookie_++;
        sinks_.emplace_back(*cookie, dispatch);
        return S_OK;
    }
    HRESULT Unadvise(DWORD cookie) {
        for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
            if (it->first != cookie) continue;
            IDispatch* sink = it->second;
            sinks_.erase(it);
            sink->Release();
            return S_OK;
        }
        return CONNECT_E_NOCONNECTION;
    }
    void Fire(DISPID member, DISPPARAMS& params) {
        auto sinks = sinks_;  // a sink may disconnect while it runs
        for (auto& sink : sinks) sink.second->AddRef();
        for (auto& sink : sinks) {
            sink.second->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                                nullptr, nullptr);
            sink.second->Release();
        }
    }
    std::size_t Count() const { return sinks_.size(); }

  private:
    std::vector<std::pair<DWORD, IDispatch*>> sinks_;
    DWORD nextCookie_ = 1;
};

}  // namespace client
