#include "units/DForceMoment.h"

namespace tgp {

double DForceMoment::KNmm() const {
    return Get(KN_mm_unitID);
}
void DForceMoment::KNmm(double value) {
    Set(KN_mm_unitID, value);
}
double DForceMoment::KGm() const {
    return Get(KG_m_unitID);
}
void DForceMoment::KGm(double value) {
    Set(KG_m_unitID, value);
}
double DForceMoment::tm() const {
    return Get(ton_m_unitID);
}
void DForceMoment::tm(double value) {
    Set(ton_m_unitID, value);
}
double DForceMoment::lbin() const {
    return Get(lb_in_unitID);
}
void DForceMoment::lbin(double value) {
    Set(lb_in_unitID, value);
}
double DForceMoment::kipin() const {
    return Get(kip_in_unitID);
}
void DForceMoment::kipin(double value) {
    Set(kip_in_unitID, value);
}
double DForceMoment::KNm() const {
    return Get(KN_m_unitID);
}
void DForceMoment::KNm(double value) {
    Set(KN_m_unitID, value);
}

}  // namespace tgp
