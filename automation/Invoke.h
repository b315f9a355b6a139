#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OleBase.h"

namespace tgp::automation {

// IDispatch::Invoke served from the type library (DispInvoke) of one interface, with these additions:
//  - more arguments than a member takes raise 450 (DISP_E_BADPARAMCOUNT) for every kind of call:
//    DispInvoke itself lets surplus arguments of property lets and of subs through unread;
//  - by-reference parameters of a fixed type (Double, Integer, Boolean, ...) also accept script
//    variables (VT_BYREF|VT_VARIANT) and plain values: the argument is converted into a local of the
//    declared type, the member runs on it and the result is written back into the caller's
//    variable in the caller's own type; an object offered there is a type mismatch (13), and the
//    caller's variable keeps it (a conversion through its default member would overwrite it);
//  - Nothing offered for a number, text or Boolean is a type mismatch (13), not the "type not
//    supported" DispInvoke's conversion of a null object reports;
//  - a failed member's error object is copied into EXCEPINFO (DISP_E_EXCEPTION), which is where
//    script hosts read Err.Number and Err.Description.
// The members that need more than DispInvoke (a parameter array or a by-reference parameter of a
// fixed type) are found once, when the interface's invoker is made, so that every other call goes
// straight to DispInvoke.
class TypeInfoInvoker {
public:
    // Keeps info (which may be nullptr: the type library could not be loaded) for the process.
    explicit TypeInfoInvoker(ITypeInfo* info);
    TypeInfoInvoker(const TypeInfoInvoker&) = delete;
    TypeInfoInvoker& operator=(const TypeInfoInvoker&) = delete;

    ITypeInfo* info() const { return info_; }
    // The member's id and its named parameters' indices, from a table made once: the type
    // library's own lookup compares every name of the interface on every call, the largest cost of
    // a script's call.
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const;
    HRESULT Invoke(IDispatch* self, DISPID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO* exception, UINT* argError) const;

private:
    // How many arguments a member takes for one kind of call (retval and lcid parameters are not
    // arguments); a parameter-array member takes any number.
    struct Signature {
        DISPID member;
        WORD kinds;
        UINT arguments;
        bool parameterArray;
        bool special;  // a parameter array or a by-reference parameter: more than DispInvoke
        int parameters;
        // Per parameter: a number, text, Boolean or enumeration; the fixed type a by-reference
        // parameter points to (VT_EMPTY if none); whether it is a Variant by reference.
        std::vector<bool> scalar;
        std::vector<VARTYPE> byReference;
        std::vector<char> variantReference;
    };
    const Signature* Find(DISPID member, WORD flags) const;
    static bool NeedsShadows(const Signature& signature, const DISPPARAMS* params);
    void AddNames(const FUNCDESC& desc);
    DISPID Lookup(std::wstring_view name) const;

    struct Name {
        std::wstring folded;  // lower case
        DISPID member;
        std::vector<std::wstring> parameters;  // folded, in order
    };

    ITypeInfo* info_;
    std::vector<Signature> signatures_;  // sorted by member
    std::vector<Name> names_;            // sorted by folded name
};

}  // namespace tgp::automation
