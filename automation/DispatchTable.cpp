#include "DispatchTable.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <utility>

#include "Variants.h"
#include "core/Error.h"

namespace tgp::automation {
namespace {

// --- The table -----------------------------------------------------------------------------------

// What a user-defined type stands for: an enumeration (a Long) or an interface (VT_UNKNOWN, iid).
void ResolveUserDefined(ITypeInfo* info, HREFTYPE reference, DispatchTable::Parameter& p) {
    p.type = VT_I4;
    ITypeInfo* referenced = nullptr;
    if (FAILED(info->GetRefTypeInfo(reference, &referenced)) || !referenced) return;
    TYPEATTR* attributes = nullptr;
    if (SUCCEEDED(referenced->GetTypeAttr(&attributes))) {
        if (attributes->typekind == TKIND_INTERFACE || attributes->typekind == TKIND_DISPATCH) {
            p.type = VT_UNKNOWN;
            p.iid = attributes->guid;
        } else if (attributes->typekind == TKIND_ALIAS) {
            p.type = attributes->tdescAlias.vt;
        }
        referenced->ReleaseTypeAttr(attributes);
    }
    referenced->Release();
}

DispatchTable::Parameter Describe(ITypeInfo* info, const ELEMDESC& element) {
    DispatchTable::Parameter p{};
    VariantInit(&p.fallback);
    p.iid = IID_NULL;
    const TYPEDESC* type = &element.tdesc;
    int pointers = 0;
    for (; type->vt == VT_PTR && type->lptdesc; type = type->lptdesc) ++pointers;
    p.type = type->vt;
    if (p.type == VT_USERDEFINED) {
        ResolveUserDefined(info, type->hreftype, p);
        if (p.type == VT_UNKNOWN) --pointers;  // an interface is held through a pointer
    } else if (p.type == VT_DISPATCH || p.type == VT_UNKNOWN) {
        p.iid = p.type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
        p.type = VT_UNKNOWN;
    }
    const USHORT flags = element.paramdesc.wParamFlags;
    p.retval = flags & PARAMFLAG_FRETVAL;
    p.optional = flags & PARAMFLAG_FOPT;
    p.byReference = pointers > (p.retval ? 1 : 0);
    if ((flags & PARAMFLAG_FHASDEFAULT) && element.paramdesc.pparamdescex) {
        VARIANT& given = element.paramdesc.pparamdescex->varDefaultValue;
        if (p.type == VT_VARIANT)
            VariantCopy(&p.fallback, &given);
        else if (p.type != VT_UNKNOWN)
            VariantChangeType(&p.fallback, &given, 0, p.type);
        p.optional = true;
    }
    return p;
}

// The interface view of a dual interface (where the vtable slots are), else the given view.
ITypeInfo* InterfaceView(ITypeInfo* info) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetTypeAttr(&attributes))) return nullptr;
    const bool dualDispatch =
        attributes->typekind == TKIND_DISPATCH && (attributes->wTypeFlags & TYPEFLAG_FDUAL);
    info->ReleaseTypeAttr(attributes);
    if (!dualDispatch) {
        info->AddRef();
        return info;
    }
    HREFTYPE reference = 0;
    ITypeInfo* view = nullptr;
    if (FAILED(info->GetRefTypeOfImplType(-1, &reference)) || FAILED(info->GetRefTypeInfo(reference, &view)))
        return nullptr;
    return view;
}

// --- Names ---------------------------------------------------------------------------------------

// Names compare as Basic compares identifiers: without regard to case.
wchar_t Fold(wchar_t c) {
    return c < 128 ? static_cast<wchar_t>(c >= L'A' && c <= L'Z' ? c + 32 : c) : towlower(c);
}

std::wstring Folded(std::wstring_view name) {
    std::wstring folded(name);
    for (wchar_t& c : folded) c = Fold(c);
    return folded;
}

bool FoldedLess(std::wstring_view folded, std::wstring_view name) {
    const std::size_t n = std::min(folded.size(), name.size());
    for (std::size_t i = 0; i < n; ++i) {
        const wchar_t c = Fold(name[i]);
        if (folded[i] != c) return folded[i] < c;
    }
    return folded.size() < name.size();
}

bool FoldedEqual(std::wstring_view folded, std::wstring_view name) {
    if (folded.size() != name.size()) return false;
    for (std::size_t i = 0; i < name.size(); ++i)
        if (folded[i] != Fold(name[i])) return false;
    return true;
}

// --- One call --------------------------------------------------------------------------------------

bool IsOmittedValue(const VARIANT& v) {
    return V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND;
}

