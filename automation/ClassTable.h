#pragma once

#include <span>

#include "OleBase.h"

namespace tgp::automation {

// One creatable class of the library: its name (the ProgID is Tessary_Geometry_Pro.<name>), its
// CLSID and how to make a new instance.
struct ClassEntry {
    const wchar_t* name;
    CLSID clsid;
    HRESULT (*create)(REFIID iid, void** result);
};

// Every creatable class, in type-library order.
std::span<const ClassEntry> Classes();
const ClassEntry* FindClass(REFCLSID clsid);

}  // namespace tgp::automation
