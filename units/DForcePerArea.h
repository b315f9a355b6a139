#pragma once

#include "units/PressureUnitsOf.h"

namespace tgp {

// A force per area, stored in kilonewtons per square metre; the same units as DPressure.
class DForcePerArea final : public PressureUnitsOf<DForcePerArea, DForcePerareaObject> {};

extern template class PressureUnitsOf<DForcePerArea, DForcePerareaObject>;
extern template class QuantityOf<DForcePerArea, DForcePerareaObject>;

}  // namespace tgp
