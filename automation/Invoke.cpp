#include "Invoke.h"

#include <algorithm>
#include <cwctype>
#include <utility>
#include <vector>

#include "Variants.h"
#include "core/Error.h"

namespace tgp::automation {
namespace {

// The fixed type a by-reference parameter points to, or VT_EMPTY when the parameter is not one
// (by value, a Variant*, an object or an array).
VARTYPE ByReferenceType(const ELEMDESC& element) {
    const TYPEDESC& type = element.tdesc;
    if (type.vt != VT_PTR || !type.lptdesc) return VT_EMPTY;
    switch (type.lptdesc->vt) {
        case VT_R8: case VT_R4: case VT_I2: case VT_I4: case VT_BOOL: case VT_BSTR: case VT_UI1:
        case VT_CY: case VT_DATE:
            return type.lptdesc->vt;
        default:
            return VT_EMPTY;
    }
}

// A Variant parameter passed by reference ([in, out] VARIANT*).
bool IsVariantReference(const ELEMDESC& element) {
    const TYPEDESC& type = element.tdesc;
    return type.vt == VT_PTR && type.lptdesc && type.lptdesc->vt == VT_VARIANT;
}

// Whether a user-defined type is an enumeration (rather than an interface).
bool IsEnumeration(ITypeInfo* info, HREFTYPE reference) {
    ITypeInfo* referenced = nullptr;
    if (FAILED(info->GetRefTypeInfo(reference, &referenced)) || !referenced) return false;
    TYPEATTR* attributes = nullptr;
    bool enumeration = false;
    if (SUCCEEDED(referenced->GetTypeAttr(&attributes))) {
        enumeration = attributes->typekind == TKIND_ENUM;
        referenced->ReleaseTypeAttr(attributes);
    }
    referenced->Release();
    return enumeration;
}

// A parameter of a number, text, Boolean or enumeration type, by value or by reference.
bool IsScalar(ITypeInfo* info, const TYPEDESC& type) {
    const TYPEDESC& held = (type.vt == VT_PTR && type.lptdesc) ? *type.lptdesc : type;
    switch (held.vt) {
        case VT_R8: case VT_R4: case VT_I2: case VT_I4: case VT_BOOL: case VT_BSTR: case VT_UI1: case VT_CY:
        case VT_DATE:
            return true;
        case VT_USERDEFINED:
            return IsEnumeration(info, held.hreftype);
        default:
            return false;
    }
}

// The parameter an argument of DISPPARAMS stands for: named arguments carry their index (the
// property-put value is the last parameter); positional ones come last-first.
int ParameterIndex(const DISPPARAMS& params, UINT argument, int parameters) {
    if (argument < params.cNamedArgs) {
        DISPID named = params.rgdispidNamedArgs[argument];
        return named == DISPID_PROPERTYPUT ? parameters - 1 : static_cast<int>(named);
    }
    return static_cast<int>(params.cArgs - 1 - argument);
}

// A parameter array (vararg) member: the positional arguments beyond the fixed parameters are
// packed into one array of Variants, passed by reference as the last parameter. Returns the
// packed array (to be destroyed after the call), or nullptr when the member takes no such array.
SAFEARRAY* PackParameterArray(int parameters, const DISPPARAMS& params, std::vector<VARIANTARG>& arguments,
                              SAFEARRAY*& slot) {
    if (parameters < 1) return nullptr;
    UINT fixed = static_cast<UINT>(parameters - 1);
    UINT positional = params.cArgs - params.cNamedArgs;
    UINT packed = positional > fixed ? positional - fixed : 0;
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, packed);
    if (!array) return nullptr;
    // rgvarg holds named arguments first, then the positional ones last-first.
    for (UINT k = 0; k < packed; ++k) {
        LONG index = static_cast<LONG>(k);
        SafeArrayPutElement(array, &index, &params.rgvarg[params.cArgs - 1 - fixed - k]);
    }
    std::vector<VARIANTARG> rebuilt(params.rgvarg, params.rgvarg + params.cNamedArgs);
    VARIANTARG pack;
    V_VT(&pack) = VT_BYREF | VT_ARRAY | VT_VARIANT;
    slot = array;
    V_ARRAYREF(&pack) = &slot;
    rebuilt.push_back(pack);
    for (UINT k = 0; k < fixed && k < positional; ++k) rebuilt.push_back(params.rgvarg[params.cArgs - fixed + k]);
    arguments.swap(rebuilt);
    return array;
}

// Whether a member needs more than DispInvoke: a parameter array or a by-reference parameter.
bool NeedsMoreThanDispInvoke(const FUNCDESC& desc) {
    if (desc.cParamsOpt == -1) return true;
    for (SHORT p = 0; p < desc.cParams; ++p)
        if (ByReferenceType(desc.lprgelemdescParam[p]) != VT_EMPTY || IsVariantReference(desc.lprgelemdescParam[p]))
            return true;
    return false;
}

// One shadowed argument: the local the member works on and the caller's VARIANT it came from.
struct Shadow {
    UINT argument;
    VARIANT local;
};

// DispInvoke's result as the caller sees it: an object of another class where one is typed is a
// type mismatch, and a failed member's error object is copied into EXCEPINFO for script hosts.
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

// Names compare as Basic compares identifiers: without regard to case.
wchar_t Fold(wchar_t c) { return c < 128 ? static_cast<wchar_t>(c >= L'A' && c <= L'Z' ? c + 32 : c) : towlower(c); }

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

}  // namespace

