#include "units/DVolume.h"

namespace tgp {

double DVolume::Millimetres() const {
    return Get(mm_UnitID);
}
void DVolume::Millimetres(double value) {
    Set(mm_UnitID, value);
}
double DVolume::Centimetres() const {
    return Get(cm_UnitID);
}
void DVolume::Centimetres(double value) {
    Set(cm_UnitID, value);
}
double DVolume::Litres() const {
    return Get(dm_UnitID);
}
void DVolume::Litres(double value) {
    Set(dm_UnitID, value);
}
double DVolume::Metres() const {
    return Get(m_UnitID);
}
void DVolume::Metres(double value) {
    Set(m_UnitID, value);
}
double DVolume::Inches() const {
    return Get(in_UnitID);
}
void DVolume::Inches(double value) {
    Set(in_UnitID, value);
}
double DVolume::Feet() const {
    return Get(ft_UnitID);
}
void DVolume::Feet(double value) {
    Set(ft_UnitID, value);
}

}  // namespace tgp
