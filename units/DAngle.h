#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A angle, stored in radians.
class DAngle final : public QuantityOf<DAngle, DAngleObject> {
  public:
    void Radians(double value);
    double Radians() const;
    void Degrees(double value);
    double Degrees() const;
};

}  // namespace tgp