void TypeInfoInvoker::AddNames(const FUNCDESC& desc) {
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

DISPID TypeInfoInvoker::Lookup(std::wstring_view name) const {
    auto it = std::lower_bound(names_.begin(), names_.end(), name,
                               [](const Name& entry, std::wstring_view wanted) { return FoldedLess(entry.folded, wanted); });
    return it != names_.end() && FoldedEqual(it->folded, name) ? static_cast<DISPID>(it - names_.begin()) : -1;
}

HRESULT TypeInfoInvoker::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
    if (!names || !ids) return E_POINTER;
    if (count == 0) return S_OK;
    HRESULT hr = S_OK;
    const DISPID found = names[0] ? Lookup(names[0]) : -1;
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

TypeInfoInvoker::TypeInfoInvoker(ITypeInfo* info) : info_(info) {
    TYPEATTR* attributes = nullptr;
    if (!info || FAILED(info->GetTypeAttr(&attributes))) return;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* desc = nullptr;
        if (FAILED(info->GetFuncDesc(i, &desc))) continue;
        AddNames(*desc);
        Signature signature{desc->memid, static_cast<WORD>(desc->invkind), 0, desc->cParamsOpt == -1,
                            NeedsMoreThanDispInvoke(*desc), desc->cParams, {}, {}, {}};
        for (SHORT p = 0; p < desc->cParams; ++p) {
            const ELEMDESC& parameter = desc->lprgelemdescParam[p];
            if (!(parameter.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID))) ++signature.arguments;
            signature.scalar.push_back(IsScalar(info, parameter.tdesc));
            signature.byReference.push_back(ByReferenceType(parameter));
            signature.variantReference.push_back(IsVariantReference(parameter));
        }
        signatures_.push_back(std::move(signature));
        info->ReleaseFuncDesc(desc);
    }
    info->ReleaseTypeAttr(attributes);
    std::sort(names_.begin(), names_.end(), [](const Name& a, const Name& b) { return a.folded < b.folded; });
    std::stable_sort(signatures_.begin(), signatures_.end(),
                     [](const Signature& a, const Signature& b) { return a.member < b.member; });
}

const TypeInfoInvoker::Signature* TypeInfoInvoker::Find(DISPID member, WORD flags) const {
    auto it = std::lower_bound(signatures_.begin(), signatures_.end(), member,
                               [](const Signature& s, DISPID m) { return s.member < m; });
    for (; it != signatures_.end() && it->member == member; ++it) {
        if (it->kinds & flags) return &*it;
    }
    return nullptr;
}

// Whether any argument needs more than DispInvoke gives it: a parameter array to pack, a value for
// a Variant by reference, or a variable or value of another type for a fixed by-reference type.
bool TypeInfoInvoker::NeedsShadows(const Signature& signature, const DISPPARAMS* params) {
    if (!params) return false;
    if (signature.parameterArray) return true;
    for (UINT a = 0; a < params->cArgs; ++a) {
        const int index = ParameterIndex(*params, a, signature.parameters);
        if (index < 0 || index >= signature.parameters) continue;
        const VARIANT& given = params->rgvarg[a];
        if (signature.variantReference[index] && !(V_VT(&given) & VT_BYREF)) return true;
        // DispInvoke coerces such an argument where it lies: a copy keeps the caller's own intact.
        const VARTYPE type = signature.byReference[index];
        if (type != VT_EMPTY && V_VT(&given) != (VT_BYREF | type)) return true;
    }
    return false;
}