// A failed member's result as the caller sees it: an object of another class where one is typed is
// a type mismatch, and the member's error object is copied into EXCEPINFO for script hosts.
HRESULT CallerResult(HRESULT hr, EXCEPINFO* exception) {
    if (hr == E_NOINTERFACE) return DISP_E_TYPEMISMATCH;
    if (!FAILED(hr) || HRESULT_FACILITY(hr) != FACILITY_CONTROL || !exception) return hr;
    IErrorInfo* error = nullptr;
    *exception = EXCEPINFO{};
    exception->scode = hr;
    if (GetErrorInfo(0, &error) == S_OK && error) {
        error->GetDescription(&exception->bstrDescription);
        error->Release();
    }
    return DISP_E_EXCEPTION;
}

// The arguments of one call in the member's own types, with whatever they own, released when the
// call is over; by-reference results go back to the caller's variables first.
class CallFrame {
  public:
    using Parameter = DispatchTable::Parameter;
    using Member = DispatchTable::Member;

    explicit CallFrame(const Member& member) : member_(member) {
        for (VARIANT& v : locals_) VariantInit(&v);
        V_VT(&retval_) = VT_EMPTY;
    }
    ~CallFrame() {
        for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
            if (owned_[i]) VariantClear(&locals_[i]);
        }
        if (packed_) SafeArrayDestroy(packed_);
        VariantClear(&retval_);
    }
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;

    // Fills parameter i from the caller's argument (nullptr when none was given). Returns S_OK or
    // the error to report.
    HRESULT Bind(std::size_t i, VARIANT* given) {
        const Parameter& p = member_.parameters[i];
        if (p.retval) return BindRetval(i, p);
        if (!given || IsOmittedValue(*given)) return BindOmitted(i, p);
        if (p.type == VT_VARIANT)
            return p.byReference ? BindVariantReference(i, *given) : BindVariant(i, *given);
        if (p.type == VT_UNKNOWN) return BindInterface(i, p, *given);
        return BindScalar(i, p, *given);
    }

    // The remaining positional arguments, packed into one array of Variants for parameter i.
    HRESULT BindParameterArray(std::size_t i, const DISPPARAMS& params, UINT fixed) {
        const UINT positional = params.cArgs - params.cNamedArgs;
        const UINT count = positional > fixed ? positional - fixed : 0;
        packed_ = SafeArrayCreateVector(VT_VARIANT, 0, count);
        if (!packed_) return E_OUTOFMEMORY;
        for (UINT k = 0; k < count; ++k) {
            LONG index = static_cast<LONG>(k);
            SafeArrayPutElement(packed_, &index, &params.rgvarg[params.cArgs - 1 - fixed - k]);
        }
        types_[i] = VT_BYREF | VT_ARRAY | VT_VARIANT;
        V_VT(&arguments_[i]) = types_[i];
        V_ARRAYREF(&arguments_[i]) = &packed_;
        return S_OK;
    }

    HRESULT Call(IDispatch* self) {
        const std::size_t n = member_.parameters.size();
        for (std::size_t i = 0; i < n; ++i) pointers_[i] = &arguments_[i];
        VARIANT returned;
        VariantInit(&returned);
        const HRESULT call =
            DispCallFunc(self, static_cast<ULONG_PTR>(member_.vtableOffset), member_.convention, VT_ERROR,
                         static_cast<UINT>(n), types_.data(), pointers_.data(), &returned);
        if (FAILED(call)) return call;
        return V_ERROR(&returned);
    }

    // After a successful call: the values of converted by-reference arguments into the caller's
    // variables (a variable that cannot take its value keeps the old one).
    void WriteBackReferences() {
        for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
            VARIANT* given = writeBack_[i];
            if (!given) continue;
            if (member_.parameters[i].type == VT_UNKNOWN) {
                WriteBackInterface(*given, V_UNKNOWN(&locals_[i]));
                continue;
            }
            try {
                WriteBack(given, locals_[i]);
            } catch (const Error&) {
            }
        }
    }

    // The retval into the caller's result (ownership moves there).
    void TakeResult(VARIANT* result) {
        if (!result || member_.retval < 0) return;
        VariantClear(result);
        *result = retval_;
        V_VT(&retval_) = VT_EMPTY;
    }

  private:
    HRESULT BindRetval(std::size_t i, const Parameter& p) {
        if (p.type == VT_VARIANT) {
            types_[i] = VT_BYREF | VT_VARIANT;
            V_VARIANTREF(&arguments_[i]) = &retval_;
        } else {
            VARTYPE type = p.type;
            if (type == VT_UNKNOWN && p.iid != IID_IUnknown)
                type = VT_DISPATCH;  // the library's interfaces are dual
            V_VT(&retval_) = type;
            V_UNKNOWN(&retval_) = nullptr;
            V_R8(&retval_) = 0;
            types_[i] = VT_BYREF | V_VT(&retval_);
            V_BYREF(&arguments_[i]) = &V_UI1(&retval_);
        }
        V_VT(&arguments_[i]) = types_[i];
        return S_OK;
    }

    HRESULT BindOmitted(std::size_t i, const Parameter& p) {
        if (!p.optional) return DISP_E_PARAMNOTOPTIONAL;
        VARIANT& local = locals_[i];
        if (p.type == VT_VARIANT) {
            if (V_VT(&p.fallback) != VT_EMPTY) {
                VariantCopy(&local, const_cast<VARIANT*>(&p.fallback));
            } else {
                V_VT(&local) = VT_ERROR;
                V_ERROR(&local) = DISP_E_PARAMNOTFOUND;
            }
            owned_[i] = true;
            if (p.byReference) return PassReference(i, VT_VARIANT, &local);
            return PassValue(i, local, VT_VARIANT);
        }
        if (p.type == VT_UNKNOWN) {
            V_VT(&local) = VT_UNKNOWN;
            V_UNKNOWN(&local) = nullptr;
            return p.byReference ? PassReference(i, VT_UNKNOWN, &V_UNKNOWN(&local))
                                 : PassValue(i, local, VT_UNKNOWN);
        }
        if (V_VT(&p.fallback) == VT_EMPTY) return DISP_E_PARAMNOTOPTIONAL;
        VariantCopy(&local, const_cast<VARIANT*>(&p.fallback));
        owned_[i] = true;
        return p.byReference ? PassReference(i, p.type, &V_UI1(&local)) : PassValue(i, local, p.type);
    }

    HRESULT BindVariant(std::size_t i, VARIANT& given) { return PassValue(i, Deref(given), VT_VARIANT); }

    HRESULT BindVariantReference(std::size_t i, VARIANT& given) {
        if (V_VT(&given) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(&given))
            return PassReference(i, VT_VARIANT, V_VARIANTREF(&given));
        if (V_VT(&given) & VT_BYREF) return PassReference(i, VT_VARIANT, &given);
        // A value, not a variable: the member works on a copy.
        if (FAILED(VariantCopy(&locals_[i], &given))) V_VT(&locals_[i]) = VT_EMPTY;
        owned_[i] = true;
        return PassReference(i, VT_VARIANT, &locals_[i]);
    }

    HRESULT BindScalar(std::size_t i, const Parameter& p, VARIANT& given) {
        if (p.byReference && V_VT(&given) == (VT_BYREF | p.type))
            return PassReference(i, p.type, V_BYREF(&given));
        const VARIANT& value = Deref(given);
        if (IsNothing(value)) return DISP_E_TYPEMISMATCH;
        const VARTYPE held = V_VT(&value);
        if (p.byReference && (held == VT_DISPATCH || held == VT_UNKNOWN))
            return DISP_E_TYPEMISMATCH;  // not through its default member
        VARIANT& local = locals_[i];
        if (held == p.type && (held != VT_BSTR || !p.byReference)) {
            local = value;  // already of the type: passed as it is (the caller keeps owning a text)
        } else {
            const HRESULT hr = VariantChangeType(&local, const_cast<VARIANT*>(&value), 0, p.type);
            if (FAILED(hr)) return hr == DISP_E_OVERFLOW ? hr : DISP_E_TYPEMISMATCH;
            owned_[i] = true;
        }
        if (!p.byReference) return PassValue(i, local, p.type);
        if (V_VT(&given) & VT_BYREF) writeBack_[i] = &given;
        return PassReference(i, p.type, &V_UI1(&local));
    }

    HRESULT BindInterface(std::size_t i, const Parameter& p, VARIANT& given) {
        const VARIANT& value = Deref(given);
        IUnknown* object = nullptr;
        switch (V_VT(&value)) {
            case VT_DISPATCH:
            case VT_UNKNOWN: object = V_UNKNOWN(&value); break;
            case VT_BYREF | VT_DISPATCH:
            case VT_BYREF | VT_UNKNOWN:
                object = V_UNKNOWNREF(&value) ? *V_UNKNOWNREF(&value) : nullptr;
                break;
            case VT_EMPTY: break;
            default: return DISP_E_TYPEMISMATCH;
        }
        VARIANT& local = locals_[i];
        V_VT(&local) = VT_UNKNOWN;
        V_UNKNOWN(&local) = nullptr;
        if (object) {
            void* asked = nullptr;
            if (FAILED(object->QueryInterface(p.iid, &asked)) || !asked) return DISP_E_TYPEMISMATCH;
            V_UNKNOWN(&local) = static_cast<IUnknown*>(asked);
            owned_[i] = true;
        }
        if (!p.byReference) return PassValue(i, local, VT_UNKNOWN);
        if (V_VT(&given) & VT_BYREF) writeBack_[i] = &given;
        return PassReference(i, VT_UNKNOWN, &V_UNKNOWN(&local));
    }

    // An object the member handed back through an [in, out] interface parameter, into the
    // caller's variable (an object variable or a Variant).
    static void WriteBackInterface(VARIANT& given, IUnknown* object) {
        IDispatch* dispatch = nullptr;
        if (object) object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch));
        if (V_VT(&given) == (VT_BYREF | VT_DISPATCH) && V_DISPATCHREF(&given)) {
            if (*V_DISPATCHREF(&given)) (*V_DISPATCHREF(&given))->Release();
            *V_DISPATCHREF(&given) = dispatch;
            return;
        }
        if (V_VT(&given) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(&given)) {
            VARIANT& slot = Deref(given);
            if (!(V_VT(&slot) & VT_BYREF)) {
                VariantClear(&slot);
                V_VT(&slot) = VT_DISPATCH;
                V_DISPATCH(&slot) = dispatch;
                return;
            }
        }
        if (dispatch) dispatch->Release();
    }

    // A value of `type` (VT_VARIANT: the whole Variant): its bits only, the frame or the caller
    // owns what they point to.
    HRESULT PassValue(std::size_t i, const VARIANT& value, VARTYPE type) {
        arguments_[i] = value;
        types_[i] = type;
        return S_OK;
    }

    HRESULT PassReference(std::size_t i, VARTYPE type, void* where) {
        types_[i] = VT_BYREF | type;
        V_VT(&arguments_[i]) = types_[i];
        V_BYREF(&arguments_[i]) = where;
        return S_OK;
    }

    static constexpr int kMost = DispatchTable::kMostParameters;
    const Member& member_;
    std::array<VARIANTARG, kMost> arguments_{};
    std::array<VARIANTARG*, kMost> pointers_{};
    std::array<VARTYPE, kMost> types_{};
    std::array<VARIANT, kMost> locals_;
    std::array<bool, kMost> owned_{};
    std::array<VARIANT*, kMost> writeBack_{};
    SAFEARRAY* packed_ = nullptr;
    VARIANT retval_;
};

