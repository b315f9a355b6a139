#include "HostConnection.h"

#include <algorithm>
#include <map>
#include <string>

#include "LateBound.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

using Handlers = std::map<DISPID, EventConnection::Handler>;

// Adds the handler for the member of that (upper-case) name, when the interface has one.
void Pick(Handlers& chosen, const std::map<std::wstring, DISPID>& members, const wchar_t* name,
          EventConnection::Handler handler) {
    const auto found = members.find(name);
    if (found != members.end()) chosen.emplace(found->second, std::move(handler));
}

// The same object? (COM identity: the IUnknown of each.)
bool SameObject(IDispatch* a, IDispatch* b) {
    if (!a || !b) return a == b;
    IUnknown *ua = nullptr, *ub = nullptr;
    a->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&ua));
    b->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&ub));
    const bool same = ua == ub;
    if (ua) ua->Release();
    if (ub) ub->Release();
    return same;
}

// The application's active drawing, with a reference; nullptr when it has none (or is gone).
IDispatch* ActiveDocumentOf(IDispatch* application) {
    if (!application) return nullptr;
    try {
        ScopedVariant document;
        CallByName(application, L"ActiveDocument", DISPATCH_PROPERTYGET, {}, &document);
        IDispatch* found = ToObject(document.get());
        if (found) found->AddRef();
        return found;
    } catch (...) {
        return nullptr;
    }
}

void Replace(IDispatch*& slot, IDispatch* value) {
    if (value) value->AddRef();
    if (slot) slot->Release();
    slot = value;
}

}  // namespace

HostConnection& HostConnection::Shared() {
    static HostConnection connection;
    return connection;
}

IDispatch* HostConnection::Application() const {
    if (application_) application_->AddRef();
    return application_;
}

void HostConnection::SetApplication(IDispatch* application) {
    if (SameObject(application, application_)) return;
    Drop();
    if (!application) return;
    Replace(application_, application);
    applicationEvents_ =
        EventConnection::Connect(application, [this](const std::map<std::wstring, DISPID>& members) {
            Handlers chosen;
            Pick(chosen, members, L"WINDOWCHANGED", [this](DISPPARAMS& arguments) {
                Relay(kWindowChanged, arguments);
                CheckActiveDocument();
            });
            Pick(chosen, members, L"BEGINMODAL", [this](DISPPARAMS&) { Relay(kEnterModal); });
            Pick(chosen, members, L"ENDMODAL", [this](DISPPARAMS&) { Relay(kLeaveModal); });
            Pick(chosen, members, L"BEGINQUIT", [this](DISPPARAMS&) {
                Relay(kHostClosing);
                Drop();
            });
            // A drawing opened or created, or the host came to the front: the active one may be another.
            for (const wchar_t* name : {L"ENDOPEN", L"NEWDRAWING", L"APPACTIVATE"})
                Pick(chosen, members, name, [this](DISPPARAMS&) { CheckActiveDocument(); });
            return chosen;
        });
    IDispatch* document = ActiveDocumentOf(application);
    ConnectDocument(document);
    if (document) document->Release();
}

void HostConnection::ConnectDocument(IDispatch* document) {
    documentEvents_.reset();
    Replace(document_, document);
    if (!document) return;
    documentEvents_ =
        EventConnection::Connect(document, [this](const std::map<std::wstring, DISPID>& members) {
            Handlers chosen;
            Pick(chosen, members, L"OBJECTMODIFIED",
                 [this](DISPPARAMS& arguments) { Relay(kObjectModified, arguments); });
            Pick(chosen, members, L"BEGINCLOSE", [this](DISPPARAMS&) {
                IDispatch* closing = document_;
                if (closing) closing->AddRef();
                RelayWithObject(kDrawingClosing, closing);
                if (closing) closing->Release();
            });
            for (const wchar_t* name : {L"ACTIVATE", L"DEACTIVATE"})
                Pick(chosen, members, name, [this](DISPPARAMS&) { CheckActiveDocument(); });
            return chosen;
        });
}

void HostConnection::CheckActiveDocument() {
    IDispatch* active = ActiveDocumentOf(application_);
    if (!SameObject(active, document_)) {
        ConnectDocument(active);
        if (active) RelayWithObject(kDrawingActivated, active);
    }
    if (active) active->Release();
}

HWND HostConnection::MainWindow() const {
    return WindowProperty(application_, L"HWND");
}

void HostConnection::Drop() {
    // The connections go first, so no event arrives for a host that is being let go.
    documentEvents_.reset();
    applicationEvents_.reset();
    Replace(document_, nullptr);
    Replace(application_, nullptr);
}

void HostConnection::AddListener(HostListener* listener) {
    listeners_.push_back(listener);
}

void HostConnection::RemoveListener(HostListener* listener) {
    listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), listener), listeners_.end());
    if (listeners_.empty()) Drop();
}

void HostConnection::Relay(HostEvent event, DISPPARAMS& arguments) {
    // A copy: a listener's handler may release its bridge (and so unregister it) while it runs.
    const std::vector<HostListener*> listeners = listeners_;
    for (HostListener* listener : listeners) {
        if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end())
            listener->OnHostEvent(event, arguments);
    }
}

void HostConnection::Relay(HostEvent event) {
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    Relay(event, none);
}

void HostConnection::RelayWithObject(HostEvent event, IDispatch* object) {
    VARIANT argument;
    VariantInit(&argument);
    V_VT(&argument) = VT_DISPATCH;
    V_DISPATCH(&argument) = object;  // borrowed for the call
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    Relay(event, arguments);
}

}  // namespace tgp::automation
