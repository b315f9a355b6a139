#include "units/DForcePerLine.h"

namespace tgp {

double DForcePerLine::KN_mm() const {
    return Get(KN_mm_unitID);
}
void DForcePerLine::KN_mm(double value) {
    Set(KN_mm_unitID, value);
}
double DForcePerLine::KG_m() const {
    return Get(KG_m_unitID);
}
void DForcePerLine::KG_m(double value) {
    Set(KG_m_unitID, value);
}
double DForcePerLine::tons_m() const {
    return Get(ton_m_unitID);
}
void DForcePerLine::tons_m(double value) {
    Set(ton_m_unitID, value);
}
double DForcePerLine::lbin() const {
    return Get(lb_in_unitID);
}
void DForcePerLine::lbin(double value) {
    Set(lb_in_unitID, value);
}
double DForcePerLine::kipin() const {
    return Get(kip_in_unitID);
}
void DForcePerLine::kipin(double value) {
    Set(kip_in_unitID, value);
}
double DForcePerLine::KN_m() const {
    return Get(KN_m_unitID);
}
void DForcePerLine::KN_m(double value) {
    Set(KN_m_unitID, value);
}

}  // namespace tgp
