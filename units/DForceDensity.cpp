#include "units/DForceDensity.h"

namespace tgp {

double DForceDensity::KN_mm3() const {
    return Get(KN_mm_unitID);
}
void DForceDensity::KN_mm3(double value) {
    Set(KN_mm_unitID, value);
}
double DForceDensity::KG_m3() const {
    return Get(KG_m_unitID);
}
void DForceDensity::KG_m3(double value) {
    Set(KG_m_unitID, value);
}
double DForceDensity::tons_m3() const {
    return Get(ton_m_unitID);
}
void DForceDensity::tons_m3(double value) {
    Set(ton_m_unitID, value);
}
double DForceDensity::pci() const {
    return Get(lb_in_unitID);
}
void DForceDensity::pci(double value) {
    Set(lb_in_unitID, value);
}
double DForceDensity::kci() const {
    return Get(kip_in_unitID);
}
void DForceDensity::kci(double value) {
    Set(kip_in_unitID, value);
}
double DForceDensity::KN_m3() const {
    return Get(KN_m_unitID);
}
void DForceDensity::KN_m3(double value) {
    Set(KN_m_unitID, value);
}

}  // namespace tgp