// The caller's argument for parameter `index` (0 = first): a named one, the property value of a
// property put, or a positional one; nullptr when none was given.
VARIANT* ArgumentFor(const DISPPARAMS& params, UINT index, UINT lastArgument, UINT& where) {
    for (UINT a = 0; a < params.cNamedArgs; ++a) {
        const DISPID named = params.rgdispidNamedArgs[a];
        if (static_cast<UINT>(named) == index || (named == DISPID_PROPERTYPUT && index == lastArgument)) {
            where = a;
            return &params.rgvarg[a];
        }
    }
    const UINT positional = params.cArgs - params.cNamedArgs;
    if (index >= positional) return nullptr;
    where = params.cArgs - 1 - index;
    return &params.rgvarg[where];
}

}  // namespace

// --- DispatchTable ----------------------------------------------------------------------------------

DispatchTable::DispatchTable(ITypeInfo* info) : info_(info) {
    if (!info) return;
    ITypeInfo* view = InterfaceView(info);
    if (!view) return;
    TYPEATTR* attributes = nullptr;
    if (SUCCEEDED(view->GetTypeAttr(&attributes))) {
        for (UINT i = 0; i < attributes->cFuncs; ++i) {
            FUNCDESC* desc = nullptr;
            if (FAILED(view->GetFuncDesc(i, &desc))) continue;
            ITypeInfo* saved = info_;
            info_ = view;  // parameter types resolve against the view that declares them
            AddMember(*desc);
            AddNames(*desc);
            info_ = saved;
            view->ReleaseFuncDesc(desc);
        }
        view->ReleaseTypeAttr(attributes);
    }
    view->Release();
    std::sort(names_.begin(), names_.end(), [](const Name& a, const Name& b) { return a.folded < b.folded; });
    std::stable_sort(members_.begin(), members_.end(),
                     [](const Member& a, const Member& b) { return a.id < b.id; });
}

