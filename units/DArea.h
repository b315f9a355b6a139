#pragma once

#include "units/LengthUnitsOf.h"

namespace tgp {

// An area, stored in square millimetres; each unit is the square of the length unit of its name.
class DArea final : public LengthUnitsOf<DArea, DAreaObject> {};

extern template class LengthUnitsOf<DArea, DAreaObject>;
extern template class QuantityOf<DArea, DAreaObject>;

}  // namespace tgp
