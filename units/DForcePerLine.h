#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A force per length, stored in kilonewtons per millimetre.
class DForcePerLine final : public QuantityOf<DForcePerLine, DForcePerLineObject> {
  public:
    double KN_mm() const;
    void KN_mm(double value);
    double KG_m() const;
    void KG_m(double value);
    double tons_m() const;
    void tons_m(double value);
    double lbin() const;
    void lbin(double value);
    double kipin() const;
    void kipin(double value);
    double KN_m() const;
    void KN_m(double value);
};

}  // namespace tgp
