#include "FakeComboBox.h"

#include <algorithm>

namespace client {

namespace {

constexpr DISPID kClick = DISPID_CLICK;

// The test controls' type library, from the client's own resources.
ITypeLib* FakeLibrary() {
    static ITypeLib* library = [] {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        ITypeLib* loaded = nullptr;
        LoadTypeLibEx(path, REGKIND_NONE, &loaded);
        return loaded;
    }();
    return library;
}

}  // namespace

HRESULT TypeInfoOf(const GUID& guid, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    ITypeLib* library = FakeLibrary();
    return library ? library->GetTypeInfoOfGuid(guid, info) : TYPE_E_CANTLOADLIBRARY;
}

namespace {

ITypeInfo* ComboInfo() {
    static ITypeInfo* info = [] {
        ITypeInfo* loaded = nullptr;
        TypeInfoOf(IID_IFakeComboBox, &loaded);
        return loaded;
    }();
    return info;
}

// The one connection point of a box, as an enumeration.
class PointEnumeration final : public IEnumConnectionPoints {
  public:
    explicit PointEnumeration(IConnectionPoint* point) : point_(point) { point_->AddRef(); }
    ~PointEnumeration() { point_->Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        *result = (iid == IID_IUnknown || iid == IID_IEnumConnectionPoints) ? this : nullptr;
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** points, ULONG* fetched) override {
        ULONG given = 0;
        if (count > 0 && !done_) {
            points[0] = point_;
            point_->AddRef();
            done_ = true;
            given = 1;
        }
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    // The library only walks the points with Next.
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints**) override { return E_NOTIMPL; }

  private:
    IConnectionPoint* point_;
    bool done_ = false;
    ULONG references_ = 1;
};

}  // namespace

HRESULT FakeComboBox::QueryInterface(REFIID iid, void** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_IFakeComboBox)
        *result = static_cast<IFakeComboBox*>(this);
    else if (iid == IID_IProvideClassInfo && (kind_ == Kind::UserForm || kind_ == Kind::ChangeOnly))
        *result = static_cast<IProvideClassInfo*>(this);
    else if (iid == IID_IConnectionPointContainer && kind_ != Kind::NoEvents)
        *result = static_cast<IConnectionPointContainer*>(this);
    else if (iid == IID_IConnectionPoint && kind_ != Kind::NoEvents)
        *result = static_cast<IConnectionPoint*>(this);
    if (!*result) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG FakeComboBox::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT FakeComboBox::GetTypeInfoCount(UINT* count) {
    *count = 1;
    return S_OK;
}

HRESULT FakeComboBox::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    if (index != 0) return DISP_E_BADINDEX;
    return TypeInfoOf(IID_IFakeComboBox, info);
}

HRESULT FakeComboBox::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    return DispGetIDsOfNames(ComboInfo(), names, count, ids);
}

HRESULT FakeComboBox::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                             EXCEPINFO* exception, UINT* argError) {
    return DispInvoke(static_cast<IFakeComboBox*>(this), ComboInfo(), member, flags, params, result,
                      exception, argError);
}

HRESULT FakeComboBox::get_Text(BSTR* result) {
    *result = SysAllocString(text.c_str());
    return S_OK;
}

HRESULT FakeComboBox::put_Text(BSTR rhs) {
    const std::wstring given = rhs ? rhs : L"";
    const auto found = std::find(items.begin(), items.end(), given);
    const bool changed = given != text;
    text = given;
    index = found == items.end() ? -1 : static_cast<long>(found - items.begin());
    if (kind_ == Kind::VbForm)
        Notify(L"Change");
    else if (changed)
        Notify(L"Change");
    if (index >= 0 && kind_ != Kind::ChangeOnly) Notify(L"Click");
    return S_OK;
}

HRESULT FakeComboBox::Clear() {
    items.clear();
    index = -1;
    const bool changed = !text.empty();
    text.clear();
    if (changed && kind_ != Kind::VbForm) Notify(L"Change");
    return S_OK;
}

