#include "units/UnitIdSource.h"

namespace tgp {

UnitIdSource::~UnitIdSource() = default;

}  // namespace tgp