DispatchTable::~DispatchTable() {
    for (Member& m : members_)
        for (Parameter& p : m.parameters) VariantClear(&p.fallback);
}

void DispatchTable::AddMember(const FUNCDESC& desc) {
    if (desc.cParams > kMostParameters) return;  // not callable through the table
    Member m{desc.memid, static_cast<WORD>(desc.invkind), desc.oVft, desc.callconv,
             0,          desc.cParamsOpt == -1,           -1,        {}};
    for (SHORT p = 0; p < desc.cParams; ++p) {
        m.parameters.push_back(Describe(info_, desc.lprgelemdescParam[p]));
        if (m.parameters.back().retval)
            m.retval = p;
        else
            ++m.arguments;
    }
    members_.push_back(std::move(m));
}

void DispatchTable::AddNames(const FUNCDESC& desc) {
    for (const Name& known : names_)
        if (known.member == desc.memid) return;  // a property's get and let share one name
    BSTR names[64] = {};
    UINT count = 0;
    if (FAILED(info_->GetNames(desc.memid, names, 64, &count)) || count == 0) return;
    Name entry{Folded(names[0] ? names[0] : L""), desc.memid, {}};
    for (UINT i = 1; i < count; ++i) entry.parameters.push_back(Folded(names[i] ? names[i] : L""));
    for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
    names_.push_back(std::move(entry));
}

