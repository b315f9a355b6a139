#pragma once
// A combo box of a host's form, made on the test side: the members a form's combo box answers
// (late-bound, from its own type library), and the event source of a user form's box, of a
// VB6-style form's box, of a box that reports only Change, or none at all.
#include <atomic>
#include <string>
#include <vector>

#include "Client.h"
#include "FakeControls.h"
#include "SinkList.h"

namespace client {

// Type information from the test controls' type library (in the client's own resources).
HRESULT TypeInfoOf(const GUID& guid, ITypeInfo** info);

class FakeComboBox final : public IFakeComboBox,
                           public IProvideClassInfo,
                           public IConnectionPointContainer,
                           public IConnectionPoint {
  public:
    enum class Kind {
        UserForm,    // Change for every new text, Click for every selection; class information given
        VbForm,      // Click for a selection, Change for a text set; no class information
        ChangeOnly,  // Change for everything; class information given
        NoEvents,    // no event source
    };
    // The creator holds the first reference.
    explicit FakeComboBox(Kind kind) : kind_(kind) {}

    // The user picks an entry in the open list.
    void UserPicks(const std::wstring& entry);
    // The user types into the box's edit field.
    void UserTypes(const std::wstring& text);

    std::vector<std::wstring> items;
    long index = -1;
    std::wstring text;
    int clicks = 0, changes = 0;  // notifications sent
    std::size_t Sinks() const { return sinks_.Count(); }
    ULONG References() const { return references_; }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override;
    // IDispatch, from the type library
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argError) override;
    // IFakeComboBox
    HRESULT STDMETHODCALLTYPE get_Text(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE put_Text(BSTR rhs) override;
    HRESULT STDMETHODCALLTYPE Clear() override;
    HRESULT STDMETHODCALLTYPE AddItem(BSTR pvargItem, VARIANT pvargIndex) override;
    HRESULT STDMETHODCALLTYPE get_ListIndex(LONG* result) override;
    HRESULT STDMETHODCALLTYPE put_ListIndex(LONG rhs) override;
    HRESULT STDMETHODCALLTYPE get_ListCount(LONG* result) override;
    HRESULT STDMETHODCALLTYPE get_List(LONG position, BSTR* result) override;
    // IProvideClassInfo
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    // IConnectionPointContainer
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;
    // IConnectionPoint
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

  private:
    const IID& Events() const;
    // A new selection (or text) and the notifications this kind of box sends for it.
    void Select(long position, bool byText);
    void Notify(const wchar_t* member);

    Kind kind_;
    std::atomic<ULONG> references_{1};
    SinkList sinks_;
};

}  // namespace client
