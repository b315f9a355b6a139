#pragma once

#include <initializer_list>
#include <string>

#include "OleBase.h"

namespace tgp::automation {

// Calls a member of any automation object by name (late-bound), the way a script would: the
// arguments in published order, the result into *result (may be nullptr). A failure is thrown as
// the library's error with the callee's number and description.
void CallByName(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<VARIANT> args,
                VARIANT* result);

// A script's array object (JScript's [3, 4, 0]: a script object, IDispatchEx, with a numeric
// `length` and members "0", "1", ...) copied into a new zero-based array of Variants in *into (a
// missing member as Empty). False, *into untouched, for any other object.
bool CopyScriptArray(IDispatch* object, VARIANT* into);

// Whether the object has a member of that name, as a late-bound call would find it.
bool HasMember(IDispatch* object, const wchar_t* name) noexcept;

// The window an object names through a handle property (a form's hWnd, a host's HWND); null when
// the object is Nothing, has no such member, fails to answer or names no window.
HWND WindowProperty(IDispatch* object, const wchar_t* name) noexcept;

}  // namespace tgp::automation