HRESULT TypeInfoInvoker::Invoke(IDispatch* self, DISPID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                                EXCEPINFO* exception, UINT* argError) const {
    const Signature* signature = Find(member, flags);
    if (signature && params) {
        if (!signature->parameterArray && params->cArgs > signature->arguments) return DISP_E_BADPARAMCOUNT;
        for (UINT a = 0; a < params->cArgs; ++a) {
            const int index = params->cNamedArgs && a < params->cNamedArgs && params->rgdispidNamedArgs[a] == DISPID_PROPERTYPUT
                                  ? static_cast<int>(signature->arguments) - 1
                                  : static_cast<int>(params->cArgs - 1 - a);
            if (index < 0 || index >= static_cast<int>(signature->scalar.size()) || !signature->scalar[index]) continue;
            if (IsNothing(params->rgvarg[a])) {
                if (argError) *argError = a;
                return DISP_E_TYPEMISMATCH;
            }
        }
    }
    if (!signature || !signature->special || !NeedsShadows(*signature, params)) {
        return CallerResult(DispInvoke(self, info_, member, flags, params, result, exception, argError), exception);
    }
    std::vector<VARIANTARG> arguments;
    std::vector<Shadow> shadows;
    DISPPARAMS adjusted = params ? *params : DISPPARAMS{};
    SAFEARRAY* packedSlot = nullptr;
    SAFEARRAY* packed = (signature->parameterArray && params)
                            ? PackParameterArray(signature->parameters, *params, arguments, packedSlot)
                            : nullptr;
    if (packed) {
        adjusted.rgvarg = arguments.data();
        adjusted.cArgs = static_cast<UINT>(arguments.size());
    } else if (params && params->cArgs) {
        arguments.assign(params->rgvarg, params->rgvarg + params->cArgs);
        shadows.reserve(params->cArgs);
        for (UINT a = 0; a < params->cArgs; ++a) {
            int index = ParameterIndex(*params, a, signature->parameters);
            if (index < 0 || index >= signature->parameters) continue;
            VARTYPE type = signature->byReference[index];
            VARIANT& given = params->rgvarg[a];
            if (signature->variantReference[index] && !(V_VT(&given) & VT_BYREF)) {
                // A value, not a variable: the member works on a copy, so that what it writes back
                // does not free or replace what the caller still owns.
                Shadow& shadow = shadows.emplace_back(Shadow{a, {}});
                VariantInit(&shadow.local);
                if (FAILED(VariantCopy(&shadow.local, &given))) V_VT(&shadow.local) = VT_EMPTY;
                V_VT(&arguments[a]) = VT_BYREF | VT_VARIANT;
                V_VARIANTREF(&arguments[a]) = &shadow.local;
                continue;
            }
            if (type == VT_EMPTY || V_VT(&given) == (VT_BYREF | type) || IsMissing(given)) continue;
            const VARTYPE held = V_VT(&Deref(given));
            if (held == VT_DISPATCH || held == VT_UNKNOWN) {  // not through its default member
                for (Shadow& s : shadows) VariantClear(&s.local);
                if (argError) *argError = a;
                return DISP_E_TYPEMISMATCH;
            }
            Shadow& shadow = shadows.emplace_back(Shadow{a, {}});
            VariantInit(&shadow.local);
            HRESULT hr = VariantChangeType(&shadow.local, &Deref(given), 0, type);
            if (FAILED(hr)) {
                for (Shadow& s : shadows) VariantClear(&s.local);
                if (argError) *argError = a;
                return hr == DISP_E_OVERFLOW ? hr : DISP_E_TYPEMISMATCH;
            }
            V_VT(&arguments[a]) = VT_BYREF | type;
            V_BYREF(&arguments[a]) = &V_UI1(&shadow.local);
        }
        adjusted.rgvarg = arguments.data();
    }

    HRESULT hr = DispInvoke(self, info_, member, flags, params ? &adjusted : nullptr, result, exception, argError);
    if (packed) SafeArrayDestroy(packedSlot);

    for (Shadow& shadow : shadows) {
        VARIANT& given = params->rgvarg[shadow.argument];
        if (SUCCEEDED(hr) && (V_VT(&given) & VT_BYREF)) {
            try {
                WriteBack(&given, shadow.local);
            } catch (const Error&) {
                // The caller's variable cannot take the value: it keeps its old one.
            }
        }
        VariantClear(&shadow.local);
    }

    return CallerResult(hr, exception);
}

}  // namespace tgp::automation
