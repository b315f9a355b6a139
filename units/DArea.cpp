#include "units/DArea.h"

namespace tgp {

// The unit properties and the shared members are compiled once, here.
template class LengthUnitsOf<DArea, DAreaObject>;
template class QuantityOf<DArea, DAreaObject>;

}  // namespace tgp
