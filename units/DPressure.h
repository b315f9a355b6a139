#pragma once

#include "units/PressureUnitsOf.h"

namespace tgp {

// A pressure, stored in kilonewtons per square metre (the first unit, KN_mm2, is not the storage unit).
class DPressure final : public PressureUnitsOf<DPressure, DPressureObject> {};

extern template class PressureUnitsOf<DPressure, DPressureObject>;
extern template class QuantityOf<DPressure, DPressureObject>;

}  // namespace tgp