HRESULT FakeComboBox::AddItem(BSTR pvargItem, VARIANT) {
    items.emplace_back(pvargItem ? pvargItem : L"");
    return S_OK;
}

HRESULT FakeComboBox::get_ListIndex(LONG* result) {
    *result = index;
    return S_OK;
}

HRESULT FakeComboBox::put_ListIndex(LONG rhs) {
    if (rhs < -1 || rhs >= static_cast<LONG>(items.size()))
        return DISP_E_OVERFLOW;  // the form's "Invalid argument"
    Select(rhs, false);
    return S_OK;
}

HRESULT FakeComboBox::get_ListCount(LONG* result) {
    *result = static_cast<LONG>(items.size());
    return S_OK;
}

HRESULT FakeComboBox::get_List(LONG position, BSTR* result) {
    if (position < 0 || position >= static_cast<LONG>(items.size())) return DISP_E_BADINDEX;
    *result = SysAllocString(items[static_cast<std::size_t>(position)].c_str());
    return S_OK;
}

void FakeComboBox::UserPicks(const std::wstring& entry) {
    const auto found = std::find(items.begin(), items.end(), entry);
    if (found != items.end()) Select(static_cast<long>(found - items.begin()), false);
}

void FakeComboBox::UserTypes(const std::wstring& typed) {
    const auto found = std::find(items.begin(), items.end(), typed);
    text = typed;
    index = found == items.end() ? -1 : static_cast<long>(found - items.begin());
    Notify(L"Change");
}

void FakeComboBox::Select(long position, bool byText) {
    const std::wstring now = position >= 0 ? items[static_cast<std::size_t>(position)] : L"";
    const bool changed = now != text;
    index = position;
    text = now;
    if (kind_ == Kind::VbForm) {
        if (byText) Notify(L"Change");
        if (position >= 0) Notify(L"Click");
        return;
    }
    if (changed) Notify(L"Change");
    if (position >= 0 && kind_ == Kind::UserForm) Notify(L"Click");
}

void FakeComboBox::Notify(const wchar_t* member) {
    const bool click = wcscmp(member, L"Click") == 0;
    (click ? clicks : changes) += 1;
    DISPID id = kClick;
    if (!click) id = kind_ == Kind::VbForm ? 1 : 2;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    sinks_.Fire(id, none);
}

HRESULT FakeComboBox::GetClassInfo(ITypeInfo** info) {
    return TypeInfoOf(kind_ == Kind::UserForm ? CLSID_FakeFormsComboBox : CLSID_FakeChangeComboBox, info);
}

HRESULT FakeComboBox::EnumConnectionPoints(IEnumConnectionPoints** points) {
    *points = new PointEnumeration(static_cast<IConnectionPoint*>(this));
    return S_OK;
}

HRESULT FakeComboBox::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    *point = nullptr;
    if (iid != Events()) return CONNECT_E_NOCONNECTION;
    *point = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
}

const IID& FakeComboBox::Events() const {
    switch (kind_) {
        case Kind::UserForm: return DIID_FormsComboEvents;
        case Kind::VbForm: return DIID_VbComboEvents;
        default: return DIID_ChangeOnlyEvents;
    }
}

HRESULT FakeComboBox::GetConnectionInterface(IID* iid) {
    *iid = Events();
    return S_OK;
}

HRESULT FakeComboBox::GetConnectionPointContainer(IConnectionPointContainer**) {
    return E_NOTIMPL;  // not asked for by the library
}

HRESULT FakeComboBox::Advise(IUnknown* sink, DWORD* cookie) {
    return sinks_.Advise(sink, Events(), cookie);
}

HRESULT FakeComboBox::Unadvise(DWORD cookie) {
    return sinks_.Unadvise(cookie);
}

HRESULT FakeComboBox::EnumConnections(IEnumConnections**) {
    return E_NOTIMPL;
}

}  // namespace client
