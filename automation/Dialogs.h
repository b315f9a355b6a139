#pragma once
// The dialog members of Geometry_EXE: the caller's arguments turned into the editors' values, the
// Win32 dialogs run on the caller's thread, and the results written back into the caller's variables.
#include "OleBase.h"
#include "Tessary_Geometry_Pro.h"

namespace tgp::automation {

bool RunEditEnum(VARIANT* Value, BSTR EnumString, BSTR Title, BSTR Desc);
bool RunEditQuantity(VARIANT* Value, const VARIANT& UnitID, BSTR Title, BSTR Desc, short* ReturnUnitID,
                     IDispatch* OwnerForm);
bool RunEditUnitSetting(::_UnitSetting** US, bool ShowModal, bool ShowCenterScreen);

}  // namespace tgp::automation
