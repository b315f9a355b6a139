#include "units/DMomentOfInertia.h"

namespace tgp {

// The unit properties and the shared members are compiled once, here.
template class LengthUnitsOf<DMomentOfInertia, DMomentOfInertiaObject>;
template class QuantityOf<DMomentOfInertia, DMomentOfInertiaObject>;

}  // namespace tgp
