#pragma once

#include <string>

#include "TypeLibraryModel.h"

namespace tgp::automation::typelib {

// The registry entries an installer writes for the server, as WiX <Include> files of RegistryValue
// elements under the per-user-or-machine root (HKMU): what registering the DLL and its type library
// would write, taken from the type library itself.
//
// Shared: the ProgIDs, the interfaces (marshalled by the automation marshaller) and the type
// library's version key. Server: the classes and the type library's path for one DLL, named by its
// WiX file id; `platform` "win64" or "win32"; `wow64` puts the classes in the 32-bit view of a
// 64-bit Windows (the path a 32-bit process sees them under).
std::string SharedRegistry(const LibraryModel& library);
std::string ServerRegistry(const LibraryModel& library, const std::string& fileId,
                           const std::string& platform, bool wow64);

}  // namespace tgp::automation::typelib
