#pragma once

#include "OleBase.h"

namespace tgp::automation {

// Writes the classes, their ProgIDs and the type library into the registry: per machine
// (HKLM\Software\Classes) when the process may, else per user (HKCU\Software\Classes).
HRESULT RegisterServer();
// Removes what RegisterServer wrote, from both places.
HRESULT UnregisterServer();

}  // namespace tgp::automation
