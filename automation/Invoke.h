#pragma once

#include "OleBase.h"

namespace tgp::automation {

// IDispatch::Invoke served from the type library (DispInvoke), with two additions:
//  - by-reference parameters of a fixed type (Double, Integer, Boolean, ...) also accept script
//    variables (VT_BYREF|VT_VARIANT) and plain values: the argument is converted into a local of the
//    declared type, the member runs on it and the result is written back into the caller's
//    variable in the caller's own type;
//  - a failed member's error object is copied into EXCEPINFO (DISP_E_EXCEPTION), which is where
//    script hosts read Err.Number and Err.Description.
HRESULT InvokeFromTypeInfo(IDispatch* self, ITypeInfo* info, DISPID member, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* exception, UINT* argError);

}  // namespace tgp::automation
