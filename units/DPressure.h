#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A pressure, stored in kilonewtons per square metre (the first unit, KN_mm2, is not the storage unit).
class DPressure final : public QuantityOf<DPressure, DPressureObject> {
public:
    double KN_mm2() const;
    void KN_mm2(double value);
    double daN_cm2() const;
    void daN_cm2(double value);
    double KG_m2() const;
    void KG_m2(double value);
    double ton_m2() const;
    void ton_m2(double value);
    double psi() const;
    void psi(double value);
    double ksi() const;
    void ksi(double value);
    double N_mm2() const;
    void N_mm2(double value);
    double KN_m2() const;
    void KN_m2(double value);
    double KN_cm2() const;
    void KN_cm2(double value);
    double KG_cm2() const;
    void KG_cm2(double value);
    double atm() const;
    void atm(double value);
    double PA() const;
    void PA(double value);
    double KPa() const;
    void KPa(double value);
    double MPa() const;
    void MPa(double value);
};

}  // namespace tgp
