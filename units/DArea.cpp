#include "units/DArea.h"

namespace tgp {

double DArea::Millimetres() const { return Get(mm_UnitID); }
void DArea::Millimetres(double value) { Set(mm_UnitID, value); }
double DArea::Centimetres() const { return Get(cm_UnitID); }
void DArea::Centimetres(double value) { Set(cm_UnitID, value); }
double DArea::Decimetres() const { return Get(dm_UnitID); }
void DArea::Decimetres(double value) { Set(dm_UnitID, value); }
double DArea::Metres() const { return Get(m_UnitID); }
void DArea::Metres(double value) { Set(m_UnitID, value); }
double DArea::Inches() const { return Get(in_UnitID); }
void DArea::Inches(double value) { Set(in_UnitID, value); }
double DArea::Feet() const { return Get(ft_UnitID); }
void DArea::Feet(double value) { Set(ft_UnitID, value); }

}  // namespace tgp
