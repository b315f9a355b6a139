#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// The fourteen unit properties shared by pressures and forces per area.
template <class Derived, DimensionObjectType Kind>
class PressureUnitsOf : public QuantityOf<Derived, Kind> {
  public:
    double KN_mm2() const { return this->Get(KN_mm_unitID); }
    void KN_mm2(double value) { this->Set(KN_mm_unitID, value); }
    double daN_cm2() const { return this->Get(daN_cm_unitID); }
    void daN_cm2(double value) { this->Set(daN_cm_unitID, value); }
    double KG_m2() const { return this->Get(KG_m_unitID); }
    void KG_m2(double value) { this->Set(KG_m_unitID, value); }
    double ton_m2() const { return this->Get(ton_m_unitID); }
    void ton_m2(double value) { this->Set(ton_m_unitID, value); }
    double psi() const { return this->Get(lb_in_unitID); }
    void psi(double value) { this->Set(lb_in_unitID, value); }
    double ksi() const { return this->Get(kip_in_unitID); }
    void ksi(double value) { this->Set(kip_in_unitID, value); }
    double N_mm2() const { return this->Get(N_mm_unitID); }
    void N_mm2(double value) { this->Set(N_mm_unitID, value); }
    double KN_m2() const { return this->Get(KN_m_unitID); }
    void KN_m2(double value) { this->Set(KN_m_unitID, value); }
    double KN_cm2() const { return this->Get(KN_cm_unitID); }
    void KN_cm2(double value) { this->Set(KN_cm_unitID, value); }
    double KG_cm2() const { return this->Get(kG_cm_unitID); }
    void KG_cm2(double value) { this->Set(kG_cm_unitID, value); }
    double atm() const { return this->Get(atm_unitID); }
    void atm(double value) { this->Set(atm_unitID, value); }
    double PA() const { return this->Get(Pa_unitID); }
    void PA(double value) { this->Set(Pa_unitID, value); }
    double KPa() const { return this->Get(KPa_unitID); }
    void KPa(double value) { this->Set(KPa_unitID, value); }
    double MPa() const { return this->Get(MPa_unitID); }
    void MPa(double value) { this->Set(MPa_unitID, value); }
};

}  // namespace tgp
