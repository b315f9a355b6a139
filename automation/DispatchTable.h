#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OleBase.h"

namespace tgp::automation {

// IDispatch of one interface served from a table made once from its type information: every
// member's dispatch id, kind of call, vtable slot and parameters (type, by reference or not,
// optional with its default, the interface an object parameter must have), and every name with
// its parameters' names. Invoke converts the arguments into the member's own types and calls the
// slot (DispCallFunc); GetIDsOfNames is a binary search. Rules beyond a plain late-bound call:
//  - more arguments than a member takes raise 450 (DISP_E_BADPARAMCOUNT), a missing argument that
//    is not optional 449 (DISP_E_PARAMNOTOPTIONAL);
//  - by-reference parameters of a fixed type (Double, Integer, Boolean, ...) also accept script
//    variables (VT_BYREF|VT_VARIANT) and plain values: the argument is converted into a local of the
//    declared type, the member runs on it and the result is written back into the caller's
//    variable in the caller's own type; an object offered there is a type mismatch (13), and the
//    caller's variable keeps it (a conversion through its default member would overwrite it);
//  - a Variant by reference given a value (not a variable) gets a copy: what the member writes
//    back must not free or replace what the caller owns;
//  - Nothing offered for a number, text or Boolean is a type mismatch (13), as is an object without
//    the interface a parameter needs;
//  - a parameter array receives the remaining arguments packed into one array of Variants;
//  - a failed member's error object is copied into EXCEPINFO (DISP_E_EXCEPTION), which is where
//    script hosts read Err.Number and Err.Description.
class DispatchTable {
  public:
    // Keeps info (which may be nullptr: the type library could not be loaded) for the process.
    explicit DispatchTable(ITypeInfo* info);
    ~DispatchTable();
    DispatchTable(const DispatchTable&) = delete;
    DispatchTable& operator=(const DispatchTable&) = delete;

    ITypeInfo* info() const { return info_; }
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const;
    HRESULT Invoke(IDispatch* self, DISPID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO* exception, UINT* argError) const;

    // The most parameters a member of the library has room for in one call's arguments.
    static constexpr int kMostParameters = 24;

    struct Parameter {
        VARTYPE type;      // VT_R8, VT_I2, VT_I4 (also enumerations), VT_BOOL, VT_BSTR, ..., VT_VARIANT,
                           // VT_UNKNOWN (an interface, `iid`), VT_DISPATCH, VT_SAFEARRAY
        bool byReference;  // [in, out] T* (the retval's own pointer does not count)
        bool retval;
        bool optional;
        IID iid;           // VT_UNKNOWN: the interface the member takes
        VARIANT fallback;  // an optional parameter's default, already of `type`; VT_EMPTY if none
    };
    struct Member {
        DISPID id;
        WORD kinds;          // INVOKE_FUNC, INVOKE_PROPERTYGET, ...
        SHORT vtableOffset;  // bytes
        CALLCONV convention;
        UINT arguments;       // parameters a caller gives (retval excluded)
        bool parameterArray;  // the last argument parameter takes the rest
        int retval;           // index of the retval parameter, -1 if none
        std::vector<Parameter> parameters;
    };

  private:
    const Member* Find(DISPID member, WORD flags) const;
    void AddMember(const FUNCDESC& desc);
    void AddNames(const FUNCDESC& desc);
    int Lookup(std::wstring_view name) const;

    struct Name {
        std::wstring folded;  // lower case
        DISPID member;
        std::vector<std::wstring> parameters;  // folded, in order
    };

    ITypeInfo* info_;
    std::vector<Member> members_;  // sorted by id
    std::vector<Name> names_;      // sorted by folded name
};

}  // namespace tgp::automation
