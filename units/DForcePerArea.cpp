#include "units/DForcePerArea.h"

namespace tgp {

// The unit properties and the shared members are compiled once, here.
template class PressureUnitsOf<DForcePerArea, DForcePerareaObject>;
template class QuantityOf<DForcePerArea, DForcePerareaObject>;

}  // namespace tgp
