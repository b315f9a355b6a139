#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A force density, stored in kilonewtons per cubic metre (the first unit, KN_mm3, is not the storage unit).
class DForceDensity final : public QuantityOf<DForceDensity, DForceDensityObject> {
  public:
    double KN_mm3() const;
    void KN_mm3(double value);
    double KG_m3() const;
    void KG_m3(double value);
    double tons_m3() const;
    void tons_m3(double value);
    double pci() const;
    void pci(double value);
    double kci() const;
    void kci(double value);
    double KN_m3() const;
    void KN_m3(double value);
};

}  // namespace tgp
