#pragma once

#include <memory>

#include "Tessary_Geometry_Pro.h"
#include "units/Geometry_EXE.h"

namespace tgp::automation {

// The eleven quantity classes, in DimensionObjectType order.
#define TGP_QUANTITY_CLASSES(X) \
    X(DAngle)                   \
    X(DLength)                  \
    X(DArea)                    \
    X(DVolume)                  \
    X(DMomentOfInertia)         \
    X(DForce)                   \
    X(DPressure)                \
    X(DForcePerArea)            \
    X(DForceMoment)             \
    X(DForcePerLine)            \
    X(DForceDensity)

// Wrap(native, &result): a new automation object for a core quantity (used by the factories and the
// section property block); Create<Class>(iid, result): a new zero quantity for the class factory.
#define TGP_DECLARE_QUANTITY(Name)                                                \
    HRESULT Wrap(std::shared_ptr<tgp::Name> native, ::_##Name** result) noexcept; \
    HRESULT Create##Name(REFIID iid, void** result);
TGP_QUANTITY_CLASSES(TGP_DECLARE_QUANTITY)
#undef TGP_DECLARE_QUANTITY

}  // namespace tgp::automation
