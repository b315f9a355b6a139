#pragma once

#include "OleBase.h"

namespace tgp::automation {

// UnitComboBox: binds a combo box of the caller's form to one quantity kind, with the Change event
// as connection point.
HRESULT CreateUnitComboBox(REFIID iid, void** result);

}  // namespace tgp::automation
