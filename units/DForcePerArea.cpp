#include "units/DForcePerArea.h"

namespace tgp {

double DForcePerArea::KN_mm2() const { return Get(KN_mm_unitID); }
void DForcePerArea::KN_mm2(double value) { Set(KN_mm_unitID, value); }
double DForcePerArea::daN_cm2() const { return Get(daN_cm_unitID); }
void DForcePerArea::daN_cm2(double value) { Set(daN_cm_unitID, value); }
double DForcePerArea::KG_m2() const { return Get(KG_m_unitID); }
void DForcePerArea::KG_m2(double value) { Set(KG_m_unitID, value); }
double DForcePerArea::ton_m2() const { return Get(ton_m_unitID); }
void DForcePerArea::ton_m2(double value) { Set(ton_m_unitID, value); }
double DForcePerArea::psi() const { return Get(lb_in_unitID); }
void DForcePerArea::psi(double value) { Set(lb_in_unitID, value); }
double DForcePerArea::ksi() const { return Get(kip_in_unitID); }
void DForcePerArea::ksi(double value) { Set(kip_in_unitID, value); }
double DForcePerArea::N_mm2() const { return Get(N_mm_unitID); }
void DForcePerArea::N_mm2(double value) { Set(N_mm_unitID, value); }
double DForcePerArea::KN_m2() const { return Get(KN_m_unitID); }
void DForcePerArea::KN_m2(double value) { Set(KN_m_unitID, value); }
double DForcePerArea::KN_cm2() const { return Get(KN_cm_unitID); }
void DForcePerArea::KN_cm2(double value) { Set(KN_cm_unitID, value); }
double DForcePerArea::KG_cm2() const { return Get(kG_cm_unitID); }
void DForcePerArea::KG_cm2(double value) { Set(kG_cm_unitID, value); }
double DForcePerArea::atm() const { return Get(atm_unitID); }
void DForcePerArea::atm(double value) { Set(atm_unitID, value); }
double DForcePerArea::PA() const { return Get(Pa_unitID); }
void DForcePerArea::PA(double value) { Set(Pa_unitID, value); }
double DForcePerArea::KPa() const { return Get(KPa_unitID); }
void DForcePerArea::KPa(double value) { Set(KPa_unitID, value); }
double DForcePerArea::MPa() const { return Get(MPa_unitID); }
void DForcePerArea::MPa(double value) { Set(MPa_unitID, value); }

}  // namespace tgp
