#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A force, stored in kilonewtons.
class DForce final : public QuantityOf<DForce, DForceObject> {
  public:
    double KN() const;
    void KN(double value);
    double daN() const;
    void daN(double value);
    double KG() const;
    void KG(double value);
    double tons() const;
    void tons(double value);
    double pound() const;
    void pound(double value);
    double kip() const;
    void kip(double value);
    double Newtons() const;
    void Newtons(double value);
};

}  // namespace tgp
