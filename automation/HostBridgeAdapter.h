#pragma once

#include "OleBase.h"

namespace tgp::automation {

// HostBridge: the process's shared CAD-host connection, the host's events relayed as its own, and
// modal forms over the host's main window.
HRESULT CreateHostBridge(REFIID iid, void** result);

}  // namespace tgp::automation
