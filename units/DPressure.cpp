#include "units/DPressure.h"

namespace tgp {

// The unit properties and the shared members are compiled once, here.
template class PressureUnitsOf<DPressure, DPressureObject>;
template class QuantityOf<DPressure, DPressureObject>;

}  // namespace tgp
