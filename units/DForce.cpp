#include "units/DForce.h"

namespace tgp {

double DForce::KN() const {
    return Get(KN_unitID);
}
void DForce::KN(double value) {
    Set(KN_unitID, value);
}
double DForce::daN() const {
    return Get(daN_unitID);
}
void DForce::daN(double value) {
    Set(daN_unitID, value);
}
double DForce::KG() const {
    return Get(KG_unitID);
}
void DForce::KG(double value) {
    Set(KG_unitID, value);
}
double DForce::tons() const {
    return Get(ton_unitID);
}
void DForce::tons(double value) {
    Set(ton_unitID, value);
}
double DForce::pound() const {
    return Get(lb_unitID);
}
void DForce::pound(double value) {
    Set(lb_unitID, value);
}
double DForce::kip() const {
    return Get(kip_unitID);
}
void DForce::kip(double value) {
    Set(kip_unitID, value);
}
double DForce::Newtons() const {
    return Get(N_unitID);
}
void DForce::Newtons(double value) {
    Set(N_unitID, value);
}

}  // namespace tgp
