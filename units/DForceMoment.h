#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A force moment, stored in kilonewton-millimetres.
class DForceMoment final : public QuantityOf<DForceMoment, DForceMomentObject> {
  public:
    double KNmm() const;
    void KNmm(double value);
    double KGm() const;
    void KGm(double value);
    double tm() const;
    void tm(double value);
    double lbin() const;
    void lbin(double value);
    double kipin() const;
    void kipin(double value);
    double KNm() const;
    void KNm(double value);
};

}  // namespace tgp
