#pragma once

#include "units/LengthUnitsOf.h"

namespace tgp {

// A second moment of area, stored as a raw value and the mm⁴ factor of the unit it was written in;
// each unit is the fourth power of the length unit of its name.
class DMomentOfInertia final : public LengthUnitsOf<DMomentOfInertia, DMomentOfInertiaObject> {};

extern template class LengthUnitsOf<DMomentOfInertia, DMomentOfInertiaObject>;
extern template class QuantityOf<DMomentOfInertia, DMomentOfInertiaObject>;

}  // namespace tgp
