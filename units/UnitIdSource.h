#pragma once

#include <cstdint>

#include "units/UnitIds.h"

namespace tgp {

// Anything that can name the chosen unit of a quantity kind. A quantity's unit argument may be such
// an object instead of a number: UnitSetting is the library's own, and the automation layer wraps
// any foreign object that answers UnitID(DimensionType) in one.
class UnitIdSource {
  public:
    virtual ~UnitIdSource();
    virtual int16_t UnitID(DimensionObjectType DimensionType) const = 0;
};

}  // namespace tgp
