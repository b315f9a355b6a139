#include "HostBridgeAdapter.h"

#include "ConnectionPoint.h"
#include "DispatchObject.h"
#include "HostConnection.h"
#include "ModalForm.h"
#include "Out.h"
#include "Tessary_Geometry_Pro.h"

namespace tgp::automation {
namespace {

// What a bridge holds of its own: nothing but its place among the shared connection's listeners
// (the connection itself is the process's).
struct HostBridgeState {};

class HostBridgeAdapter final : public DispatchObject<::_HostBridge, ::HostBridge, HostBridgeState>,
                                public EventContainer,
                                public HostListener {
    using Base = DispatchObject<::_HostBridge, ::HostBridge, HostBridgeState>;

  public:
    explicit HostBridgeAdapter(std::shared_ptr<HostBridgeState> state)
        : Base(std::move(state)), EventContainer(*static_cast<::_HostBridge*>(this), DIID___HostBridge) {
        HostConnection::Shared().AddListener(this);
    }
    ~HostBridgeAdapter() override { HostConnection::Shared().RemoveListener(this); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        return Base::QueryInterface(iid, result);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Base::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Base::Release(); }

    HRESULT STDMETHODCALLTYPE get_Application(IDispatch** result) override {
        return Run([&] { Out(result) = HostConnection::Shared().Application(); });
    }
    HRESULT STDMETHODCALLTYPE putref_Application(IDispatch* rhs) override {
        return Run([&] { HostConnection::Shared().SetApplication(rhs); });
    }
    HRESULT STDMETHODCALLTYPE ShowModal(VARIANT Form) override {
        return Run([&] { ShowModalOver(HostConnection::Shared().MainWindow(), Form); });
    }

    void OnHostEvent(HostEvent event, DISPPARAMS& arguments) override {
        AddRef();  // a sink may release the last reference to this bridge while it handles the event
        EventPoint().Fire(event, arguments);
        Release();
    }

  protected:
    void* QueryExtra(REFIID iid) override { return ContainerFor(iid); }
};

}  // namespace

HRESULT CreateHostBridge(REFIID iid, void** result) {
    return HostBridgeAdapter::CreateInstance<HostBridgeAdapter>(std::make_shared<HostBridgeState>(), iid,
                                                                result);
}

}  // namespace tgp::automation
