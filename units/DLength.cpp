#include "units/DLength.h"

namespace tgp {

// The unit properties and the shared members are compiled once, here.
template class LengthUnitsOf<DLength, DLengthObject>;
template class QuantityOf<DLength, DLengthObject>;

}  // namespace tgp
