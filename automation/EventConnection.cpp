#include "EventConnection.h"

#include <wchar.h>

#include <atomic>
#include <cwctype>
#include <utility>
#include <vector>

namespace tgp::automation {

namespace {

// Holds one reference to a COM object and releases it.
template <class T>
class Ref {
  public:
    Ref() = default;
    explicit Ref(T* p) : p_(p) {}
    ~Ref() {
        if (p_) p_->Release();
    }
    Ref(Ref&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }
    T* get() const { return p_; }
    T* operator->() const { return p_; }
    T** out() { return &p_; }
    T* release() { return std::exchange(p_, nullptr); }

  private:
    T* p_ = nullptr;
};

// One outgoing interface of the control: its id and its type information.
struct Outgoing {
    IID iid;
    Ref<ITypeInfo> info;
};

IID GuidOf(ITypeInfo* info) {
    IID iid = IID_NULL;
    TYPEATTR* attributes = nullptr;
    if (SUCCEEDED(info->GetTypeAttr(&attributes))) {
        iid = attributes->guid;
        info->ReleaseTypeAttr(attributes);
    }
    return iid;
}

// The source interfaces of the control's class, the default one first.
std::vector<Outgoing> FromClassInfo(IDispatch* control) {
    std::vector<Outgoing> found;
    Ref<IProvideClassInfo> provider;
    Ref<ITypeInfo> coclass;
    if (FAILED(control->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(provider.out()))) ||
        FAILED(provider->GetClassInfo(coclass.out())) || !coclass.get())
        return found;
    TYPEATTR* attributes = nullptr;
    if (FAILED(coclass->GetTypeAttr(&attributes))) return found;
    const UINT count = attributes->cImplTypes;
    coclass->ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < count; ++i) {
        INT flags = 0;
        HREFTYPE reference = 0;
        Ref<ITypeInfo> info;
        if (FAILED(coclass->GetImplTypeFlags(i, &flags)) || !(flags & IMPLTYPEFLAG_FSOURCE) ||
            FAILED(coclass->GetRefTypeOfImplType(i, &reference)) ||
            FAILED(coclass->GetRefTypeInfo(reference, info.out())))
            continue;
        Outgoing outgoing{GuidOf(info.get()), std::move(info)};
        if (flags & IMPLTYPEFLAG_FDEFAULT)
            found.insert(found.begin(), std::move(outgoing));
        else
            found.push_back(std::move(outgoing));
    }
    return found;
}

// The interfaces of the control's connection points, described by the control's type library.
std::vector<Outgoing> FromConnectionPoints(IDispatch* control, IConnectionPointContainer* container) {
    std::vector<Outgoing> found;
    Ref<ITypeInfo> own;
    Ref<ITypeLib> library;
    UINT index = 0;
    Ref<IEnumConnectionPoints> points;
    if (FAILED(control->GetTypeInfo(0, LOCALE_USER_DEFAULT, own.out())) || !own.get() ||
        FAILED(own->GetContainingTypeLib(library.out(), &index)) ||
        FAILED(container->EnumConnectionPoints(points.out())) || !points.get())
        return found;
    IConnectionPoint* point = nullptr;
    ULONG fetched = 0;
    while (points->Next(1, &point, &fetched) == S_OK && fetched == 1) {
        Ref<IConnectionPoint> held(point);
        IID iid = IID_NULL;
        Ref<ITypeInfo> info;
        if (SUCCEEDED(held->GetConnectionInterface(&iid)) &&
            SUCCEEDED(library->GetTypeInfoOfGuid(iid, info.out())))
            found.push_back({iid, std::move(info)});
    }
    return found;
}

// The members of an outgoing interface by name, upper case (names are case-insensitive).
std::map<std::wstring, DISPID> MembersOf(ITypeInfo* events) {
    std::map<std::wstring, DISPID> members;
    TYPEATTR* attributes = nullptr;
    if (FAILED(events->GetTypeAttr(&attributes))) return members;
    const UINT count = attributes->cFuncs;
    events->ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* desc = nullptr;
        if (FAILED(events->GetFuncDesc(i, &desc))) continue;
        const MEMBERID id = desc->memid;
        events->ReleaseFuncDesc(desc);
        BSTR name = nullptr;
        if (FAILED(events->GetDocumentation(id, &name, nullptr, nullptr, nullptr)) || !name) continue;
        std::wstring upper(name);
        SysFreeString(name);
        for (wchar_t& c : upper) c = static_cast<wchar_t>(std::towupper(c));
        members.emplace(std::move(upper), id);
    }
    return members;
}

}  // namespace

// Receives the object's events as late-bound calls of their dispatch ids; the chosen ones run their
// handlers. A failure inside a handler never reaches the object that raised the event.
class EventSink final : public IDispatch {
  public:
    EventSink(const IID& events, std::map<DISPID, EventConnection::Handler> handlers)
        : events_(events), handlers_(std::move(handlers)) {}

    void Detach() { handlers_.clear(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        if (!result) return E_POINTER;
        *result = (iid == IID_IUnknown || iid == IID_IDispatch || iid == events_)
                      ? static_cast<IDispatch*>(this)
                      : nullptr;
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long left = --references_;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        if (info) *info = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        if (result) VariantInit(result);
        const auto found = handlers_.find(member);
        if (found == handlers_.end()) return S_OK;
        // A copy: the handler may disconnect this sink (and so clear handlers_) while it runs.
        const EventConnection::Handler handler = found->second;
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        AddRef();
        try {
            handler(params ? *params : none);
        } catch (...) {
        }
        Release();
        return S_OK;
    }

  private:
    IID events_;
    std::map<DISPID, EventConnection::Handler> handlers_;
    std::atomic<long> references_{1};
};

EventConnection::EventConnection(IConnectionPoint* point, EventSink* sink, DWORD cookie)
    : point_(point), sink_(sink), cookie_(cookie) {}

EventConnection::~EventConnection() {
    sink_->Detach();
    point_->Unadvise(cookie_);
    point_->Release();
    sink_->Release();
}

std::unique_ptr<EventConnection> EventConnection::Connect(IDispatch* control, const Chooser& choose) {
    if (!control) return nullptr;
    Ref<IConnectionPointContainer> container;
    if (FAILED(control->QueryInterface(IID_IConnectionPointContainer,
                                       reinterpret_cast<void**>(container.out()))) ||
        !container.get())
        return nullptr;
    std::vector<Outgoing> outgoing = FromClassInfo(control);
    if (outgoing.empty()) outgoing = FromConnectionPoints(control, container.get());
    for (const Outgoing& candidate : outgoing) {
        std::map<DISPID, Handler> handlers = choose(MembersOf(candidate.info.get()));
        Ref<IConnectionPoint> point;
        if (handlers.empty() || FAILED(container->FindConnectionPoint(candidate.iid, point.out())) ||
            !point.get())
            continue;
        Ref<EventSink> sink(new EventSink(candidate.iid, std::move(handlers)));
        DWORD cookie = 0;
        if (FAILED(point->Advise(sink.get(), &cookie))) return nullptr;
        return std::unique_ptr<EventConnection>(new EventConnection(point.release(), sink.release(), cookie));
    }
    return nullptr;
}

}  // namespace tgp::automation
