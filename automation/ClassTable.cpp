#include "ClassTable.h"

#include <array>

#include "GeometryAdapters.h"
#include "GeometryExeAdapter.h"
#include "HostBridgeAdapter.h"
#include "ProfileAdapters.h"
#include "Quantities.h"
#include "Tessary_Geometry_Pro.h"
#include "UnitComboBoxAdapter.h"
#include "UnitSettingAdapter.h"

namespace tgp::automation {
namespace {

#define TGP_QUANTITY_ENTRY(Name) ClassEntry{L## #Name, __uuidof(::Name), &Create##Name},

const auto kClasses = std::to_array<ClassEntry>({
    TGP_QUANTITY_CLASSES(TGP_QUANTITY_ENTRY)
        ClassEntry{L"UnitSetting", __uuidof(::UnitSetting), &CreateUnitSetting},
    ClassEntry{L"Geometry_EXE", __uuidof(::Geometry_EXE), &CreateGeometry_EXE},
    ClassEntry{L"Vector", __uuidof(::Vector), &CreateVector},
    ClassEntry{L"Geometry", __uuidof(::Geometry), &CreateGeometry},
    ClassEntry{L"Matrix", __uuidof(::Matrix), &CreateMatrix},
    ClassEntry{L"UCS", __uuidof(::UCS), &CreateUCS},
    ClassEntry{L"Loop7", __uuidof(::Loop7), &CreateLoop7},
    ClassEntry{L"InertiaBlock", __uuidof(::InertiaBlock), &CreateInertiaBlock},
    ClassEntry{L"Loop7s", __uuidof(::Loop7s), &CreateLoop7s},
    ClassEntry{L"UnitComboBox", __uuidof(::UnitComboBox), &CreateUnitComboBox},
    ClassEntry{L"HostBridge", __uuidof(::HostBridge), &CreateHostBridge},
    ClassEntry{L"DrawingSections", __uuidof(::DrawingSections), &CreateDrawingSections},
    ClassEntry{L"TorsionBlock", __uuidof(::TorsionBlock), &CreateTorsionBlock},
});

}  // namespace

std::span<const ClassEntry> Classes() {
    return kClasses;
}

const ClassEntry* FindClass(REFCLSID clsid) {
    for (const ClassEntry& entry : kClasses)
        if (IsEqualCLSID(entry.clsid, clsid)) return &entry;
    return nullptr;
}

}  // namespace tgp::automation
