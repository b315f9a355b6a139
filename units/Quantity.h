#pragma once

#include "units/UnitArg.h"
#include "units/UnitIds.h"

namespace tgp {

// What every quantity class offers whatever its kind: the service, the edit dialogs and the
// automation layer work through this when the kind is only known at run time.
class Quantity {
  public:
    virtual ~Quantity();

    virtual DimensionObjectType DimensionType() const = 0;

    // The amount in the unit the argument names (missing: unit id 0); fails with 24111 for an id
    // that is not a unit of this kind. A failed let leaves the amount unchanged.
    virtual double Value(const UnitArg& Unit = {}) const = 0;
    virtual void Value(const UnitArg& Unit, double value) = 0;
};

}  // namespace tgp
