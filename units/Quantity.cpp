#include "units/Quantity.h"

namespace tgp {

Quantity::~Quantity() = default;

}  // namespace tgp
