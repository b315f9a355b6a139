#include "units/DPressure.h"

namespace tgp {

double DPressure::KN_mm2() const { return Get(KN_mm_unitID); }
void DPressure::KN_mm2(double value) { Set(KN_mm_unitID, value); }
double DPressure::daN_cm2() const { return Get(daN_cm_unitID); }
void DPressure::daN_cm2(double value) { Set(daN_cm_unitID, value); }
double DPressure::KG_m2() const { return Get(KG_m_unitID); }
void DPressure::KG_m2(double value) { Set(KG_m_unitID, value); }
double DPressure::ton_m2() const { return Get(ton_m_unitID); }
void DPressure::ton_m2(double value) { Set(ton_m_unitID, value); }
double DPressure::psi() const { return Get(lb_in_unitID); }
void DPressure::psi(double value) { Set(lb_in_unitID, value); }
double DPressure::ksi() const { return Get(kip_in_unitID); }
void DPressure::ksi(double value) { Set(kip_in_unitID, value); }
double DPressure::N_mm2() const { return Get(N_mm_unitID); }
void DPressure::N_mm2(double value) { Set(N_mm_unitID, value); }
double DPressure::KN_m2() const { return Get(KN_m_unitID); }
void DPressure::KN_m2(double value) { Set(KN_m_unitID, value); }
double DPressure::KN_cm2() const { return Get(KN_cm_unitID); }
void DPressure::KN_cm2(double value) { Set(KN_cm_unitID, value); }
double DPressure::KG_cm2() const { return Get(kG_cm_unitID); }
void DPressure::KG_cm2(double value) { Set(kG_cm_unitID, value); }
double DPressure::atm() const { return Get(atm_unitID); }
void DPressure::atm(double value) { Set(atm_unitID, value); }
double DPressure::PA() const { return Get(Pa_unitID); }
void DPressure::PA(double value) { Set(Pa_unitID, value); }
double DPressure::KPa() const { return Get(KPa_unitID); }
void DPressure::KPa(double value) { Set(KPa_unitID, value); }
double DPressure::MPa() const { return Get(MPa_unitID); }
void DPressure::MPa(double value) { Set(MPa_unitID, value); }

}  // namespace tgp