int DispatchTable::Lookup(std::wstring_view name) const {
    auto it = std::lower_bound(
        names_.begin(), names_.end(), name,
        [](const Name& entry, std::wstring_view wanted) { return FoldedLess(entry.folded, wanted); });
    return it != names_.end() && FoldedEqual(it->folded, name) ? static_cast<int>(it - names_.begin()) : -1;
}

HRESULT DispatchTable::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
    if (!names || !ids) return E_POINTER;
    if (count == 0) return S_OK;
    HRESULT hr = S_OK;
    const int found = names[0] ? Lookup(names[0]) : -1;
    ids[0] = found < 0 ? DISPID_UNKNOWN : names_[found].member;
    if (found < 0) hr = DISP_E_UNKNOWNNAME;
    for (UINT i = 1; i < count; ++i) {
        ids[i] = DISPID_UNKNOWN;
        if (found < 0 || !names[i]) continue;
        const auto& parameters = names_[found].parameters;
        for (std::size_t p = 0; p < parameters.size(); ++p)
            if (FoldedEqual(parameters[p], names[i])) ids[i] = static_cast<DISPID>(p);
        if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
}

const DispatchTable::Member* DispatchTable::Find(DISPID member, WORD flags) const {
    auto it = std::lower_bound(members_.begin(), members_.end(), member,
                               [](const Member& m, DISPID id) { return m.id < id; });
    for (; it != members_.end() && it->id == member; ++it) {
        if (it->kinds & flags) return &*it;
    }
    return nullptr;
}

HRESULT DispatchTable::Invoke(IDispatch* self, DISPID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                              EXCEPINFO* exception, UINT* argError) const {
    const Member* m = Find(member, flags);
    // JScript calls a property with arguments as a method (q.Value(3)): read it, as VB would.
    if (!m && flags == DISPATCH_METHOD) m = Find(member, DISPATCH_PROPERTYGET);
    if (!m) return DISP_E_MEMBERNOTFOUND;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    const DISPPARAMS& given = params ? *params : none;
    if (given.cArgs && !given.rgvarg) return E_INVALIDARG;
    if (given.cNamedArgs && !given.rgdispidNamedArgs) return E_INVALIDARG;
    if (!m->parameterArray && given.cArgs > m->arguments) return DISP_E_BADPARAMCOUNT;

    CallFrame frame(*m);
    const UINT lastArgument = m->arguments ? m->arguments - 1 : 0;
    UINT index = 0;  // among the parameters a caller gives
    for (std::size_t i = 0; i < m->parameters.size(); ++i) {
        const Parameter& p = m->parameters[i];
        HRESULT hr = S_OK;
        UINT where = 0;
        if (p.retval) {
            hr = frame.Bind(i, nullptr);
        } else if (m->parameterArray && index == lastArgument) {
            hr = frame.BindParameterArray(i, given, index);
            ++index;
        } else {
            VARIANT* argument = ArgumentFor(given, index++, lastArgument, where);
            hr = frame.Bind(i, argument);
        }
        if (FAILED(hr)) {
            if (argError) *argError = where;
            return hr;
        }
    }
    const HRESULT hr = frame.Call(self);
    if (SUCCEEDED(hr)) frame.WriteBackReferences();
    // A failed member still hands back its result, empty of its type (Nothing for an object): a
    // script engine that goes on after the error (Set x = c(0) under On Error Resume Next) finds
    // the value it expects and reports the member's error, not one of its own.
    frame.TakeResult(result);
    return FAILED(hr) ? CallerResult(hr, exception) : hr;
}

}  // namespace tgp::automation
