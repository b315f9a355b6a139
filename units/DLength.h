#pragma once

#include "units/LengthUnitsOf.h"

namespace tgp {

// A length, stored in millimetres.
class DLength final : public LengthUnitsOf<DLength, DLengthObject> {};

extern template class LengthUnitsOf<DLength, DLengthObject>;
extern template class QuantityOf<DLength, DLengthObject>;

}  // namespace tgp
