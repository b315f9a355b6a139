#pragma once

#include "OleBase.h"

namespace tgp::automation {

// Geometry_EXE: the quantity service (unit symbols, unit recognition, quantity factories).
HRESULT CreateGeometry_EXE(REFIID iid, void** result);

}  // namespace tgp::automation
