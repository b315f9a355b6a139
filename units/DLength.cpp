#include "units/DLength.h"

namespace tgp {

double DLength::Millimetres() const { return Get(mm_UnitID); }
void DLength::Millimetres(double value) { Set(mm_UnitID, value); }
double DLength::Centimetres() const { return Get(cm_UnitID); }
void DLength::Centimetres(double value) { Set(cm_UnitID, value); }
double DLength::Decimetres() const { return Get(dm_UnitID); }
void DLength::Decimetres(double value) { Set(dm_UnitID, value); }
double DLength::Metres() const { return Get(m_UnitID); }
void DLength::Metres(double value) { Set(m_UnitID, value); }
double DLength::Inches() const { return Get(in_UnitID); }
void DLength::Inches(double value) { Set(in_UnitID, value); }
double DLength::Feet() const { return Get(ft_UnitID); }
void DLength::Feet(double value) { Set(ft_UnitID, value); }

}  // namespace tgp
